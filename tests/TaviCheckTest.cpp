// tavi_check as its users run it: what it finds that cvtavi_test's rules let pass, and what it tells.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include <nlohmann/json.hpp>

#include "CatalogueModel.h"
#include "Differences.h"
#include "Program.h"
#include "Utf8Path.h"

using nlohmann::json;

namespace
{

// "MeshSize" of "Testing MeshSize".
std::string NameOf(const CatalogueTest& test)
{
    return test.title.substr(std::string("Testing ").size());
}

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const CatalogueTest& test : TheCatalogue())
        names.push_back(NameOf(test));
    return names;
}

std::string Lines(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += name + "\n";
    return text;
}

// The number of the test's event, counted from 1.
std::string NumberOf(const std::string& test)
{
    const std::vector<std::string> names = Names();
    return std::to_string(1 + (std::find(names.begin(), names.end(), test) - names.begin()));
}

const json& PayloadOf(const std::string& test)
{
    return TheCatalogue().at(std::stoul(NumberOf(test)) - 1).payload;
}

// The library answers the event of the test so.
json Answering(const std::string& test, const json& answer)
{
    return {{"TrackEvent", {{NumberOf(test), answer}}}};
}

json Patch(const std::string& operation, const std::string& path, const json& value = {})
{
    json one = {{"op", operation}, {"path", path}};
    if (!value.is_null())
        one[operation == "copy" ? "from" : "value"] = value;
    return {{"patch", {one}}};
}

struct Report
{
    Outcome run;
    json report; // what --json prints

    // Of the tests that failed, by name.
    json Faults() const
    {
        json faults = json::object();
        for (const json& test : report.at("tests"))
        {
            if (test.at("verdict") != "passed")
                faults[test.at("name").get<std::string>()] = test.at("faults");
        }
        return faults;
    }
};

Report Check(const TaviCheckCopy& copy, const json& script, std::vector<std::string> arguments = {})
{
    arguments.emplace_back("--json");
    Report report{copy.RunTaviCheck(arguments, script), {}};
    EXPECT_EQ(report.run.errors, "");
    report.report = json::parse(report.run.output);
    return report;
}

json NoTests()
{
    return {{"passed", 0}, {"failed", 0}, {"errors", 1}};
}

struct WrongEvent
{
    const char* what;
    std::string test;
    json script;
    json faults;
};

// Each is let pass by cvtavi_test's rules.
std::vector<WrongEvent> WrongEvents()
{
    const std::string wrongName = R"(component_name: expected "CV.MESH_SIZE_COUNT", sent "CV.OTHER")";
    json wrong = PayloadOf("MeshSize");
    wrong["component_name"] = "CV.OTHER";

    // In the catalogue's document both are 12, and in the other that is sent here they differ.
    const json sizeAsSource = Patch("copy", "/content_meta/COMMON.FILE.SOURCE", "/content_meta/COMMON.FILE.SIZE");
    json documents = Answering("StartTrackFileChange", sizeAsSource);
    documents["TrackEvent"][std::to_string(TheCatalogue().size() + 1)] = sizeAsSource;

    return {
        {"SentTwice", "MeshSize", Answering("MeshSize", {{"callbacks", 2}}), {"2 payloads were received, not one"}},
        {"WrongThenRight",
         "MeshSize",
         Answering("MeshSize", {{"payloads", {wrong, PayloadOf("MeshSize")}}}),
         {"2 payloads were received, not one", "payload 1: " + wrongName}},
        {"WithoutContentSize",
         "FileInput",
         Answering("FileInput", Patch("remove", "/content_size")),
         {"content_size: expected 4042, not sent"}},
        {"WrongComponentType",
         "PPR",
         Answering("PPR", Patch("replace", "/component_type", "button")),
         {R"(component_type: expected "waypoint", sent "button")"}},
        {"WrongScope",
         "MeshSize",
         Answering("MeshSize", Patch("replace", "/scope", "S")),
         {R"(scope: expected "C", sent "S")"}},
        {"SizeAsSource",
         "StartTrackFileChange",
         documents,
         {"a document of size 4042 and source 7: "
          R"(content_meta: COMMON.FILE.SOURCE: expected "7", sent "4042")"}},
    };
}

} // namespace

