// What the program does on Windows only.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include <nlohmann/json.hpp>

#include "Differences.h"
#include "Program.h"

TEST(Program, EveryBitOfAStatusReachesTheParent)
{
    const ProgramCopy copy;
    for (const int status : {1, 256, -1})
    {
        const nlohmann::json script = {{"SetTestingFlags", {{"default", {{"status", status}}}}}};
        EXPECT_EQ(copy.Run(script.dump()).status, status);
    }
}

TEST(Program, LeavesTheConsolesCodePageAsItWas)
{
    const ProgramCopy copy(ProgramCopy::Library::StandIn);
    copy.Run("{}", OutputTo::Terminal); // from now on this process has a console
    for (const unsigned codePage : {1252U, 850U})
    {
        ASSERT_NE(SetConsoleOutputCP(codePage), 0);
        copy.Run("{}", OutputTo::Terminal);
        EXPECT_EQ(GetConsoleOutputCP(), codePage);
    }
}

TEST(Program, LinesInAFileAndAPipeEndAsOnWindows)
{
    std::string expected;
    for (const char character : GoodRun())
        expected += character == '\n' ? "\r\n" : std::string(1, character);
    for (const OutputTo output : {OutputTo::File, OutputTo::Pipe})
        EXPECT_PRED_FORMAT2(
            IsText, RunProgram({.program = PROGRAM_FILE, .output = output, .keepsLineEnds = true}).output, expected);
}
