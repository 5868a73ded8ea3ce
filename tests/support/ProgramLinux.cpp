#include "Program.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace
{

constexpr int SmallCapacity = 4096;

struct Channel
{
    int reader = -1; // of what is read while the program runs
    int writer = -1;
};

bool OpenTerminal(Channel& channel)
{
    termios raw{};
    cfmakeraw(&raw);
    return openpty(&channel.reader, &channel.writer, nullptr, &raw, nullptr) == 0;
}

int OpenForWriting(const std::filesystem::path& file)
{
    return open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

Channel OpenChannel(OutputTo output, const std::filesystem::path& file)
{
    switch (output)
    {
    case OutputTo::File:
        return {-1, OpenForWriting(file)};
    case OutputTo::FullDisk:
        return {-1, open("/dev/full", O_WRONLY | O_CLOEXEC)};
    case OutputTo::Nothing:
        return {};
    case OutputTo::Terminal:
        if (Channel channel; OpenTerminal(channel))
            return channel;
        throw std::runtime_error("cannot open a terminal");
    case OutputTo::Pipe:
    case OutputTo::SlowReader:
    case OutputTo::ReaderGone:
        break;
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    if (output == OutputTo::SlowReader &&
        (fcntl(ends[1], F_SETPIPE_SZ, SmallCapacity) < 0 || fcntl(ends[1], F_SETFL, O_NONBLOCK) != 0))
        throw std::runtime_error("cannot make a pipe that does not wait");
    if (output == OutputTo::ReaderGone)
        close(std::exchange(ends[0], -1));
    return {ends[0], ends[1]};
}

// In the new process.
[[noreturn]] void Become(const Command& command, int output, int errors)
{
    dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    if (output >= 0)
        dup2(output, STDOUT_FILENO);
    else
        close(STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);

    for (const auto& [name, value] : command.environment)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments{const_cast<char*>(command.program.c_str())};
    for (const std::string& argument : command.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    if (command.workingFolder.empty() || chdir(command.workingFolder.c_str()) == 0)
        execvp(arguments.front(), arguments.data());
    std::perror(command.program.c_str());
    std::_Exit(127);
}

std::string ReadAll(int reader, std::chrono::milliseconds pause)
{
    std::string text;
    std::array<char, SmallCapacity> buffer;
    for (;;)
    {
        std::this_thread::sleep_for(pause);
        const ssize_t count = read(reader, buffer.data(), buffer.size());
        if (count <= 0) // a terminal ends with an error
            return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

bool HasTerminals()
{
    Channel channel;
    const bool opened = OpenTerminal(channel);
    close(channel.reader);
    close(channel.writer);
    return opened;
}

std::map<OutputTo, int> BrokenOutputs()
{
    return {{OutputTo::Nothing, EBADF}, {OutputTo::ReaderGone, EPIPE}, {OutputTo::FullDisk, ENOSPC}};
}

Outcome RunProgram(const Command& command)
{
    const TemporaryFolder folder;
    const Channel output = OpenChannel(command.output, folder.Path() / "output");
    const int errors = OpenForWriting(folder.Path() / "errors");
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start a process");
    if (child == 0)
        Become(command, output.writer, errors);

    close(output.writer);
    close(errors);
    std::string text;
    if (output.reader >= 0)
        text = ReadAll(output.reader, std::chrono::milliseconds(command.output == OutputTo::SlowReader ? 2 : 0));
    close(output.reader);
    int status = 0;
    waitpid(child, &status, 0);
    if (command.output == OutputTo::File)
        text = ReadFile(folder.Path() / "output");
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), text, ReadFile(folder.Path() / "errors")};
}
