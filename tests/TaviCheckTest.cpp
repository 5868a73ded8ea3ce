// tavi_check as its users run it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/ReportingMethods.h>

#include "Differences.h"
#include "Program.h"
#include "Utf8Path.h"

using nlohmann::json;

namespace
{

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const Corvane::ReportingMethod& method : Corvane::ReportingMethods())
        names.push_back(Corvane::TestName(method.name));
    return names;
}

std::string CountOfTests()
{
    return std::to_string(Names().size());
}

// A script: the library answers the run's first event so. --only selects the event's test.
json Answering(const json& answer)
{
    return {{"TrackEvent", {{"1", answer}}}};
}

json Patch(const std::string& operation, const std::string& path, const json& value = {})
{
    json one = {{"op", operation}, {"path", path}};
    if (!value.is_null())
        one[operation == "copy" ? "from" : "value"] = value;
    return {{"patch", {one}}};
}

// A script: the library answers every event so.
json AnsweringAll(const json& answer)
{
    return {{"TrackEvent", {{"default", answer}}}};
}

struct Report
{
    Outcome run;
    json report; // what --json prints

    // The messages of failed tests, by name.
    json Faults() const
    {
        json faults = json::object();
        for (const json& test : report.at("tests"))
        {
            for (const json& fault : test.at("faults"))
                faults[test.at("name").get<std::string>()].push_back(fault.at("message"));
        }
        return faults;
    }
};

Report RunWithJson(const ProgramCopy& copy, const json& script, std::vector<std::string> arguments = {})
{
    arguments.emplace_back("--json");
    Report report{copy.RunTaviCheck(arguments, script), {}};
    report.report = json::parse(report.run.output);
    return report;
}

} // namespace

TEST(TaviCheck, PassesEveryTestOnceOnEitherLibrary)
{
    std::string expected;
    for (const std::string& name : Names())
        expected += name + " ... PASSED\n";
    expected += "\n" + CountOfTests() + " passed, 0 failed\n";
    for (const ProgramCopy::Library library : {ProgramCopy::Library::StandIn, ProgramCopy::Library::Faulty})
    {
        const Outcome run = ProgramCopy(library).RunTaviCheck({"--strict"});
        EXPECT_PRED_FORMAT2(IsText, run.output, expected);
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.status, 0);
    }
}

TEST(TaviCheck, RunsWhereItWasBuilt)
{
    const Outcome run = RunProgram({.program = PathOf(TAVI_CHECK_FILE), .workingFolder = "/"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 0) << run.output;
}

TEST(TaviCheck, FailsATestWhoseCallDoesNotSendExactlyOneRightPayload)
{
    const ProgramCopy copy;
    const struct
    {
        json answer;
        std::string fault;
    } rows[] = {
        {{{"callbacks", 2}}, "2 payloads were received, not one"},
        {{{"callbacks", 0}}, "no payload was received"},
        {Patch("replace", "/scope", "S"), R"(scope: expected "C", sent "S")"},
        {{{"status", 9}}, R"(the call printed "CorvaneTavi::TrackWaypoint TaviDesktopSDK::TrackEvent")"},
    };
    for (const auto& row : rows)
    {
        const Report report = RunWithJson(copy, Answering(row.answer), {"--only", "PPR"});
        EXPECT_EQ(report.run.status, 1) << row.fault;
        EXPECT_PRED_FORMAT2(IsJson, report.Faults(), json({{"PPR", {row.fault}}}));
        EXPECT_EQ(report.report["errors"], json::array()) << row.fault;
    }
}

TEST(TaviCheck, DoesNotPassWhatHasFailedOnce)
{
    const ProgramCopy copy;
    const json wrong = {{"type", "C"}};
    RunWithJson(copy, json::object(), {"--only", "PPR"});
    const json right = copy.Calls("TrackEvent").front()["payload"];
    for (const json& payloads : {json({wrong, right}), json({right, wrong}), json({right, wrong, right})})
    {
        const Report report = RunWithJson(copy, Answering({{"payloads", payloads}}), {"--only", "PPR"});
        EXPECT_EQ(report.run.status, 1) << payloads;
        EXPECT_NE(report.Faults().dump().find("component_name: expected"), std::string::npos) << payloads;
    }
}

TEST(TaviCheck, FailsForAPayloadWithoutACall)
{
    const json script = {{"SetTestingCallback", {{"1", {{"payloads", {{{"type", "C"}}}}}}}}};
    const Report report = RunWithJson(ProgramCopy(), script);
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.Faults(), json::object());
    EXPECT_EQ(report.report["errors"], json({R"(a payload came without a call: {"type":"C"})"}));
}

