// tavi_check as its users run it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/ReportingMethods.h>

#include "Differences.h"
#include "Program.h"

using nlohmann::json;

namespace
{

using Texts = std::vector<std::string>;

Texts Names()
{
    Texts names;
    for (const Corvane::ReportingMethod& method : Corvane::ReportingMethods())
        names.push_back(Corvane::TestName(method.name));
    return names;
}

// A script: the library answers the call of that number so, or with "default" every call.
json Answering(const std::string& call, const json& answer, const std::string& function = "TrackEvent")
{
    return {{function, {{call, answer}}}};
}

json Patch(const std::string& operation, const std::string& path, const json& value)
{
    return {{"patch", {{{"op", operation}, {"path", path}, {"value", value}}}}};
}

// The messages of a report's faults or remarks, with the number of calls or tests unless it is 1.
Texts MessagesOf(const json& list)
{
    Texts messages;
    for (const json& one : list)
    {
        const int count = one.value("calls", one.value("tests", 1));
        messages.push_back(one.at("message").get<std::string>() +
                           (count != 1 ? " (" + std::to_string(count) + ")" : ""));
    }
    return messages;
}

} // namespace

TEST(TaviCheck, PassesEveryTestOnceOnEitherLibrary)
{
    std::string expected;
    for (const std::string& name : Names())
        expected += name + " ... PASSED\n";
    expected += "\n" + std::to_string(Names().size()) + " passed, 0 failed\n";
    for (const ProgramCopy::Library library : {ProgramCopy::Library::StandIn, ProgramCopy::Library::Faulty})
    {
        const Outcome run = ProgramCopy(library).RunTaviCheck({"--strict"});
        EXPECT_PRED_FORMAT2(IsText, run.output, expected);
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.status, 0);
    }
}

