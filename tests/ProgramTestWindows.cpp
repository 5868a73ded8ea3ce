// What the programs do on Windows only.
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
            IsText, RunProgram({.program = PathOf(PROGRAM_FILE), .output = output, .keepsLineEnds = true}).output,
            expected);
}

// The properties are texts of 16-bit characters in the file, each with a null character behind it.
TEST(Program, ThePropertiesOfTheBuiltFilesShowTheirVersionAndName)
{
    for (const std::filesystem::path& file : {PathOf(PROGRAM_FILE), PathOf(TAVI_CHECK_FILE), PathOf(STAND_IN_FILE)})
    {
        const std::string bytes = ReadFile(file);
        for (const std::string& text : {std::string("FileVersion"), std::string("OriginalFilename"),
                                        std::string(VERSION), Utf8Of(file.filename())})
        {
            std::string wide;
            for (const char character : text + '\0')
                wide.append({character, '\0'});
            EXPECT_NE(bytes.find(wide), std::string::npos) << file << text;
        }
    }
}
