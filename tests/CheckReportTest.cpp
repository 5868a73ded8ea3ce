// What tavi_check tells of a run, and its list for a whitelist.
#include <check/Report.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Document.h>
#include <check/Whitelist.h>

#include "Differences.h"

using namespace Corvane;
using nlohmann::json;

namespace
{

RunOutcome PassedAndFailed()
{
    RunOutcome outcome;
    outcome.tests.push_back({"One", "TrackOne", {}, {"machine", "user"}, {"timer"}, {}, 1, 1.25});
    outcome.tests.push_back({"Two", "", {"first \"fault\"", "second"}, {"user"}, {}, {"a line"}, 2, 0.0125});
    outcome.payloads = {R"({"b":1,"a":2})", "null"};
    return outcome;
}

DocumentKey Attribute(const std::string& name)
{
    return {name, "component_attributes", "string", "", false, false, "x"};
}

Document SmallDocument()
{
    const DocumentKey outside{"type", "", "string", "", false, false, "C"};
    return {"1.2.3",
            {{"One", "TrackOne", "CV.ONE", std::nullopt, "C", {outside, Attribute("CV.A"), Attribute("CV,\"B\"")}},
             {"Two", "TrackTwo", std::nullopt, "name", "C", {outside, Attribute("CV.A")}},
             {"Three", "TrackThree", "CV.THREE", std::nullopt, "C", {outside}},
             {"Four", "TrackFour", std::nullopt, std::nullopt, "S", {outside}}}};
}

} // namespace

TEST(CheckReport, TheTextHasALineForEachTestAndTheNumbersLast)
{
    RunOutcome outcome = PassedAndFailed();
    EXPECT_PRED_FORMAT2(IsText, TextReport(outcome),
                        "PASSED  One\n"
                        "FAILED  Two\n"
                        "    first \"fault\"\n"
                        "    second\n"
                        "\n"
                        "Top-level keys that docs/events.json does not name:\n"
                        "    machine: 1 test\n"
                        "    user: 2 tests\n"
                        "\n"
                        "Keys of the library's own that did not come:\n"
                        "    timer: 1 test\n"
                        "\n"
                        "1 passed, 1 failed\n");
    outcome.tests.pop_back();
    outcome.tests.front().furtherKeys.clear();
    outcome.tests.front().unsentKeys.clear();
    EXPECT_PRED_FORMAT2(IsText, TextReport(outcome), "PASSED  One\n\n1 passed, 0 failed\n");
    outcome.errors = {"an error"};
    EXPECT_PRED_FORMAT2(IsText, TextReport(outcome), "PASSED  One\nERROR   an error\n\n1 passed, 0 failed, 1 error\n");
}

TEST(CheckReport, AnErrorOutsideTheTestsIsNoPass)
{
    RunOutcome outcome;
    EXPECT_TRUE(outcome.Passed());
    outcome.errors = {"an error"};
    EXPECT_FALSE(outcome.Passed());
    EXPECT_FALSE(PassedAndFailed().Passed());
}

TEST(CheckReport, TheJsonDocumentHasEverything)
{
    RunOutcome outcome = PassedAndFailed();
    outcome.errors = {"an error"};
    EXPECT_PRED_FORMAT2(IsJson, json::parse(JsonReport(outcome, SmallDocument(), true)),
                        json({{"document", {{"version", "1.2.3"}}},
                              {"strict", true},
                              {"tests",
                               {{{"name", "One"},
                                 {"method", "TrackOne"},
                                 {"verdict", "passed"},
                                 {"faults", json::array()},
                                 {"further_keys", {"machine", "user"}},
                                 {"unsent_keys", {"timer"}},
                                 {"messages", json::array()},
                                 {"payloads", 1}},
                                {{"name", "Two"},
                                 {"method", json()},
                                 {"verdict", "failed"},
                                 {"faults", {"first \"fault\"", "second"}},
                                 {"further_keys", {"user"}},
                                 {"unsent_keys", json::array()},
                                 {"messages", {"a line"}},
                                 {"payloads", 2}}}},
                              {"errors", {"an error"}},
                              {"summary", {{"passed", 1}, {"failed", 1}, {"errors", 1}}}}));
}

TEST(CheckReport, TheJUnitReportHasACaseForEachTestAndOneForErrorsOutside)
{
    RunOutcome outcome = PassedAndFailed();
    const std::string cases =
        "  <testcase name=\"One\" classname=\"TaviCheck\" time=\"1.250\" />\n"
        "  <testcase name=\"Two\" classname=\"TaviCheck\" time=\"0.012\">\n"
        "    <failure type=\"Failed\" message=\"first &quot;fault&quot;\">first &quot;fault&quot;&#10;"
        "second</failure>\n"
        "  </testcase>\n";
    const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"tavi_check\" ";
    EXPECT_PRED_FORMAT2(IsText, JUnitReport(outcome),
                        head + "tests=\"2\" failures=\"1\" errors=\"0\" skipped=\"0\" time=\"1.262\">\n" + cases +
                            "</testsuite>\n");
    outcome.errors = {"one", "two"};
    EXPECT_PRED_FORMAT2(IsText, JUnitReport(outcome),
                        head + "tests=\"3\" failures=\"1\" errors=\"1\" skipped=\"0\" time=\"1.262\">\n" + cases +
                            "  <testcase name=\"OutsideTheTests\" classname=\"TaviCheck\" time=\"0.000\">\n"
                            "    <error type=\"Failed\" message=\"one\">one&#10;two</error>\n"
                            "  </testcase>\n"
                            "</testsuite>\n");
}