TEST(TaviCheck, FailsForAPayloadWhileTheLibraryIsUnloaded)
{
    const json script = {{"SetTestingCallback", {{"default", {{"atExit", {{{"type", "C"}}}}}}}}};
    const Outcome run = ProgramCopy().RunTaviCheck({}, script);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "tavi_check: a payload came without a call, after the last test\n");
    EXPECT_NE(run.output.find(" passed, 0 failed\n"), std::string::npos) << run.output;
}

TEST(TaviCheck, FailsForARemarkOnlyIfStrict)
{
    const ProgramCopy copy;
    const json script = AnsweringAll(Patch("add", "/user_id", 7));
    const std::string remark = R"("user_id" is a key that docs/events.json does not have)";
    const Outcome run = copy.RunTaviCheck({}, script);
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.ends_with(" ... PASSED\nREMARK  " + remark + ": " + CountOfTests() + " tests\n\n" +
                                     CountOfTests() + " passed, 0 failed\n"))
        << run.output;
    const Report strict = RunWithJson(copy, script, {"--strict"});
    EXPECT_EQ(strict.run.status, 1);
    EXPECT_EQ(strict.report["errors"], json({remark}));
}

TEST(TaviCheck, PrintsAWrongProductOnceForAllPayloads)
{
    const json script = AnsweringAll(Patch("replace", "/product_master_id", "27.0.214"));
    const Outcome run = ProgramCopy().RunTaviCheck({}, script);
    EXPECT_EQ(run.status, 1);
    const std::string error = R"(ERROR   product_master_id: expected "CVSTUDIO_2027_0_EN", sent "27.0.214", in )";
    EXPECT_NE(run.output.find(error), std::string::npos) << run.output;
    EXPECT_EQ(run.output.find("FAILED"), std::string::npos) << run.output;
}

TEST(TaviCheck, LetsTheLibraryWithholdEventsOfUnknownNames)
{
    const ProgramCopy copy;
    // The second call has a further known name, the three after it have others.
    const json null = {{"payload", json()}};
    const json none = {{"callbacks", 0}};
    const json script = {{"TrackEvent", {{"3", null}, {"4", none}, {"5", null}}}};
    const Report report = RunWithJson(copy, script, {"--only", "NavBarDragMove"});
    EXPECT_EQ(report.run.status, 0);
    EXPECT_EQ(report.report["remarks"][0]["message"],
              "The library hands over no payload for an event whose name is not in the vocabulary");
    EXPECT_EQ(RunWithJson(copy, {{"TrackEvent", {{"2", null}}}}, {"--only", "NavBarDragMove"}).run.status, 1);
}

