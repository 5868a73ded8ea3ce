// tavi_check's reports of a run, and its list for a whitelist.
#include <check/Report.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Document.h>
#include <check/ProductFile.h>
#include <check/Whitelist.h>
#include <telemetry/CorvaneTavi.h>

#include "Differences.h"

using namespace Corvane;
using nlohmann::json;

namespace
{

TestOutcome FailedTest(const std::string& name, const std::vector<CallFault>& faults)
{
    return {name, "Track" + name, faults, {"a line"}, 3, 2, 0.0125};
}

const CallFault WrongScope = {"TrackTwo(1)", {"scope", "C", "S", "a wrong scope"}, 2};
const CallFault WrongCount = {"TrackTwo(2)", {"", 1, 2, "2 payloads were received, not one"}, 1};

RunOutcome PassedAndFailed()
{
    RunOutcome outcome;
    outcome.tests = {{"One", "TrackOne", {}, {}, 1, 1, 1.25}, FailedTest("Two", {WrongScope, WrongCount})};
    outcome.payloads = {{"TrackOne()", R"({"b":1,"a":2})"}, {"", "null"}};
    outcome.remarks = {{"user is new", 2}};
    outcome.productRemark = "no file";
    outcome.productFaults = {{"product: wrong", 2}};
    return outcome;
}

} // namespace

TEST(CheckReport, AFaultIsPrintedOnceWithItsCallAndThenOnlyNamed)
{
    std::set<std::string> reported;
    EXPECT_EQ(VerdictText({"One", "TrackOne", {}, {}, 1, 1, 0}, reported), "PASSED\n");
    EXPECT_EQ(VerdictText(FailedTest("Two", {WrongScope}), reported),
              "FAILED\n    a wrong scope\n        by TrackTwo(1), and in 1 further call\n");
    EXPECT_EQ(VerdictText(FailedTest("Three", {WrongScope}), reported), "FAILED, as above: scope\n");
    EXPECT_EQ(VerdictText(FailedTest("Four", {WrongScope, WrongCount}), reported),
              "FAILED, as above: scope\n    2 payloads were received, not one\n        by TrackTwo(2)\n");
    EXPECT_EQ(VerdictText(FailedTest("Five", {WrongCount}), reported),
              "FAILED, as above: 2 payloads were received, not one\n");
}

TEST(Run, AMethodThatTheDocumentLacksAndAPayloadAfterTheLastCallAreWrong)
{
    const Progress progress = {[](const RunOutcome&) {}, [](const RunOutcome&, const std::string&) {},
                               [](const TestOutcome&) { CorvaneTavi::Instance().TrackNavBarClosed(); }};
    const RunOutcome outcome = ProveMethods({}, ProductFilePath(), {"TrackNavBarClosed"}, progress);
    ASSERT_EQ(outcome.FailedTests(), std::vector<std::string>{"NavBarClosed"});
    EXPECT_TRUE(outcome.tests[0].faults[0].fault.message.starts_with("docs/events.json lacks this method"));
    ASSERT_EQ(outcome.errors.size(), 1U);
    EXPECT_TRUE(outcome.errors[0].starts_with("a payload came without a call: {")) << outcome.errors[0];
}

TEST(CheckReport, TheClosingTextHasRemarksErrorsFailedNamesAndNumbers)
{
    const std::string remark = "REMARK  user is new: 2 tests\n";
    const std::string product = "ERROR   product: wrong, in 2 of 2 payloads\n";
    const std::string names = "\nFailed: Two\n1 passed, 1 failed, ";
    EXPECT_PRED_FORMAT2(IsText, ClosingText(PassedAndFailed(), false), remark + product + names + "1 error\n");
    EXPECT_PRED_FORMAT2(IsText, ClosingText(PassedAndFailed(), true),
                        "ERROR   user is new: 2 tests\n" + product + names + "3 errors\n");
    EXPECT_EQ(ProductRemarkText(PassedAndFailed(), false), "REMARK  no file\n");
    EXPECT_EQ(ProductRemarkText(PassedAndFailed(), true), "ERROR   no file\n");
    EXPECT_EQ(ProductRemarkText({}, false), "");
    EXPECT_EQ(ClosingText({}, true), "\n0 passed, 0 failed\n");
}

TEST(CheckReport, TheJsonDocumentHasEverything)
{
    RunOutcome outcome = PassedAndFailed();
    outcome.errors = {"an error"};
    const json document = json::parse(R"json({
        "document": {"version": "1.2.3"},
        "strict": false,
        "tests": [
            {"name": "One", "method": "TrackOne", "verdict": "passed", "faults": [], "messages": [], "calls": 1,
             "payloads": 1},
            {"name": "Two", "method": "TrackTwo", "verdict": "failed", "faults": [
                {"call": "TrackTwo(1)", "key": "scope", "expected": "C", "sent": "S",
                 "message": "a wrong scope", "calls": 2},
                {"call": "TrackTwo(2)", "key": null, "expected": 1, "sent": 2,
                 "message": "2 payloads were received, not one", "calls": 1}],
             "messages": ["a line"], "calls": 3, "payloads": 2}],
        "errors": ["an error", "product: wrong, in 2 of 2 payloads"],
        "remarks": [{"message": "no file", "tests": null}, {"message": "user is new", "tests": 2}],
        "summary": {"passed": 1, "failed": 1, "errors": 2}})json");
    EXPECT_PRED_FORMAT2(IsJson, json::parse(JsonReport(outcome, Document{"1.2.3", {}}, false)), document);
}