TEST(CheckReport, WhatXmlCannotHoldIsReplacedAndItsOwnCharactersAreEscaped)
{
    const std::string replacement = "\xEF\xBF\xBD";
    const struct
    {
        std::string text;
        std::string xml;
    } rows[] = {
        {"<a & b> \"c\" 'd'", "&lt;a &amp; b&gt; &quot;c&quot; 'd'"},
        {"tab\t line\n return\r", "tab&#9; line&#10; return&#13;"},
        {std::string("nul\0 bell\a escape\x1B[", 19),
         "nul" + replacement + " bell" + replacement + " escape" + replacement + "["},
        {"\xC3\xBC \xF0\x9F\x98\x80", "\xC3\xBC \xF0\x9F\x98\x80"},
        {"\xFF\xC3", replacement + replacement},
        {"\xEF\xBF\xBE \xEF\xBF\xBF \xEF\xBF\xBD", replacement + " " + replacement + " " + replacement},
    };
    for (const auto& row : rows)
    {
        RunOutcome outcome;
        outcome.tests.push_back({"One", "TrackOne", {row.text}, {}, {}, {}, 1, 0});
        const std::string report = JUnitReport(outcome);
        EXPECT_NE(report.find(" message=\"" + row.xml + "\">" + row.xml + "</failure>"), std::string::npos) << report;
    }
}

TEST(CheckReport, IllFormedTextSpoilsNoReport)
{
    RunOutcome outcome;
    outcome.tests.push_back({"One", "TrackOne", {"\xFF"}, {"\xFF"}, {"\xFF"}, {"\xFF"}, 1, 0});
    outcome.errors = {"\xFF"};
    const json report = json::parse(JsonReport(outcome, SmallDocument(), false));
    EXPECT_EQ(report["tests"][0]["faults"][0], "\xEF\xBF\xBD");
    EXPECT_EQ(report["errors"][0], "\xEF\xBF\xBD");
    EXPECT_EQ(TextReport(outcome).find('\xFF'), std::string::npos);
}

TEST(CheckReport, PayloadsAreAnArrayOfTextsAsTheyCame)
{
    RunOutcome outcome = PassedAndFailed();
    EXPECT_EQ(PayloadsAsJson(outcome), "[\n{\"b\":1,\"a\":2},\nnull\n]\n");
    outcome.payloads = {"{", "", "\xFF"};
    EXPECT_EQ(json::parse(PayloadsAsJson(outcome)), json({"{", "", "\xEF\xBF\xBD"}));
    outcome.payloads.clear();
    EXPECT_EQ(PayloadsAsJson(outcome), "[]\n");
}

TEST(CheckReport, TheWhitelistHasEveryEventWithItsAttributes)
{
    const auto attribute = [](const char* key) { return json({{"object", "component_attributes"}, {"key", key}}); };
    EXPECT_PRED_FORMAT2(IsJson, json::parse(WhitelistAsJson(SmallDocument())),
                        json({{{"method", "TrackOne"},
                               {"waypoint", "CV.ONE"},
                               {"name_from", json()},
                               {"type", "C"},
                               {"attributes", {attribute("CV.A"), attribute("CV,\"B\"")}}},
                              {{"method", "TrackTwo"},
                               {"waypoint", json()},
                               {"name_from", "name"},
                               {"type", "C"},
                               {"attributes", json::array({attribute("CV.A")})}},
                              {{"method", "TrackThree"},
                               {"waypoint", "CV.THREE"},
                               {"name_from", json()},
                               {"type", "C"},
                               {"attributes", json::array()}},
                              {{"method", "TrackFour"},
                               {"waypoint", json()},
                               {"name_from", json()},
                               {"type", "S"},
                               {"attributes", json::array()}}}));
}

TEST(CheckReport, AsCsvTheWhitelistHasALineForEachAttribute)
{
    EXPECT_EQ(WhitelistAsCsv(SmallDocument()), "method,waypoint,name_from,type,object,attribute\r\n"
                                               "TrackOne,CV.ONE,,C,component_attributes,CV.A\r\n"
                                               "TrackOne,CV.ONE,,C,component_attributes,\"CV,\"\"B\"\"\"\r\n"
                                               "TrackTwo,,name,C,component_attributes,CV.A\r\n"
                                               "TrackThree,CV.THREE,,C,,\r\n"
                                               "TrackFour,,,S,,\r\n");
}