TEST(TaviCheck, AGoodRunPassesEveryTestOnceOnEitherLibrary)
{
    std::string expected;
    for (const std::string& name : Names())
        expected += "PASSED  " + name + "\n";
    expected.append("\n").append(std::to_string(TheCatalogue().size())).append(" passed, 0 failed\n");
    for (const ProgramCopy::Library library : {ProgramCopy::Library::StandIn, ProgramCopy::Library::Faulty})
    {
        for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, {"--strict"}})
        {
            const Outcome run = TaviCheckCopy(library).RunTaviCheck(arguments);
            EXPECT_PRED_FORMAT2(IsText, run.output, expected);
            EXPECT_EQ(run.errors, "");
            EXPECT_EQ(run.status, 0);
        }
    }
}

TEST(TaviCheck, TheBuiltProgramRunsWhereItWasBuilt)
{
    const Outcome run = RunProgram({.program = PathOf(TAVI_CHECK_FILE), .workingFolder = "/"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 0) << run.output;
}

TEST(TaviCheck, FindsWhatTheTestProgramsRulesLetPass)
{
    const TaviCheckCopy copy;
    for (const WrongEvent& wrong : WrongEvents())
    {
        const Outcome lenient = copy.Run(wrong.script.dump());
        EXPECT_EQ(lenient.status, 0) << wrong.what << "\n" << FirstLines(lenient.output, 20);

        const Report strict = Check(copy, wrong.script);
        EXPECT_EQ(strict.run.status, 1) << wrong.what;
        EXPECT_PRED_FORMAT2(IsJson, strict.Faults(), json({{wrong.test, wrong.faults}})) << wrong.what;
        EXPECT_EQ(strict.report["errors"], json::array()) << wrong.what;
    }
}

TEST(TaviCheck, WhatFailedOnceStaysFailed)
{
    const TaviCheckCopy copy;
    const json right = PayloadOf("PPR");
    const json wrong = PayloadOf("MeshSize");
    for (const json& payloads : {json({wrong, right}), json({right, wrong}), json({right, wrong, right})})
    {
        const Report report = Check(copy, Answering("PPR", {{"payloads", payloads}}));
        EXPECT_EQ(report.run.status, 1) << payloads;
        ASSERT_TRUE(report.Faults().contains("PPR")) << payloads;
        EXPECT_EQ(report.Faults().size(), 1U) << payloads;
        EXPECT_NE(report.Faults()["PPR"].dump().find("component_name: expected"), std::string::npos) << payloads;
    }
}

TEST(TaviCheck, APayloadThatDoesNotComeBackFails)
{
    const Report report = Check(TaviCheckCopy(), Answering("PPR", {{"callbacks", 0}}));
    EXPECT_EQ(report.run.status, 1);
    EXPECT_PRED_FORMAT2(IsJson, report.Faults(), json({{"PPR", {"no payload was received"}}}));
}

TEST(TaviCheck, ANullPayloadFailsAndTheWhitelistIsNamed)
{
    const Report report = Check(TaviCheckCopy(), Answering("PPR", {{"payload", json()}}));
    EXPECT_EQ(report.run.status, 1);
    EXPECT_NE(report.Faults().dump().find("the payload is null: the whitelist"), std::string::npos) << report.Faults();
}

TEST(TaviCheck, APayloadWithoutATestInProgressIsAnError)
{
    const json script = {{"SetTestingCallback", {{"1", {{"payloads", {{{"type", "C"}}}}}}}}};
    const Report report = Check(TaviCheckCopy(), script);
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.Faults(), json::object());
    EXPECT_EQ(report.report["errors"], json({R"(a payload without a test in progress: {"type":"C"})"}));
}

TEST(TaviCheck, APayloadWhileTheLibraryIsUnloadedIsAnErrorToo)
{
    const json script = {{"SetTestingCallback", {{"1", {{"atExit", {{{"type", "C"}}}}}}}}};
    const Outcome run = TaviCheckCopy().RunTaviCheck({}, script);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "tavi_check: a payload without a test in progress, after the last test\n");
    EXPECT_NE(run.output.find(" passed, 0 failed\n"), std::string::npos) << run.output;
}