TEST(TaviCheck, RemarksOnAProductFileThatIsMissingOrBroken)
{
    const ProgramCopy copy;
    const auto expectRemark = [&copy](const std::string& remark)
    {
        const Outcome run = copy.RunTaviCheck({"--only", "NavBarClosed"});
        EXPECT_EQ(run.status, 0) << run.output;
        const std::string line = run.output.substr(0, run.output.find('\n'));
        EXPECT_TRUE(line.starts_with("REMARK  The product file ")) << line;
        EXPECT_NE(line.find(remark), std::string::npos) << line;
    };
    std::ofstream(copy.ProductFile()) << R"(<?xml version="1.0"?><upi_element name="level">)"
                                      << R"(<upi_attribute name="name" value="productline"/>)"
                                      << R"(<upi_attribute name="id" value="P"/></upi_element>)";
    expectRemark(R"(upiconfig.xml has no release, no master, no build: sent is "undefined")");
    std::ofstream(copy.ProductFile()) << "<a></b>";
    expectRemark(R"(upiconfig.xml is not well-formed XML: the product is "undefined")");
    std::filesystem::remove(copy.ProductFile());
    expectRemark("upiconfig.xml cannot be read, ");
    EXPECT_EQ(copy.RunTaviCheck({"--only", "NavBarClosed", "--strict"}).status, 1);
}

TEST(TaviCheck, FailsForALineThatTheStartPrints)
{
    const Report report = RunWithJson(ProgramCopy(), {{"Initialize", {{"1", {{"status", 3}}}}}});
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.report["errors"],
              json({R"(the start printed "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize")"}));
    EXPECT_EQ(report.report["summary"]["passed"], Names().size());
}

TEST(TaviCheck, StartsNothingWithoutConsent)
{
    const ProgramCopy copy;
    const Report report = RunWithJson(copy, {{"IsOptedIn", {{"1", {{"status", 4}}}}}});
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.report["errors"], json({"the user has not opted in to usage-data collection"}));
    EXPECT_EQ(report.report["tests"], json::array());
    EXPECT_EQ(copy.Calls().size(), 1U);
}

TEST(TaviCheck, ReportsARefusalOfTestModeAndRunsNothing)
{
    const ProgramCopy copy;
    for (const std::string function : {"SetTestingFlags", "SetTestingCallback"})
    {
        const Outcome run = copy.RunTaviCheck({}, {{function, {{"1", {{"status", 256}}}}}});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "ERROR   " + function + " returned 256\n\n0 passed, 0 failed, 1 error\n");
        EXPECT_TRUE(copy.Calls("TrackEvent").empty());
    }
}

TEST(TaviCheck, NamesTheTestThatCrashesAndLeavesAFailedReport)
{
    const ProgramCopy copy;
    const std::filesystem::path report = copy.Folder().Path() / "report.xml";
    std::ofstream(report) << "an earlier report";
    const Outcome run = copy.RunTaviCheck({"--only", "MeshSize", "PPR", "--junit", "report.xml"},
                                          {{"TrackEvent", {{"8", {{"prints", ""}}}}}});
    EXPECT_EQ(run.status, 9);
    EXPECT_EQ(run.output, "MeshSize ... PASSED\nPPR ... ");
    const std::string text = ReadFile(report);
    EXPECT_NE(text.find(" tests=\"2\" failures=\"0\" errors=\"1\" "), std::string::npos) << text;
    EXPECT_NE(text.find("<testcase name=\"PPR\" "), std::string::npos) << text;
    EXPECT_NE(text.find(">not finished</error>"), std::string::npos) << text;

    std::ofstream(report) << "an earlier report";
    copy.RunTaviCheck({"--junit", "report.xml"}, {{"Initialize", {{"1", {{"prints", ""}}}}}});
    EXPECT_NE(ReadFile(report).find("<testcase name=\"Start\" "), std::string::npos) << ReadFile(report);
}

TEST(TaviCheck, KeepsTheLibrarysOutputOutOfTheDocument)
{
    const Report report = RunWithJson(ProgramCopy(), AnsweringAll({{"prints", "noise"}}), {"--only", "MeshSize"});
    EXPECT_EQ(report.run.status, 0);
    EXPECT_EQ(report.report["summary"]["passed"], 1);
    EXPECT_NE(report.run.errors.find("noise"), std::string::npos) << report.run.errors;
    EXPECT_NE(report.run.errors.find("MeshSize ... "), std::string::npos) << report.run.errors;
}