TEST(TaviCheck, ReportsWhatTheLibraryDoesToCallsAndToTheStart)
{
    const json null = {{"payload", json()}};
    const json none = {{"callbacks", 0}};
    const std::string withheld = "The library hands over no payload for an event whose name is not in the vocabulary";
    const json unknownKey = Answering("default", Patch("add", "/user_id", 7));
    const std::string unknownKeyText = R"("user_id" is a key that docs/events.json does not have)";
    const struct
    {
        json script;
        Texts arguments;
        Texts faults = {};
        Texts errors = {};
        Texts remarks = {};
    } rows[] = {
        {Answering("1", {{"callbacks", 2}}), {"PPR"}, {"2 payloads were received, not one"}},
        {Answering("1", none), {"PPR"}, {"no payload was received"}},
        {Answering("default", Patch("replace", "/scope", "S")), {"MeshSize"}, {R"(scope: expected "C", sent "S" (7))"}},
        {Answering("1", {{"status", 9}}),
         {"PPR"},
         {R"(the call printed "CorvaneTavi::TrackWaypoint TaviDesktopSDK::TrackEvent")"}},
        {Answering("1", {{"payloads", {1, 2, 3}}}),
         {"PPR"},
         {"3 payloads were received, not one", "the payload is no object: 1", "the payload is no object: 2",
          "the payload is no object: 3"}},
        {Answering("1", {{"payloads", {1}}}, "SetTestingCallback"), {"PPR"}, {}, {"a payload came without a call: 1"}},
        {Answering("1", {{"status", 3}}, "Initialize"),
         {"PPR"},
         {},
         {R"(the start printed "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize")"}},
        {Answering("1", {{"status", 256}}, "SetTestingFlags"), {"PPR"}, {}, {"SetTestingFlags returned 256"}},
        {Answering("1", {{"status", 256}}, "SetTestingCallback"), {"PPR"}, {}, {"SetTestingCallback returned 256"}},
        {Answering("default", Patch("replace", "/product_master_id", "27.0.214")),
         {"MeshSize"},
         {},
         {R"(product_master_id: expected "CVSTUDIO_2027_0_EN", sent "27.0.214", in 7 of 7 payloads)"}},
        {unknownKey, {"PPR"}, {}, {}, {unknownKeyText}},
        {unknownKey, {"PPR", "--strict"}, {}, {unknownKeyText}, {unknownKeyText}},
        // The second call has a further known name, the three after it have others.
        {{{"TrackEvent", {{"3", null}, {"5", null}}}}, {"NavBarDragMove"}, {}, {}, {withheld}},
        {Answering("4", none), {"NavBarDragMove"}, {}, {}, {withheld}},
        {Answering("2", none), {"NavBarDragMove"}, {"no payload was received"}},
        {Answering("2", null),
         {"NavBarDragMove"},
         {"the payload is null: the whitelist may not have been downloaded, may have expired, or may lack the "
          "waypoint or an attribute"}},
    };
    const ProgramCopy copy;
    for (const auto& row : rows)
    {
        Texts arguments = {"--json", "--only"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Outcome run = copy.RunTaviCheck(arguments, row.script);
        const json report = json::parse(run.output);
        EXPECT_EQ(MessagesOf(report.value("/tests/0/faults"_json_pointer, json::array())), row.faults) << row.script;
        EXPECT_EQ(report["errors"], json(row.errors)) << row.script;
        EXPECT_EQ(MessagesOf(report["remarks"]), row.remarks) << row.script;
        EXPECT_EQ(run.status, row.faults.empty() && row.errors.empty() ? 0 : 1) << row.script;
        EXPECT_EQ(report["tests"].empty(), copy.Calls("TrackEvent").empty()) << row.script;
    }
}

TEST(TaviCheck, UploadsNothingAndTakesItsRecorderBackBeforeItRefusesPayloads)
{
    const ProgramCopy copy;
    copy.RunTaviCheck({"--only", "PPR"});
    EXPECT_EQ(copy.Calls("SetTestingFlags").front()["flags"]["Testing_EnableUpload"], false);
    EXPECT_EQ(copy.Calls("SetTestingCallback").size(), 3U);
}

TEST(TaviCheck, FailsForAPayloadWhileTheLibraryIsUnloaded)
{
    const Outcome run = ProgramCopy().RunTaviCheck({}, Answering("default", {{"atExit", {1}}}, "SetTestingCallback"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "tavi_check: a payload came without a call, after the last test\n");
    EXPECT_NE(run.output.find(" passed, 0 failed\n"), std::string::npos) << run.output;
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

TEST(TaviCheck, StartsNothingWithoutConsent)
{
    const ProgramCopy copy;
    const Outcome run = copy.RunTaviCheck({}, Answering("1", {{"status", 4}}, "IsOptedIn"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output,
              "ERROR   the user has not opted in to usage-data collection\n\n0 passed, 0 failed, 1 error\n");
    EXPECT_EQ(copy.Calls().size(), 1U);
}

TEST(TaviCheck, NamesTheTestThatCrashesAndLeavesAFailedReport)
{
    const ProgramCopy copy;
    const std::filesystem::path report = copy.Folder().Path() / "report.xml";
    const Outcome run =
        copy.RunTaviCheck({"--only", "MeshSize", "PPR", "--junit", "report.xml"}, Answering("8", {{"prints", ""}}));
    EXPECT_EQ(run.status, 9);
    EXPECT_EQ(run.output, "MeshSize ... PASSED\nPPR ... ");
    const std::string text = ReadFile(report);
    EXPECT_NE(text.find(" tests=\"2\" failures=\"0\" errors=\"1\" "), std::string::npos) << text;
    EXPECT_NE(text.find("<testcase name=\"PPR\" "), std::string::npos) << text;
    EXPECT_NE(text.find(">not finished</error>"), std::string::npos) << text;

    copy.RunTaviCheck({"--junit", "report.xml"}, Answering("1", {{"prints", ""}}, "Initialize"));
    EXPECT_NE(ReadFile(report).find("<testcase name=\"Start\" "), std::string::npos) << ReadFile(report);
}

TEST(TaviCheck, KeepsTheLibrarysOutputOutOfTheDocument)
{
    const Outcome run =
        ProgramCopy().RunTaviCheck({"--json", "--only", "MeshSize"}, Answering("default", {{"prints", "noise"}}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(json::parse(run.output)["summary"]["passed"], 1);
    EXPECT_NE(run.errors.find("noise"), std::string::npos) << run.errors;
    EXPECT_NE(run.errors.find("MeshSize ... "), std::string::npos) << run.errors;
}

TEST(TaviCheck, ListsAndRefusesWithoutALibraryAndWithoutConsent)
{
    const std::string seeHelp = "; --help tells what there is\n";
    const struct
    {
        Texts arguments;
        int status;
        std::string text; // the output's beginning, or the end of the one line on the error stream
    } rows[] = {
        {{"--list"}, 0, "CommandInvoked\nFileInput\nUpdateLicense\n"},
        {{"--whitelist", "json"}, 0, "[\n  {\n    \"method\": \"Track"},
        {{"--whitelist", "csv"}, 0, "method,waypoint,"},
        {{"--help"}, 0, "Usage: tavi_check [OPTION]...\n"},
        {{"--version"}, 0, "tavi_check " VERSION "\n"},
        {{"--only", "PPR", "MeshSise"}, 2, ": there is no test or method MeshSise; is it MeshSize?\n"},
        {{"--list", "--only", "xyzzy"}, 2, " or method xyzzy; --list prints those that there are\n"},
        {{"--junit", ""}, 2, seeHelp},
        {{"--junit=--json"}, 2, seeHelp},
        {{"--payloads", "-"}, 2, seeHelp},
        {{"--junit", "file", "--payloads", "./file"}, 2, seeHelp},
        {{"--whitelist", "xml"}, 2, seeHelp},
        {{"--list", "--json"}, 2, seeHelp},
        {{"--list", "--whitelist", "csv"}, 2, seeHelp},
        {{"--whitelist", "csv", "--only", "PPR"}, 2, seeHelp},
        {{"--captured", "file", "--only", "PPR"}, 2, seeHelp},
        {{"--captured", ""}, 2, seeHelp},
        {{"one\nand two"}, 2, seeHelp},
    };
    const ProgramCopy copy;
    for (const auto& row : rows)
    {
        const Outcome run = copy.RunTaviCheck(row.arguments, Answering("default", {{"status", 4}}, "IsOptedIn"));
        EXPECT_EQ(run.status, row.status) << json(row.arguments);
        EXPECT_TRUE(copy.Calls().empty()) << json(row.arguments);
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), row.status == 0 ? 0 : 1) << run.errors;
        if (row.status == 0)
            EXPECT_TRUE(run.output.starts_with(row.text)) << run.output;
        else
            EXPECT_TRUE(run.output.empty() && run.errors.starts_with("tavi_check: ") && run.errors.ends_with(row.text))
                << run.output << run.errors;
    }
}

TEST(TaviCheck, ReturnsThreeWhenOutputCannotBeWritten)
{
    const ProgramCopy copy;
    for (const json& script : {json::object(), Answering("1", {{"payload", json::object()}})})
    {
        for (const auto& [output, error] : BrokenOutputs())
            for (const Texts& arguments : {Texts{"--only", "MeshSize"}, {"--json", "--only", "MeshSize"}, {"--list"}})
            {
                const Outcome run = copy.RunTaviCheck(arguments, script, output);
                const std::string line =
                    "tavi_check: standard output cannot be written: " + std::system_category().message(error) + "\n";
                EXPECT_TRUE(run.errors.ends_with(line)) << run.errors;
                EXPECT_EQ(run.status, 3) << json(arguments) << script;
            }
        for (const char* const option : {"--junit", "--payloads"})
        {
            const Outcome run = copy.RunTaviCheck({option, "no such folder/file", "--only", "PPR"}, script);
            EXPECT_TRUE(run.errors.ends_with(": " + std::generic_category().message(ENOENT) + "\n")) << run.errors;
            EXPECT_EQ(run.status, 3) << option << script;
        }
    }
}

TEST(TaviCheck, WritesTestsAndPayloadsToFilesInOrder)
{
    const ProgramCopy copy;
    const std::string junit = "\xC3\xBC \xE4\xB8\xAD.xml";
    const std::string payloads = "\xC3\xBC \xE4\xB8\xAD.json";
    EXPECT_EQ(copy.RunTaviCheck({"--only", "MeshSize", "MeshPropertyChanged", "--junit", junit, "--payloads", payloads})
                  .status,
              0);

    const std::string report = ReadFile(copy.Folder().Path() / PathOf(junit));
    EXPECT_NE(report.find(" tests=\"2\" failures=\"0\" errors=\"0\" "), std::string::npos) << report;

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
    copy.RunTaviCheck({"--only", "PPR"});
    const std::string good = copy.Calls("TrackEvent").front()["payload"].dump();
    std::ofstream(copy.Folder().Path() / "captured") << good << "\n{}\n";
    Outcome run = copy.RunTaviCheck({"--captured", "captured"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.starts_with("line 1: good, TrackPPR\nline 2: bad\n")) << run.output;
    EXPECT_TRUE(copy.Calls().empty());
    run = copy.RunTaviCheck({"--captured", "captured", "--json"});
    EXPECT_EQ(run.status, 1);
    const json report = json::parse(run.output);
    EXPECT_EQ(report["summary"], json({{"good", 1}, {"bad", 1}}));
    EXPECT_EQ(report["events"]["TrackPPR"], 1);
    EXPECT_EQ(report["payloads"][1]["verdict"], "bad");

    EXPECT_EQ(copy.RunTaviCheck({"--captured", "-"}).status, 0); // standard input is empty
    for (const char* const name : {"no such file", "."})
    {
        run = copy.RunTaviCheck({"--captured", name});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.errors, "tavi_check: " + std::string(name) + " cannot be read\n");
    }
}
