// The test program as its users run it.
#include <gtest/gtest.h>

#include <string>
#include <system_error>

#include <nlohmann/json.hpp>

#include "CatalogueModel.h"
#include "Differences.h"
#include "Program.h"

using nlohmann::json;

namespace
{

void ExpectGoodRun(const Outcome& run)
{
    EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun());
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 0);
}

// A run in which every test fails.
void ExpectOutput(const json& payload, OutputTo output)
{
    const ProgramCopy copy;
    const json script = {{"TrackEvent", {{"default", {{"payload", payload}}}}}};
    const Outcome run = copy.Run(script.dump(), output);
    const auto judgement = [&payload](const CatalogueTest& test) { return ExpectedJudgement(test, payload); };
    EXPECT_PRED_FORMAT2(IsText, run.output, WholeRun(judgement, false));
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 1);
}

const std::string Foreign = "\xC3\xBC \xE4\xB8\xAD \xF0\x9F\x98\x80";

} // namespace

TEST(Program, TheRecordedOutputIsAPassForEachTestAndTheSummary)
{
    const std::string passed = WholeRun([](const CatalogueTest&) { return std::string("PASSED\n"); }, true);
    EXPECT_PRED_FORMAT2(IsText, GoodRun(), passed) << "Run scripts/reference.sh, and commit what it writes.";
}

TEST(Program, TheBuiltProgramRunsFromAnyWorkingFolder)
{
    ExpectGoodRun(RunProgram({.program = PathOf(PROGRAM_FILE), .workingFolder = "/"}));
}

TEST(Program, TheProductFileIsFoundInAFolderOfAnyNameThroughARelativePath)
{
    const std::filesystem::path folder = u8"\u00FCml\u00E4ut and blanks \u4E2D\u6587 \U0001F600";
    const ProgramCopy copy(ProgramCopy::Library::Faulty, folder);
    const std::filesystem::path program = std::filesystem::path("..") / folder / "bin" / copy.Executable().filename();
    ExpectGoodRun(RunProgram({.program = program,
                              .environment = {{"TAVI_FAULT_LOG", Utf8Of(copy.LogFile())}},
                              .workingFolder = copy.Folder().Path() / folder}));
    EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO");
}

TEST(Program, WithoutAUsableProductFileTheRunIsGoodAndEveryIdentifierUndefined)
{
    const ProgramCopy copy;
    const auto expectUndefined = [&copy]
    {
        ExpectGoodRun(copy.Run());
        EXPECT_PRED_FORMAT2(IsJson, copy.ReportedProduct(),
                            json({{"product_line_name", "undefined"},
                                  {"product_release_id", "undefined"},
                                  {"product_master_id", "undefined"},
                                  {"product_build_id", "undefined"},
                                  {"product_id_provider", "upi1"}}));
    };
    copy.Folder().Write(copy.ProductFile(), "<upi_element name=\"level\"");
    expectUndefined();
    std::filesystem::remove(copy.ProductFile());
    expectUndefined();
}

TEST(Program, AnEmptyIdentifierLeavesTheProductKeyEmptyAndTheRunGood)
{
    const ProgramCopy copy;
    std::string text = ReadFile(copy.ProductFile());
    const std::string build = "value=\"27.0.214\"";
    copy.Folder().Write(copy.ProductFile(), text.replace(text.find(build), build.size(), "value=\"\""));
    ExpectGoodRun(copy.Run());
    EXPECT_EQ(copy.Calls("SetTestingFlags").front()["productKey"], "");
    EXPECT_EQ(copy.RunTaviCheck({"--only", "PPR"}).status, 0);
}

// With the C++ library's default streams, wide and narrow lines would be lost after the first such character.
TEST(Program, MismatchesBeyondAsciiArriveCompleteInAFileAPipeAndATerminal)
{
    const json payload = {{"component_name", Foreign}, {"component_attributes", {{Foreign, "x"}}}};
    ExpectOutput(payload, OutputTo::File);
    ExpectOutput(payload, OutputTo::Pipe);
    if (!HasTerminals())
        GTEST_SKIP() << WithoutTerminals;
    ExpectOutput(payload, OutputTo::Terminal);
}

TEST(Program, AnOutputThatTakesNothingForTheMomentGetsEveryLine)
{
    ExpectOutput(
        {{"component_name", std::string(20'000, 'n')}, {"component_attributes", {{Foreign, std::string(5'000, 'v')}}}},
        OutputTo::SlowReader);
}

TEST(Program, OutputThatCannotBeWrittenIsOneLineOnTheErrorStreamAndTheStatusStays)
{
    const ProgramCopy copy;
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