TEST(TaviCheck, FurtherTopLevelKeysAreListedAndFailOnlyIfStrict)
{
    const TaviCheckCopy copy;
    const json script = {{"TrackEvent", {{"default", Patch("add", "/user_id", 7)}}}};
    const Outcome run = copy.RunTaviCheck({}, script);
    EXPECT_EQ(run.status, 0);
    const std::string count = std::to_string(TheCatalogue().size());
    EXPECT_NE(run.output.find("\n\nTop-level keys that docs/events.json does not name:\n    user_id: " + count +
                              " tests\n\n" + count + " passed, 0 failed\n"),
              std::string::npos)
        << run.output;

    EXPECT_EQ(Check(copy, script).Faults(), json::object());
    const Report strict = Check(copy, script, {"--strict", "--only", "PPR"});
    EXPECT_EQ(strict.run.status, 1);
    EXPECT_EQ(strict.Faults(), json({{"PPR", {"user_id is not expected"}}}));
    EXPECT_EQ(strict.report["tests"][0]["further_keys"], json({"user_id"}));
}

TEST(TaviCheck, AnEditTimerThatTheLibraryDoesNotSendIsListedAndFailsOnlyIfStrict)
{
    const TaviCheckCopy copy;
    const json without = Patch("remove", "/document_editing_length_ms");
    json script = Answering("StartTrackFileChange", without);
    script["TrackEvent"][std::to_string(TheCatalogue().size() + 1)] = without;
    const Outcome run = copy.RunTaviCheck({}, script);
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.output.find("\n\nKeys of the library's own that did not come:\n"
                              "    document_editing_length_ms: 1 test\n\n"),
              std::string::npos)
        << run.output;
    const Report strict = Check(copy, script, {"--strict"});
    EXPECT_EQ(strict.run.status, 1);
    EXPECT_EQ(strict.Faults(), json({{"StartTrackFileChange", {"document_editing_length_ms is expected, not sent"}}}));
}

TEST(TaviCheck, ARefusedEventFailsItsTestAndSpoilsNoReport)
{
    const Report report = Check(TaviCheckCopy(), Answering("PPR", {{"status", 9}}));
    const std::string line = "CorvaneTavi::TrackWaypoint TaviDesktopSDK::TrackEvent";
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.Faults(), json({{"PPR", {"the call printed \"" + line + "\""}}}));
    EXPECT_EQ(report.report["tests"][std::stoul(NumberOf("PPR")) - 1]["messages"], json({line}));
}

TEST(TaviCheck, WhatIsPrintedAtTheStartIsAnError)
{
    const Report report = Check(TaviCheckCopy(), {{"Initialize", {{"1", {{"status", 3}}}}}});
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.report["errors"],
              json({R"(the start printed "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize")"}));
    EXPECT_EQ(report.report["summary"]["passed"], TheCatalogue().size());
}

TEST(TaviCheck, WithoutConsentNothingIsStarted)
{
    const TaviCheckCopy copy;
    const Report report = Check(copy, {{"IsOptedIn", {{"1", {{"status", 4}}}}}});
    EXPECT_EQ(report.run.status, 1);
    EXPECT_EQ(report.report["errors"], json({"Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi"}));
    EXPECT_EQ(report.report["summary"], NoTests());
    EXPECT_EQ(copy.Calls().size(), 1U);
}

TEST(TaviCheck, ARefusalOfTestModeIsToldWithTheStatusAndRunsNothing)
{
    const TaviCheckCopy copy;
    const struct
    {
        const char* function;
        const char* sentence;
    } rows[] = {
        {"SetTestingFlags", "Error occurred setting testing flags: status 256"},
        {"SetTestingCallback", "Error occurred setting testing callback: status 256"},
    };
    for (const auto& row : rows)
    {
        const json script = {{row.function, {{"1", {{"status", 256}}}}}};
        const Report report = Check(copy, script);
        EXPECT_EQ(report.run.status, 1);
        EXPECT_EQ(report.report["errors"], json({row.sentence}));
        EXPECT_EQ(report.report["summary"], NoTests());
        EXPECT_TRUE(copy.Calls("TrackEvent").empty());
        EXPECT_EQ(copy.RunTaviCheck({}, script).output,
                  "ERROR   " + std::string(row.sentence) + "\n\n0 passed, 0 failed, 1 error\n");
    }
}