TEST(TaviCheck, ListsWithoutALibraryAndWithoutConsent)
{
    const ProgramCopy copy;
    const json script = {{"IsOptedIn", {{"default", {{"status", 4}}}}}};
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--list"},
                                                      {"--whitelist", "json"},
                                                      {"--whitelist", "csv"},
                                                      {"--help"},
                                                      {"--version"}})
    {
        const Outcome run = copy.RunTaviCheck(arguments, script);
        EXPECT_EQ(run.status, 0) << arguments.front();
        EXPECT_NE(run.output, "") << arguments.front();
        EXPECT_EQ(run.errors, "") << arguments.front();
        EXPECT_TRUE(copy.Calls().empty()) << arguments.front();
    }
    std::string list;
    for (const std::string& name : Names())
        list += name + "\n";
    EXPECT_EQ(copy.RunTaviCheck({"--list"}).output, list);
    EXPECT_TRUE(copy.RunTaviCheck({"--whitelist", "csv"}).output.starts_with("method,waypoint,"));
    EXPECT_TRUE(json::accept(copy.RunTaviCheck({"--whitelist", "json"}).output));
    EXPECT_EQ(copy.RunTaviCheck({"--list", "--only", "mesh*", "TrackPPR", "--only", "3DC?sed"}).output,
              "MeshSize\nMeshPropertyChanged\n3DCUsed\nPPR\n");
    EXPECT_EQ(copy.RunTaviCheck({"--version"}).output, "tavi_check " VERSION "\n");
    std::istringstream help(copy.RunTaviCheck({"--help"}).output);
    for (std::string line; std::getline(help, line);)
        EXPECT_LE(line.size(), 80U) << line;
}

TEST(TaviCheck, RefusesWrongArgumentsInOneLine)
{
    const ProgramCopy copy;
    const std::vector<std::string> rows[] = {
        {"--unknown"},
        {"name"},
        {"--only"},
        {"--junit"},
        {"--junit", ""},
        {"--junit", "--json"},
        {"--junit=--json"},
        {"--payloads", "-"},
        {"--junit", "file", "--payloads", "./file"},
        {"--whitelist"},
        {"--whitelist", "xml"},
        {"--list", "--json"},
        {"--list", "--strict"},
        {"--list", "--whitelist", "csv"},
        {"--whitelist", "csv", "--only", "PPR"},
        {"--captured", "file", "--only", "PPR"},
        {"--captured", ""},
        {"--junit", "a", "--junit", "b"},
        {"one\nand two"},
    };
    for (const std::vector<std::string>& arguments : rows)
    {
        const Outcome run = copy.RunTaviCheck(arguments);
        EXPECT_EQ(run.status, 2) << json(arguments);
        EXPECT_EQ(run.output, "") << run.errors;
        EXPECT_TRUE(run.errors.starts_with("tavi_check: ")) << run.errors;
        EXPECT_TRUE(run.errors.ends_with("; --help tells what there is\n")) << run.errors;
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_TRUE(copy.Calls().empty()) << run.errors;
    }
}

TEST(TaviCheck, SuggestsANameForOneThatNoTestHas)
{
    const ProgramCopy copy;
    const Outcome run = copy.RunTaviCheck({"--only", "PPR", "MeshSise"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "tavi_check: there is no test or method MeshSise; is it MeshSize?\n");
    EXPECT_TRUE(copy.Calls().empty());
    EXPECT_EQ(copy.RunTaviCheck({"--list", "--only", "xyzzy"}).errors,
              "tavi_check: there is no test or method xyzzy; --list prints those that there are\n");
}

TEST(TaviCheck, ReturnsThreeWhenOutputCannotBeWritten)
{
    const ProgramCopy copy;
    for (const auto& [output, error] : BrokenOutputs())
        for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--only", "MeshSize"},
                                                          {"--json", "--only", "MeshSize"},
                                                          {"--list"},
                                                          {"--whitelist", "csv"},
                                                          {"--help"},
                                                          {"--version"}})
            for (const json& script : {json::object(), Answering({{"payload", json::object()}})})
            {
                const Outcome run = copy.RunTaviCheck(arguments, script, output);
                const std::string line =
                    "tavi_check: standard output cannot be written: " + std::system_category().message(error) + "\n";
                EXPECT_TRUE(run.errors.ends_with(line)) << run.errors;
                EXPECT_EQ(run.status, 3) << json(arguments) << script;
            }
}

