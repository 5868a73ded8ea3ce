#include "CatalogueModel.h"

#include <sstream>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/Catalogue.h>

#include "Differences.h"
#include "OutputCapture.h"
#include "Program.h"
#include "Text.h"

using nlohmann::json;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

std::vector<CatalogueTest> ReadCatalogue()
{
    // The records, from the catalogue itself. No callback is enabled, so that nothing is judged.
    TestResultList results;
    std::string output;
    {
        const OutputCapture capture;
        RunTests(results);
        output = capture.Text();
    }
    Sdk::SetTestingCallback(Sdk::TaviString(), nullptr, nullptr);

    std::vector<CatalogueTest> tests;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with("Testing "))
            tests.push_back({line, json::parse(Json(results.at(tests.size()).expected)), {}, false});
    }
    tests.back().isDocument = true;

    // The payloads, from what the program really sends.
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    copy.Run();
    const std::vector<json> events = copy.Calls("TrackEvent");
    for (std::size_t i = 0; i < tests.size() && events.size() == tests.size(); ++i)
        tests[i].payload = events[i]["payload"];
    return tests;
}

json MemberOf(const json& value, const std::string& key)
{
    return value.is_object() ? value.value(key, json()) : json();
}

std::string Tree(const json& value, std::size_t depth)
{
    if (value.is_null() || (value.is_array() && !value.empty()))
        return "";
    const std::string indent(depth * 4, ' ');
    if (!value.is_object() || value.empty())
        return indent + value.dump() + "\n";
    std::string tree;
    for (const auto& [key, member] : value.items()) // in ascending order of the keys
        tree += indent + key + "\n" + Tree(member, depth + 1);
    return tree;
}

bool DocumentMatches(const json& expected, const json& payload)
{
    const json expectedMeta = MemberOf(expected, "content_meta");
    const json payloadMeta = MemberOf(payload, "content_meta");
    if (expectedMeta.is_null() || payloadMeta.is_null())
        return false;
    for (const char* const key : {"COMMON.FILE.NAME", "COMMON.FILE.TYPE", "COMMON.FILE.SOURCE", "COMMON.FILE.SIZE"})
    {
        if (MemberOf(payloadMeta, key) != MemberOf(expectedMeta, key))
            return false;
    }
    return MemberOf(payload, "type") == MemberOf(expected, "type");
}

} // namespace

const std::vector<CatalogueTest>& TheCatalogue()
{
    static const std::vector<CatalogueTest> tests = ReadCatalogue();
    return tests;
}

std::string DifferencesOf(const CatalogueTest& test)
{
    json sent = json::object();
    for (const auto& [key, expected] : test.expected.items())
    {
        if (test.payload.contains(key))
            sent[key] = test.payload[key];
        if (!test.isDocument || !sent[key].is_object())
            continue;
        for (const auto& [member, value] : test.payload[key].items())
        {
            if (!expected.contains(member))
                sent[key].erase(member);
        }
    }
    return JsonDifferences(test.expected, sent);
}

std::string ExpectedJudgement(const CatalogueTest& test, const json& payload)
{
    if (payload.is_null())
    {
        const std::string hint = test.isDocument ? "a failure to download a whitelist, or"
                                                 : "a failure to download a whitelist, an expired whitelist, or";
        return "Unexpectedly recieved null JSON.\nThis could indicate " + hint +
               " a failure to have specified a waypoint or attribute in the uploaded whitelist.\n";
    }
    if (test.isDocument)
        return DocumentMatches(test.expected, payload) ? "PASSED\n" : "FAILED\n";

    std::string mismatches;
    for (const auto& [key, expected] : test.expected.items())
    {
        const json received = MemberOf(payload, key);
        if (expected != received)
            mismatches += "\nError: Mismatch between expected and recieved Json for key " + key + "\nExpected:\n" +
                          Tree(expected, 0) + "Recieved:\n" + Tree(received, 0);
    }
    return mismatches.empty() ? "PASSED\n" : mismatches + "FAILED\n";
}
