// What the program does on Linux only.
#include <gtest/gtest.h>

#include "Program.h"

TEST(Program, TheProductFileIsFoundThroughALinkAndAPathThatIsLongAndNotUtf8)
{
    const std::filesystem::path folder =
        std::filesystem::path("not\xFCutf8") / std::string(200, 'l') / std::string(200, 'o') / std::string(200, 'n');
    const ProgramCopy copy(ProgramCopy::Library::Faulty, folder);
    const std::filesystem::path link = copy.Folder().Path() / "link";
    std::filesystem::create_symlink(copy.Executable(), link);
    const Outcome run = RunProgram({.program = link, .environment = {{"TAVI_FAULT_LOG", copy.LogFile().string()}}});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO");
}

// The library's log file stays open, and would get the descriptor of the standard output that is closed.
TEST(Program, OutputGoesIntoNoFileThatIsOpenedInPlaceOfAStandardOutputThatIsClosed)
{
    const ProgramCopy copy;
    copy.Run("{}", OutputTo::Nothing);
    EXPECT_EQ(ReadFile(copy.LogFile()).find("Testing "), std::string::npos);
    EXPECT_FALSE(copy.Calls("TrackEvent").empty());
}