TEST(TaviCheck, ListAndWhitelistNeedNoLibraryAndNoConsent)
{
    const TaviCheckCopy copy;
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
    EXPECT_EQ(copy.RunTaviCheck({"--list"}).output, Lines(Names()));
    EXPECT_EQ(copy.RunTaviCheck({"--list", "--only", "Mesh*", "PPR", "--only", "3DC?sed"}).output,
              "MeshSize\nMeshPropertyChanged\n3DCUsed\nPPR\n");
    EXPECT_EQ(copy.RunTaviCheck({"--version"}).output, "tavi_check " VERSION "\n");
}

TEST(TaviCheck, TheWhitelistHasWhatTheCatalogueSends)
{
    const TaviCheckCopy copy;
    const json list = json::parse(copy.RunTaviCheck({"--whitelist", "json"}).output);
    EXPECT_EQ(list.size(), TheCatalogue().size());
    for (const CatalogueTest& test : TheCatalogue())
    {
        for (const char* const object : {"component_attributes", "content_meta", "entitlement_properties"})
        {
            json attributes = json::array();
            const json members = test.payload.value(object, json::object());
            for (const auto& [key, value] : members.items())
                attributes.push_back({{"object", object}, {"key", key}});
            const auto hasThem = [&](const json& event)
            {
                const bool isNamed =
                    event["name_from"].is_string() || event["waypoint"] == test.payload.value("component_name", json());
                return isNamed && event["attributes"] == attributes;
            };
            EXPECT_TRUE(attributes.empty() || std::any_of(list.begin(), list.end(), hasThem)) << test.title;
        }
    }
    const std::string csv = RunProgram({.program = copy.TaviCheck(),
                                        .arguments = {"--whitelist", "csv"},
                                        .workingFolder = copy.Folder().Path(),
                                        .keepsLineEnds = true})
                                .output;
    EXPECT_TRUE(csv.starts_with("method,waypoint,name_from,type,object,attribute\r\n")) << csv;
    EXPECT_NE(csv.find("\r\nTrackMeshSize,CV.MESH_SIZE_COUNT,,C,component_attributes,CV.MESH_SIZE_NODES\r\n"),
              std::string::npos);
    EXPECT_NE(csv.find("\r\nTrackNavBarClosed,COMMON.ZEPH_NB_CLOSED,,C,,\r\n"), std::string::npos);
    EXPECT_EQ(csv.find("\r\r"), std::string::npos);
}

TEST(TaviCheck, WrongArgumentsAreOneLineOnTheErrorStream)
{
    const TaviCheckCopy copy;
    const std::vector<std::string> rows[] = {
        {"--unknown"},
        {"name"},
        {"--only"},
        {"--junit"},
        {"--payloads"},
        {"--whitelist"},
        {"--whitelist", "xml"},
        {"--list", "--json"},
        {"--list", "--strict"},
        {"--list", "--whitelist", "csv"},
        {"--whitelist", "csv", "--only", "PPR"},
        {"--junit", "a", "--junit", "b"},
        {"one\nand two"},
    };
    for (const std::vector<std::string>& arguments : rows)
    {
        const Outcome run = copy.RunTaviCheck(arguments);
        EXPECT_EQ(run.status, 2) << run.errors;
        EXPECT_EQ(run.output, "") << run.errors;
        EXPECT_TRUE(run.errors.starts_with("tavi_check: ")) << run.errors;
        EXPECT_TRUE(run.errors.ends_with("; --help tells what there is\n")) << run.errors;
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_TRUE(copy.Calls().empty()) << run.errors;
    }
}

TEST(TaviCheck, ANameOfNoTestListsWhatThereIs)
{
    const TaviCheckCopy copy;
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--only", "meshsize"},
                                                      {"--only", "PPR", "meshsize"},
                                                      {"--list", "--only", "meshsize"}})
    {
        const Outcome run = copy.RunTaviCheck(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "tavi_check: there is no test meshsize; there are\n" + Lines(Names()));
        EXPECT_TRUE(copy.Calls().empty());
    }
}