TEST(CheckReport, TheJUnitReportHasACaseForEachTestAndOneForErrors)
{
    const std::string report = JUnitReport(PassedAndFailed(), false);
    EXPECT_PRED_FORMAT2(IsText, report,
                        R"xml(<?xml version="1.0" encoding="UTF-8"?>
<testsuite name="tavi_check" tests="3" failures="1" errors="1" skipped="0" time="1.262">
  <testcase name="One" classname="TaviCheck" time="1.250" />
  <testcase name="Two" classname="TaviCheck" time="0.012">
    <failure type="Failed" message="a wrong scope (by TrackTwo(1), and in 1 further call)">a wrong scope )xml"
                        R"xml((by TrackTwo(1), and in 1 further call)&#10;)xml"
                        R"xml(2 payloads were received, not one (by TrackTwo(2))</failure>
  </testcase>
  <testcase name="OutsideTheTests" classname="TaviCheck" time="0.000">
    <error type="Failed" message="product: wrong, in 2 of 2 payloads">product: wrong, in 2 of 2 payloads</error>
  </testcase>
</testsuite>
)xml");
}

TEST(CheckReport, XmlIsEscapedAndIllFormedTextSpoilsNoReport)
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
        outcome.tests = {FailedTest("One", {{"", {"", {}, {}, row.text}, 1}})};
        const std::string report = JUnitReport(outcome, false);
        EXPECT_NE(report.find(" message=\"" + row.xml + "\">" + row.xml + "</failure>"), std::string::npos) << report;
        outcome.errors = {row.text};
        EXPECT_TRUE(json::accept(JsonReport(outcome, {}, false))) << row.xml;
        std::set<std::string> reported;
        const std::string text = VerdictText(outcome.tests.front(), reported) + ClosingText(outcome, false);
        EXPECT_EQ(text.find('\xFF'), std::string::npos) << text;
    }
}

TEST(CheckReport, PayloadsAreAnArrayOfTextsAsTheyCameEachWithItsCall)
{
    RunOutcome outcome = PassedAndFailed();
    EXPECT_EQ(PayloadsAsJson(outcome), "[\n{\"call\": \"TrackOne()\", \"payload\": {\"b\":1,\"a\":2}},\n"
                                       "{\"call\": \"\", \"payload\": null}\n]\n");
    outcome.payloads = {{"TrackOne()", "{"}, {"", "\xFF"}};
    EXPECT_EQ(json::parse(PayloadsAsJson(outcome)),
              json({{{"call", "TrackOne()"}, {"payload", "{"}}, {{"call", ""}, {"payload", "\xEF\xBF\xBD"}}}));
    outcome.payloads.clear();
    EXPECT_EQ(PayloadsAsJson(outcome), "[]\n");
}

TEST(CheckReport, TheWhitelistHasEveryEventUnderEveryNameWithItsAttributes)
{
    const Document document = ReadDocument(CompiledInDocument());
    const std::string csv = WhitelistAsCsv(document);
    EXPECT_TRUE(csv.starts_with("method,waypoint,name_from,type,object,attribute\r\n"));
    for (const std::string line :
         {"TrackMeshSize,CV.MESH_SIZE_COUNT,,C,component_attributes,CV.MESH_SIZE_NODES",
          "TrackNavBarClosed,COMMON.ZEPH_NB_CLOSED,,C,,",
          "TrackNavBarDragMove,COMMON.ZEPH_NB_DRAGGED,waypointName,C,component_attributes,COMMON.ZEPH_NB_POSITION",
          "TrackNavBarDragMove,COMMON.ZEPH_NB_MOVED,waypointName,C,component_attributes,COMMON.ZEPH_NB_POSITION"})
        EXPECT_NE(csv.find("\n" + line + "\r\n"), std::string::npos) << line;
    const json license = json::parse(R"json({
        "method": "TrackUpdateLicense", "waypoint": null, "name_from": null, "type": "S", "attributes": [
            {"object": "entitlement_properties", "key": "CV.EXPIRY_DAYS"},
            {"object": "entitlement_properties", "key": "CV.FEATURE_VERSION"},
            {"object": "entitlement_properties", "key": "CV.LICENSE_BEHAVIOR"}]})json");
    const json list = json::parse(WhitelistAsJson(document));
    EXPECT_EQ(std::count(list.begin(), list.end(), license), 1);
}
