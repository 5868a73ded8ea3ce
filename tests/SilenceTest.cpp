// With upload off, and while the user has not opted in, the program opens no socket and writes no file: seen in its
// system calls.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "Program.h"

namespace
{

// The system calls of a run that use the network or change the file system.
std::vector<std::string> LoudCalls(Command command, int expectedStatus)
{
    const TemporaryFolder folder;
    const std::string trace = (folder.Path() / "trace").string();
    const std::string traced =
        "trace=execve,write,pwrite64,writev,open,openat,openat2,creat,"
        "/^(socket|connect|bind|send|rename|unlink|mk|rmdir|link|symlink|f?truncate|f?ch(mod|own)|"
        "utime|f?setxattr|memfd)";
    command.arguments.insert(command.arguments.begin(), {"-f", "-o", trace, "-e", traced, command.program.string()});
    command.program = "strace";
    const Outcome run = RunProgram(command);
    EXPECT_EQ(run.status, expectedStatus) << run.errors;

    const std::regex quiet(R"(^\d+ +(execve\(|write\([12],|open.*O_RDONLY|\+\+\+ ))");
    std::vector<std::string> loud;
    std::istringstream lines(ReadFile(trace));
    std::string line;
    EXPECT_TRUE(std::getline(lines, line) && line.find("execve(") != std::string::npos) << "nothing is traced";
    while (std::getline(lines, line))
    {
        if (!std::regex_search(line, quiet))
            loud.push_back(line);
    }
    return loud;
}

} // namespace

TEST(Silence, ARunWithUploadOffOpensNoSocketAndWritesNoFile)
{
    const ProgramCopy copy(ProgramCopy::Library::StandIn);
    for (const std::filesystem::path& program : {copy.Executable(), copy.TaviCheck()})
        EXPECT_EQ(LoudCalls({.program = program}, 0), std::vector<std::string>()) << program;
}

TEST(Silence, ARunWhileNotOptedInOpensNoSocketAndWritesNoFile)
{
    const ProgramCopy copy;
    const std::string script = copy.Folder().Write("s.json", R"({"IsOptedIn": {"1": {"status": 4}}})").string();
    EXPECT_EQ(LoudCalls({.program = copy.Executable(), .environment = {{"TAVI_FAULT_SCRIPT", script}}}, 1),
              std::vector<std::string>());
}
