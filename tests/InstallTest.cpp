// The installed tree, as a user of the package meets it.
#include <gtest/gtest.h>

#include "Program.h"

namespace
{

void ExpectSuccess(const Command& command)
{
    const Outcome run = RunProgram(command);
    ASSERT_EQ(run.status, 0) << command.program << '\n' << run.output << run.errors;
}

} // namespace

class Install : public testing::Test
{
protected:
    void SetUp() override
    {
        ExpectSuccess({.program = CMAKE_COMMAND_FILE, .arguments = {"--install", BUILD_DIR, "--prefix", Prefix()}});
    }

    std::string Prefix() const { return (folder.Path() / "prefix").string(); }

    const TemporaryFolder folder;
};

TEST_F(Install, TheProgramRunsFromAnyFolderAndFromAMovedPrefix)
{
    const std::string goodRun = ReadFile(TEST_DATA_DIR "/good_run.txt");
    const std::filesystem::path moved = folder.Path() / "moved elsewhere";
    std::filesystem::rename(Prefix(), moved);
    const Outcome run = RunProgram({.program = moved / "bin" / "cvtavi_test", .workingFolder = "/"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, goodRun);
    EXPECT_TRUE(std::filesystem::exists(moved / "bin" / "UPI" / "upiconfig.xml"));
}

TEST_F(Install, AHostApplicationBuildsWithThePackageAloneAndRuns)
{
    const std::filesystem::path build = folder.Path() / "host";
    const std::string source = SOURCE_DIR "/examples/minimal";
    const std::string compiler = "-DCMAKE_CXX_COMPILER=" CXX_COMPILER_FILE;
    const std::string flags = "-DCMAKE_CXX_FLAGS=" CONSUMER_FLAGS;
    ExpectSuccess({.program = CMAKE_COMMAND_FILE,
                   .arguments = {"-S", source, "-B", build.string(), "-G", "Ninja", "-DCMAKE_PREFIX_PATH=" + Prefix(),
                                 compiler, flags}});
    ExpectSuccess({.program = CMAKE_COMMAND_FILE, .arguments = {"--build", build.string()}});

    const Outcome run = RunProgram({.program = build / "minimal_host"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Reporting for undefined&undefined&undefined&undefined\n");
    EXPECT_EQ(run.errors, "");

    std::filesystem::copy(std::filesystem::path(Prefix()) / "bin" / "UPI", build / "UPI");
    EXPECT_EQ(RunProgram({.program = build / "minimal_host"}).output,
              "Reporting for CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214\n");
}

TEST(Readme, ShowsTheMinimalHostApplicationAsItIs)
{
    const std::string readme = ReadFile(SOURCE_DIR "/README.md");
    EXPECT_NE(readme.find("```cpp\n" + ReadFile(SOURCE_DIR "/examples/minimal/main.cpp") + "```\n"), std::string::npos);
    EXPECT_NE(readme.find("```cmake\n" + ReadFile(SOURCE_DIR "/examples/minimal/CMakeLists.txt") + "```\n"),
              std::string::npos);
}
