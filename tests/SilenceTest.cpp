// With upload off, and while the user has not opted in, the program opens no socket and writes no file: seen in its
// system calls.
#include <gtest/gtest.h>

#include <algorithm>
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
    // With -y a write shows the name of its file, not only the file descriptor.
    command.arguments.insert(command.arguments.begin(), {"-f", "-y", "-o", trace, command.program.string()});
    command.program = "strace";
    const Outcome run = RunProgram(command);
    EXPECT_EQ(run.status, expectedStatus) << run.errors;

    const std::regex changes(
        R"(^\d+ +(socket|socketpair|connect|bind|listen|accept4?|send\w*|recv\w*|creat|rename\w*|unlink\w*|mkdir\w*|rmdir|link\w*|symlink\w*|mknod\w*|f?truncate|f?chmod\w*|f?chown\w*|utime\w*|f?setxattr|memfd_create)\()");
    const std::regex openForWriting(R"(^\d+ +open\w*\(.*O_(WRONLY|RDWR|CREAT|TRUNC|APPEND))");
    const std::regex write(R"(^\d+ +p?writev?(64|2)?\((\d+))");
    std::vector<std::string> loud;
    bool started = false;
    std::istringstream lines(ReadFile(trace));
    for (std::string line; std::getline(lines, line);)
    {
        started = started || line.find("execve(") != std::string::npos;
        std::smatch match;
        const bool elsewhere = std::regex_search(line, match, write) && match[2] != "1" && match[2] != "2";
        if (elsewhere || std::regex_search(line, changes) || std::regex_search(line, openForWriting))
            loud.push_back(line);
    }
    EXPECT_TRUE(started) << "nothing was traced";
    return loud;
}

} // namespace

TEST(Silence, ARunWithUploadOffOpensNoSocketAndWritesNoFile)
{
    const TaviCheckCopy copy(ProgramCopy::Library::StandIn);
    for (const std::filesystem::path& program : {copy.Executable(), copy.TaviCheck()})
        EXPECT_EQ(LoudCalls({.program = program}, 0), std::vector<std::string>()) << program;
}

TEST(Silence, ARunWhileNotOptedInOpensNoSocketAndWritesNoFile)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    const std::string script = copy.Folder().Write("s.json", R"({"IsOptedIn": {"1": {"status": 4}}})").string();
    EXPECT_EQ(LoudCalls({.program = copy.Executable(), .environment = {{"TAVI_FAULT_SCRIPT", script}}}, 1),
              std::vector<std::string>());
}

// Shows that such system calls are seen where there are some.
TEST(Silence, SocketsAndWrittenFilesAreSeen)
{
    const TemporaryFolder folder;
    const auto shows = [&](const std::string& call, const std::string& shell, const std::string& script)
    {
        const std::vector<std::string> calls =
            LoudCalls({.program = shell, .arguments = {"-c", script}, .workingFolder = folder.Path()}, 0);
        return std::any_of(calls.begin(), calls.end(),
                           [&](const std::string& line) { return line.find(call) != std::string::npos; });
    };
    EXPECT_FALSE(shows("", "/bin/sh", "echo to standard output"));
    EXPECT_TRUE(shows("open", "/bin/sh", "echo x > file"));
    EXPECT_TRUE(shows("write(", "/bin/sh", "echo x | tee file"));
    EXPECT_TRUE(shows("mkdir", "/bin/sh", "mkdir folder"));
    EXPECT_TRUE(shows("socket(", "/bin/bash", "{ : > /dev/tcp/127.0.0.1/9; } 2> /dev/stderr || true"));
}
