#include "CatalogueModel.h"

#include <functional>
#include <stdexcept>

#include <harness/Catalogue.h>
#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

#include "Differences.h"
#include "OutputCapture.h"
#include "Text.h"

using nlohmann::json;

namespace
{

// The catalogue is run in this process, where nothing is judged but the document's test.
std::vector<CatalogueTest> ReadCatalogue()
{
    TestResultList results;
    std::vector<json> payloads;
    const auto record = [&payloads](const std::function<void()>& reports)
    {
        const OutputCapture capture;
        const Corvane::PayloadRecorder recorder;
        reports();
        for (std::size_t i = 0; i < recorder.Payloads().size(); ++i)
            payloads.push_back(json::parse(recorder.JsonText(i)));
    };
    record([&results] { RunTests(results); });
    // The last test registered a callback of its own. Its document is sent once more.
    record([] { CorvaneTavi::Instance().StartTrackFileChange(L"fileName1"); });

    const std::vector<Corvane::ReportingMethod>& methods = Corvane::ReportingMethods();
    if (results.size() != methods.size())
        throw std::runtime_error("harness/Catalogue.cpp has " + std::to_string(results.size()) +
                                 " tests and check/ReportingMethods.cpp " + std::to_string(methods.size()) +
                                 " methods");
    std::vector<CatalogueTest> tests;
    for (std::size_t i = 0; i < methods.size(); ++i)
        tests.push_back({methods[i].name, TitleOf(methods[i]), json::parse(Json(results[i].expected)),
                         payloads.size() == methods.size() ? payloads[i] : json()});
    tests.back().isDocument = true;
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

std::string TitleOf(const Corvane::ReportingMethod& method)
{
    const std::string prefix = "Track";
    return "Testing " + method.name.substr(method.name.starts_with(prefix) ? prefix.size() : 0);
}

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
