// What of the program is Linux's own.
#include <gtest/gtest.h>

#include <string>

#include "Program.h"

TEST(Program, TheProductFileIsFoundWhateverBytesAndHoweverManyThePathHolds)
{
    const std::filesystem::path folders[] = {
        "not\xFCutf8",
        std::filesystem::path(std::string(200, 'l')) / std::string(200, 'o') / std::string(200, 'n'),
    };
    for (const std::filesystem::path& folder : folders)
    {
        const ProgramCopy copy(ProgramCopy::Library::Faulty, folder);
        const Outcome run = copy.Run();
        EXPECT_EQ(run.status, 0) << folder;
        EXPECT_EQ(run.output, GoodRun()) << folder;
        EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO") << folder;
    }
}

TEST(Program, TheProductFileIsFoundThroughALink)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty, "here");
    const std::filesystem::path link = copy.Folder().Path() / "link";
    std::filesystem::create_symlink(copy.Executable(), link);
    const Outcome run = RunProgram({.program = link, .environment = {{"TAVI_FAULT_LOG", copy.LogFile().string()}}});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(copy.ReportedProduct().value("product_line_name", ""), "CVSTUDIO");
}