TEST(TaviCheck, OutputThatCannotBeWrittenIsOneLineAndAStatusOfItsOwn)
{
    const TaviCheckCopy copy;
    const json failing = Answering("MeshSize", {{"payload", json::object()}});
    for (const auto& [output, error] : BrokenOutputs())
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{}, {"--json"}, {"--list"}, {"--whitelist", "csv"}, {"--help"}, {"--version"}})
            for (const json& script : {json::object(), failing})
            {
                const Outcome run = copy.RunTaviCheck(arguments, script, output);
                EXPECT_EQ(run.errors, "tavi_check: standard output cannot be written: " +
                                          std::system_category().message(error) + "\n");
                EXPECT_EQ(run.status, 3) << json(arguments) << script;
            }
}

TEST(TaviCheck, AFileThatCannotBeWrittenIsOneLineAndAStatusOfItsOwn)
{
    const TaviCheckCopy copy;
    const std::string error = std::generic_category().message(ENOENT);
    for (const char* const option : {"--junit", "--payloads"})
        for (const json& script : {json::object(), Answering("MeshSize", {{"payload", json::object()}})})
        {
            const Outcome run = copy.RunTaviCheck({option, "no such folder/file"}, script);
            EXPECT_EQ(run.errors, "tavi_check: no such folder/file cannot be written: " + error + "\n");
            EXPECT_EQ(run.status, 3) << option << script;
            EXPECT_NE(run.output.find(" passed, "), std::string::npos) << "the tests are told all the same";
        }
}

TEST(TaviCheck, TheFilesHaveTheTestsAndThePayloadsInOrder)
{
    const TaviCheckCopy copy;
    const std::string junit = "\xC3\xBC \xE4\xB8\xAD.xml";
    const std::string payloads = "\xC3\xBC \xE4\xB8\xAD.json";
    const json script = Answering("MeshSize", Patch("replace", "/scope", "\x01<"));
    EXPECT_EQ(copy.RunTaviCheck({"--junit", junit, "--payloads", payloads}, script).status, 1);

    std::istringstream report(ReadFile(copy.Folder().Path() / PathOf(junit)));
    std::vector<std::string> cases;
    std::string suite;
    std::string failure;
    for (std::string line; std::getline(report, line);)
    {
        const std::string opening = "  <testcase name=\"";
        if (line.starts_with(opening))
            cases.push_back(line.substr(opening.size(), line.find('"', opening.size()) - opening.size()));
        suite += line.starts_with("<testsuite ") ? line : "";
        failure += line.find("<failure ") != std::string::npos ? line : "";
    }
    const std::string count = std::to_string(TheCatalogue().size());
    EXPECT_EQ(cases, Names());
    EXPECT_NE(suite.find(" tests=\"" + count + "\" failures=\"1\" errors=\"0\" "), std::string::npos) << suite;
    EXPECT_NE(failure.find("sent &quot;\\u0001&lt;&quot;"), std::string::npos) << failure;

    const std::string text = ReadFile(copy.Folder().Path() / PathOf(payloads));
    EXPECT_TRUE(text.starts_with("[\n{\"product_line_name\":\"CVSTUDIO\",\"product_release_id\":"))
        << text.substr(0, 80);
    const json received = json::parse(text);
    const std::vector<json> calls = copy.Calls("TrackEvent");
    ASSERT_EQ(received.size(), calls.size());
    ASSERT_EQ(received.size(), TheCatalogue().size() + 1) << "a second document is sent";
    for (std::size_t i = 0; i < calls.size(); ++i)
    {
        json sent = calls[i]["payload"];
        if (std::to_string(i + 1) == NumberOf("MeshSize"))
            sent["scope"] = "\x01<";
        EXPECT_PRED_FORMAT2(IsJson, received[i], sent) << i;
    }
}

TEST(TaviCheck, WithoutATestThatIsNotChosen)
{
    const TaviCheckCopy copy;
    const Report report = Check(copy, json::object(), {"--only", "PPR", "MeshSize"});
    EXPECT_EQ(report.run.status, 0);
    EXPECT_EQ(report.report["summary"], json({{"passed", 2}, {"failed", 0}, {"errors", 0}}));
    EXPECT_EQ(report.report["tests"][0]["name"], "MeshSize");
    EXPECT_EQ(report.report["tests"][0]["method"], "TrackMeshSize");
    EXPECT_EQ(copy.Calls("TrackEvent").size(), 2U);
}
