// The test program as its users run it, on the stand-in.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
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

void ExpectUndefinedProduct(const ProgramCopy& copy)
{
    const Outcome run = copy.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun());
    EXPECT_EQ(run.errors, "");
    EXPECT_PRED_FORMAT2(IsJson, copy.ReportedProduct(),
                        json({{"product_line_name", "undefined"},
                              {"product_release_id", "undefined"},
                              {"product_master_id", "undefined"},
                              {"product_build_id", "undefined"},
                              {"product_id_provider", "upi1"}}));
}

} // namespace

TEST(Program, TheKeptOutputIsAPassForEachTestAndTheSummary)
{
    const std::string passed = WholeRun([](const CatalogueTest&) { return std::string("PASSED\n"); }, true);
    EXPECT_PRED_FORMAT2(IsText, GoodRun(), passed) << "Run scripts/reference.sh, and commit what it writes.";
}

TEST(Program, TheBuiltProgramRunsWhereItWasBuilt)
{
    const Outcome run = RunProgram({.program = PathOf(PROGRAM_FILE), .workingFolder = "/"});
    EXPECT_EQ(run.status, 0);
    EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun());
    EXPECT_EQ(run.errors, "");
}

TEST(Program, TheProductFileLiesBesideTheExecutableWhateverItsFolderIsCalled)
{
    std::vector<std::filesystem::path> folders = OddFolders();
    folders.emplace_back("with blanks in it");
    folders.emplace_back(u8"\u00FCml\u00E4ut \u4E2D\u6587 \U0001F600");
    for (const std::filesystem::path& folder : folders)
    {
        const ProgramCopy copy(ProgramCopy::Library::Faulty, folder);
        const Outcome run = copy.Run();
        EXPECT_EQ(run.status, 0) << folder;
        EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun()) << folder;
        EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO") << folder;
    }
}

TEST(Program, TheProductFileIsFoundThroughARelativePath)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty, "here");
    const Outcome run = RunProgram({.program = std::filesystem::path("../here/bin") / copy.Executable().filename(),
                                    .environment = {{"TAVI_FAULT_LOG", Utf8Of(copy.LogFile())}},
                                    .workingFolder = copy.Folder().Path() / "here"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO");
}

TEST(Program, WithoutAProductFileEveryIdentifierIsUndefined)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    std::filesystem::remove_all(copy.ProductFile().parent_path());
    ExpectUndefinedProduct(copy);
}

TEST(Program, WithABrokenProductFileEveryIdentifierIsUndefinedAndNothingIsPrinted)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    for (const std::string& text : {std::string("<upi_element name=\"level\""), std::string("no XML"), std::string(),
                                    std::string("\0\xFF\xFE<", 4), std::string(100'000, '<')})
    {
        copy.Folder().Write(copy.ProductFile(), text);
        ExpectUndefinedProduct(copy);
    }
}

TEST(Program, AnEmptyIdentifierLeavesTheProductKeyEmptyAndTheRunGood)
{
    const ProgramCopy copy(ProgramCopy::Library::StandIn);
    std::string text = ReadFile(copy.ProductFile());
    const std::string build = "value=\"27.0.214\"";
    text.replace(text.find(build), build.size(), "value=\"\"");
    copy.Folder().Write(copy.ProductFile(), text);
    const Outcome run = copy.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun());
}

// With the C++ library's default streams, wide and narrow lines would be lost after the first such character.
TEST(Program, MismatchesBeyondAsciiArriveCompleteInAFileAPipeAndATerminal)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    const std::string foreign = "\xC3\xBC \xE4\xB8\xAD \xF0\x9F\x98\x80";
    const json payload = {{"component_name", foreign}, {"component_attributes", {{foreign, "x"}}}};
    json script;
    std::string expected = GoodRun();
    const struct
    {
        std::string test;
        std::string event;
        std::string key;
        std::string value;
    } rows[] = {
        {"3DCKeyPressed", "COMMON.ZEPH_3DC_KEY_PRESSED", "COMMON.ZEPH_3DC_KEY", "keyName"},
        {"3DCModeActivated", "COMMON.ZEPH_3DC_MODE_ACTIVATED", "COMMON.ZEPH_3DC_ACTIVE_MODE", "newMode"},
        {"3DCUsed", "COMMON.ZEPH_3DC_USED", "COMMON.ZEPH_3DC_DEVICE_TYPE", "deviceName"},
    };
    for (const auto& row : rows)
    {
        const auto test = std::find_if(TheCatalogue().begin(), TheCatalogue().end(),
                                       [&row](const CatalogueTest& one) { return one.title == "Testing " + row.test; });
        ASSERT_NE(test, TheCatalogue().end()) << row.test;
        const std::string number = std::to_string(test - TheCatalogue().begin() + 1);
        script["TrackEvent"][number]["payload"] = payload;

        const std::string title = test->title + "\n";
        const std::size_t verdict = expected.find(title) + title.size();
        expected.replace(verdict, std::string("PASSED\n").size(),
                         "\nError: Mismatch between expected and recieved Json for key component_attributes\n"
                         "Expected:\n" +
                             row.key + "\n    \"" + row.value + "\"\nRecieved:\n" + foreign +
                             "\n    \"x\"\n"
                             "\nError: Mismatch between expected and recieved Json for key component_name\n"
                             "Expected:\n\"" +
                             row.event + "\"\nRecieved:\n\"" + foreign + "\"\nFAILED\n");
    }
    const std::string summary = "All tests passed\n";
    expected.replace(expected.find(summary), summary.size(), "Errors occured during testing\n");

    for (const OutputTo output : {OutputTo::File, OutputTo::Pipe, OutputTo::Terminal})
    {
        if (output == OutputTo::Terminal && !HasTerminals())
            GTEST_SKIP() << WithoutTerminals;
        const Outcome run = copy.Run(script.dump(), output);
        EXPECT_EQ(run.status, 1);
        EXPECT_PRED_FORMAT2(IsText, run.output, expected);
        EXPECT_EQ(run.errors, "");
    }
}

TEST(Program, OutputThatCannotBeWrittenIsOneLineOnTheErrorStreamAndTheStatusStays)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    const struct
    {
        json script;
        int status;
    } rows[] = {
        {json::object(), 0},
        {{{"TrackEvent", {{"1", {{"payload", json::object()}}}}}}, 1},
        {{{"SetTestingFlags", {{"1", {{"status", 7}}}}}}, 7},
    };
    for (const auto& [output, error] : BrokenOutputs())
        for (const auto& row : rows)
        {
            const Outcome run = copy.Run(row.script.dump(), output);
            EXPECT_EQ(run.errors, "cvtavi_test: standard output cannot be written: " +
                                      std::system_category().message(error) + "\n");
            EXPECT_EQ(run.status, row.status) << run.errors << row.script;
        }
}

TEST(Program, AnOutputThatTakesNothingForTheMomentGetsEveryLine)
{
    const json payload = {{"component_name", std::string(20'000, 'n')},
                          {"component_attributes", {{"\xC3\xBC", std::string(5'000, 'v')}}}};
    const json script = {{"TrackEvent", {{"default", {{"payload", payload}}}}}};
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    const Outcome run = copy.Run(script.dump(), OutputTo::SlowReader);
    const std::string expected =
        WholeRun([&](const CatalogueTest& test) { return ExpectedJudgement(test, payload); }, false);
    EXPECT_GT(expected.size(), 500'000U);
    EXPECT_PRED_FORMAT2(IsText, run.output, expected);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 1);
}
