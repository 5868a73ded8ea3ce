// .ci/run with other scripts in the places of its stages: how it adds up their results.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>

#include "Program.h"
#include "TemporaryFolder.h"

namespace
{

// Shell scripts in the places of the stages, in the order in which they run.
using Stages = std::array<std::string, 3>;
constexpr std::array<const char*, 3> StageFiles = {"scripts/check.sh", "scripts/test.sh", "scripts/fresh.sh"};

const Stages GoodStages = {
    "echo 'Checking'; echo '4 passed, 0 failed'",
    "echo 'Testing'; echo '300 passed, 0 failed'",
    "echo 'Called with' \"$@\"; echo '20 passed, 0 failed'",
};

struct Result
{
    int status;
    std::string output;
    std::string lastLine;
};

Result RunStages(const Stages& stages)
{
    const TemporaryFolder folder;
    const auto writeScript = [&folder](const std::string& name, const std::string& text)
    {
        std::filesystem::path file = folder.Write(name, text);
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    };
    for (std::size_t i = 0; i < stages.size(); ++i)
        writeScript(StageFiles[i], "#!/bin/sh\n" + stages[i] + "\n");
    const std::filesystem::path temporaryFiles = folder.Path() / "temporary";
    std::filesystem::create_directories(temporaryFiles);

    const Outcome run = RunProgram({.program = writeScript(".ci/run", ReadFile(SOURCE_DIR "/.ci/run")),
                                    .environment = {{"TMPDIR", temporaryFiles.string()}},
                                    .workingFolder = "/"});
    EXPECT_TRUE(std::filesystem::is_empty(temporaryFiles)) << "Something is left in the temporary folder";
    EXPECT_TRUE(run.output.ends_with('\n')) << run.output;
    const std::string lines = run.output.substr(0, run.output.size() - 1);
    return {run.status, run.output, lines.substr(lines.rfind('\n') + 1)};
}

std::string Counts(int passed, int failed)
{
    return std::to_string(passed) + " passed, " + std::to_string(failed) + " failed";
}

} // namespace

TEST(CiRun, StagesWithoutAFailureAreASuccessWithTheirCountsAddedUp)
{
    const Result run = RunStages(GoodStages);
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.lastLine, "324 passed, 0 failed");
}

TEST(CiRun, AnythingButSuccessInOneStageIsAFailure)
{
    const struct
    {
        const char* what;
        const char* stage;
        int passed;
        int failed;
    } rows[] = {
        {"failed tests are counted once", "echo '9 passed, 2 failed'; exit 1", 9, 2},
        {"failed tests, and a status of success", "echo '9 passed, 2 failed'", 9, 2},
        {"skipped tests", "echo '9 passed, 0 failed, 2 skipped'", 9, 1},
        {"skipped and failed tests", "echo '9 passed, 1 failed, 2 skipped'; exit 1", 9, 2},
        {"a skipped platform", "echo '9 passed, 0 failed, all tests of windows skipped'", 9, 1},
        {"a bad status after good counts", "echo '9 passed, 0 failed'; exit 3", 9, 1},
        {"a crash after good counts", "echo '9 passed, 0 failed'; kill -SEGV $$", 9, 1},
        {"a crash before any output", "kill -SEGV $$", 0, 1},
        {"a crash amid the output", "echo 'Testing'; kill -KILL $$", 0, 1},
        {"no counts", "echo 'Done'", 0, 1},
        {"no output", "exit 0", 0, 1},
        {"counts before the last line", "echo '9 passed, 0 failed'; echo 'Done'", 0, 1},
        {"counts within a line", "echo 'Testing: 9 passed, 0 failed'", 0, 1},
        {"counts that are no numbers", "echo 'all passed, 0 failed'", 0, 1},
    };
    for (const auto& row : rows)
    {
        const Result run = RunStages({GoodStages[0], row.stage, GoodStages[2]});
        EXPECT_EQ(run.status, 1) << row.what;
        EXPECT_EQ(run.lastLine, Counts(24 + row.passed, row.failed)) << row.what;
    }
}

TEST(CiRun, EveryStageRunsAndShowsItsOutputWhateverBecameOfTheOthers)
{
    const Result run = RunStages({"echo 'To be seen' >&2; kill -KILL $$", GoodStages[1], "exit 1"});
    for (const std::string line : {"=== scripts/check.sh", "To be seen", "=== scripts/test.sh", "300 passed, 0 failed"})
        EXPECT_NE(run.output.find("\n" + line + "\n"), std::string::npos) << line << " is not in\n" << run.output;
    EXPECT_NE(run.output.find("\n=== scripts/fresh.sh"), std::string::npos) << run.output;
    EXPECT_EQ(run.lastLine, "300 passed, 2 failed");
}

TEST(CiRun, TheLastStageIsOnTheDebianThatThisSystemIsNot)
{
    const bool isTrixie = ReadFile("/etc/os-release").find("VERSION_CODENAME=trixie\n") != std::string::npos;
    const std::string called =
        std::string("\nCalled with ") + (isTrixie ? "bookworm" : "trixie") + " run test release\n";
    const Result run = RunStages(GoodStages);
    EXPECT_NE(run.output.find(called), std::string::npos) << run.output;
}
