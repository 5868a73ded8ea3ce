#include "CatalogueModel.h"

#include <stdexcept>

#include <check/ReportingMethods.h>
#include <harness/Catalogue.h>
#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

#include "Differences.h"
#include "OutputCapture.h"
#include "Text.h"

using nlohmann::json;

namespace
{

// Runs the catalogue in this process, where only the document's test is judged.
std::vector<CatalogueTest> ReadCatalogue()
{
    const OutputCapture capture;
    TestResultList results;
    std::vector<json> payloads;
    {
        const Corvane::PayloadRecorder recorder;
        RunTests(results);
        for (std::size_t i = 0; i < recorder.Payloads().size(); ++i)
            payloads.push_back(json::parse(recorder.JsonText(i)));
    }
    // The last test registered another callback. Its document is sent once more.
    const Corvane::PayloadRecorder recorder;
    CorvaneTavi::Instance().StartTrackFileChange(L"fileName1");
    payloads.push_back(json::parse(recorder.JsonText(0)));

    const std::vector<Corvane::ReportingMethod>& methods = Corvane::ReportingMethods();
    if (results.size() != methods.size())
        throw std::runtime_error("harness/Catalogue.cpp has " + std::to_string(results.size()) +
                                 " tests and check/ReportingMethods.cpp " + std::to_string(methods.size()) +
                                 " methods");
    std::vector<CatalogueTest> tests;
    for (std::size_t i = 0; i < methods.size(); ++i)
        tests.push_back({methods[i].name, "Testing " + Corvane::TestName(methods[i].name),
                         json::parse(Json(results[i].expected)),
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

const std::vector<CatalogueTest>& TheCatalogue()
{
    static const std::vector<CatalogueTest> tests = ReadCatalogue();
    return tests;
}

std::string DifferencesOf(const CatalogueTest& test)
{
    json sent;
    for (const auto& [key, expected] : test.expected.items())
        sent[key] = MemberOf(test.payload, key);
    return JsonDifferences(test.expected, sent);
}

std::string ExpectedJudgement(const CatalogueTest& test, const json& payload)
{
    if (payload.is_null())
    {
        const std::string expiry = test.isDocument ? "" : " an expired whitelist,";
        return "Unexpectedly recieved null JSON.\nThis could indicate a failure to download a whitelist," + expiry +
               " or a failure to have specified a waypoint or attribute in the uploaded whitelist.\n";
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
