// What the program does on Linux only.
#include <gtest/gtest.h>

#include "Program.h"

TEST(Program, TheProductFileIsFoundThroughALink)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty, "here");
    const std::filesystem::path link = copy.Folder().Path() / "link";
    std::filesystem::create_symlink(copy.Executable(), link);
    const Outcome run = RunProgram({.program = link, .environment = {{"TAVI_FAULT_LOG", copy.LogFile().string()}}});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO");
}

// The library's log file stays open, and would get the file descriptor.
TEST(Program, OutputGoesIntoNoFileThatIsOpenedInPlaceOfAStandardOutputThatIsClosed)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    copy.Run("{}", OutputTo::File);
    const std::size_t calls = copy.Calls().size();
    copy.Run("{}", OutputTo::Nothing);
    EXPECT_EQ(copy.Calls().size(), calls); // which throws at a line that is no call
}
