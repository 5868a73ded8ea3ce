// Writes to standard output that fail during a run.
#include <gtest/gtest.h>

#include <string>

#include "Differences.h"
#include "Program.h"

namespace
{

// Has strace fail writes, on a library with this script. `failure` is an error and the calls that meet it, in strace's
// notation: "EINTR:when=1+2" is the first, and then every second. These calls write nothing.
Outcome RunWithFailedWrites(const std::string& failure, const std::string& script = "{}")
{
    const ProgramCopy copy;
    return RunProgram(
        {.program = "strace",
         .arguments = {"-o", "/dev/null", "-e", "inject=write:error=" + failure, copy.Executable().string()},
         .environment = {{"TAVI_FAULT_SCRIPT", copy.Folder().Write("script.json", script).string()}}});
}

} // namespace

TEST(FailedWrite, AnInterruptedWriteIsRepeated)
{
    const Outcome run = RunWithFailedWrites("EINTR:when=1+2");
    EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun());
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 0);
}

// The lost line is a narrow one, and wide ones would be next.
TEST(FailedWrite, NothingIsWrittenAfterALineThatIsLost)
{
    const Outcome run = RunWithFailedWrites("ENOSPC:when=5", R"({"TrackEvent": {"1": {"payload": {}}}})");
    EXPECT_EQ(run.output, "\nTesting CommandInvoked\n"
                          "\nError: Mismatch between expected and recieved Json for key component_attributes\n");
    EXPECT_EQ(run.errors, "cvtavi_test: standard output cannot be written: No space left on device\n");
    EXPECT_EQ(run.status, 1);
}

TEST(FailedWrite, AFileAtItsLimitIsOneLineOnTheErrorStreamAndTheStatusStays)
{
    const Outcome run =
        RunProgram({.program = "/bin/sh", .arguments = {"-c", "ulimit -f 1; exec \"$0\"", PROGRAM_FILE}});
    EXPECT_EQ(run.status, 0);
    EXPECT_PRED_FORMAT2(IsText, run.output, GoodRun().substr(0, 512));
    EXPECT_EQ(run.errors, "cvtavi_test: standard output cannot be written: File too large\n");
}