TEST(TaviCheck, ReturnsThreeWhenAFileCannotBeWritten)
{
    const ProgramCopy copy;
    const std::string error = std::generic_category().message(ENOENT);
    for (const char* const option : {"--junit", "--payloads"})
        for (const json& script : {json::object(), Answering({{"payload", json::object()}})})
        {
            const Outcome run = copy.RunTaviCheck({option, "no such folder/file", "--only", "PPR"}, script);
            EXPECT_EQ(run.errors, "tavi_check: no such folder/file cannot be written: " + error + "\n");
            EXPECT_EQ(run.status, 3) << option << script;
        }
}

TEST(TaviCheck, WritesTestsAndPayloadsToFilesInOrder)
{
    const ProgramCopy copy;
    const std::string junit = "\xC3\xBC \xE4\xB8\xAD.xml";
    const std::string payloads = "\xC3\xBC \xE4\xB8\xAD.json";
    EXPECT_EQ(copy.RunTaviCheck({"--only", "*Mesh*", "--junit", junit, "--payloads", payloads}).status, 0);

    const std::string report = ReadFile(copy.Folder().Path() / PathOf(junit));
    EXPECT_NE(report.find(" tests=\"2\" failures=\"0\" errors=\"0\" "), std::string::npos) << report;
    EXPECT_LT(report.find("<testcase name=\"MeshSize\""), report.find("<testcase name=\"MeshPropertyChanged\""));

    const json received = json::parse(ReadFile(copy.Folder().Path() / PathOf(payloads)));
    const std::vector<json> calls = copy.Calls("TrackEvent");
    ASSERT_EQ(received.size(), calls.size());
    EXPECT_EQ(received[0]["call"], "TrackMeshSize(101, 102)");
    for (std::size_t i = 0; i < calls.size(); ++i)
        EXPECT_PRED_FORMAT2(IsJson, received[i]["payload"], calls[i]["payload"]) << i;
}

TEST(TaviCheck, JudgesCapturedPayloadsWithoutACall)
{
    const ProgramCopy copy;
    RunWithJson(copy, json::object(), {"--only", "PPR"});
    const std::string good = copy.Calls("TrackEvent").front()["payload"].dump();
    const std::filesystem::path file = copy.Folder().Path() / "captured";
    std::ofstream(file) << good << "\n";
    Outcome run = copy.RunTaviCheck({"--captured", "captured"});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.starts_with("line 1: good, TrackPPR\n\nCame:\n    TrackPPR: 1\n\nNever came:\n"))
        << run.output;
    EXPECT_TRUE(copy.Calls().empty());

    std::ofstream(file) << good << "\n{}\n";
    run = copy.RunTaviCheck({"--captured", "captured", "--json"});
    EXPECT_EQ(run.status, 1);
    const json report = json::parse(run.output);
    EXPECT_EQ(report["summary"], json({{"good", 1}, {"bad", 1}}));
    EXPECT_EQ(report["events"]["TrackPPR"], 1);
    EXPECT_EQ(report["payloads"][1]["verdict"], "bad");

    for (const char* const name : {"no such file", "."})
    {
        run = copy.RunTaviCheck({"--captured", name});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.errors, "tavi_check: " + std::string(name) + " cannot be read\n");
    }
}
