#include "Program.h"

#include <fcntl.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

namespace
{

class Descriptor
{
public:
    explicit Descriptor(int opened = -1) : number(opened) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor() { Close(); }

    int Number() const { return number; }

    void Close()
    {
        if (number >= 0)
            close(std::exchange(number, -1));
    }

private:
    int number;
};

struct Channel
{
    Descriptor reader; // where there is something to read before the program ends
    Descriptor writer;
};

constexpr int SlowReadersRoom = 4096;

bool OpenTerminal(int (&ends)[2])
{
    termios raw{};
    cfmakeraw(&raw);
    return openpty(&ends[0], &ends[1], nullptr, &raw, nullptr) == 0;
}

Channel OpenChannel(OutputTo output, const std::filesystem::path& file)
{
    int ends[2] = {-1, -1};
    switch (output)
    {
    case OutputTo::File:
        ends[1] = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        break;
    case OutputTo::Pipe:
    case OutputTo::SlowReader:
    case OutputTo::ReaderGone:
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("cannot make a pipe");
        break;
    case OutputTo::Terminal:
        if (!OpenTerminal(ends))
            throw std::runtime_error("cannot open a terminal");
        break;
    case OutputTo::Nothing:
        break;
    case OutputTo::FullDisk:
        ends[1] = open("/dev/full", O_WRONLY | O_CLOEXEC);
        break;
    }
    Channel channel{Descriptor(ends[0]), Descriptor(ends[1])};
    if (output == OutputTo::SlowReader &&
        (fcntl(ends[1], F_SETPIPE_SZ, SlowReadersRoom) < 0 || fcntl(ends[1], F_SETFL, O_NONBLOCK) != 0))
        throw std::runtime_error("cannot make a pipe that does not wait");
    if (output == OutputTo::ReaderGone)
        channel.reader.Close();
    return channel;
}

std::string ReadAll(const Descriptor& reader, std::chrono::milliseconds pause)
{
    std::string text;
    std::array<char, SlowReadersRoom> buffer;
    for (;;)
    {
        std::this_thread::sleep_for(pause);
        const ssize_t count = read(reader.Number(), buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR) // a terminal ends with an error
            return text;
    }
}

std::vector<char*> Pointers(std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    for (std::string& string : strings)
        pointers.push_back(string.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

std::vector<std::filesystem::path> OddFolders()
{
    return {"not\xFCutf8",
            std::filesystem::path(std::string(200, 'l')) / std::string(200, 'o') / std::string(200, 'n')};
}

bool HasTerminals()
{
    int ends[2] = {-1, -1};
    const bool opened = OpenTerminal(ends);
    const Descriptor master(ends[0]);
    const Descriptor terminal(ends[1]);
    return opened;
}

std::map<OutputTo, int> BrokenOutputs()
{
    return {{OutputTo::Nothing, EBADF}, {OutputTo::ReaderGone, EPIPE}, {OutputTo::FullDisk, ENOSPC}};
}

Outcome RunProgram(const Command& command)
{
    const TemporaryFolder folder;
    const std::filesystem::path outputFile = folder.Path() / "output";
    Channel output = OpenChannel(command.output, outputFile);
    Channel errors = OpenChannel(OutputTo::File, folder.Path() / "errors");

    std::vector<std::string> arguments{command.program.string()};
    arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
    std::vector<std::string> environment;
    for (char** variable = environ; *variable != nullptr; ++variable)
    {
        const std::string text(*variable);
        if (!command.environment.contains(text.substr(0, text.find('='))))
            environment.push_back(text);
    }
    for (const auto& [name, value] : command.environment)
        environment.push_back(name + "=" + value);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (command.output == OutputTo::Nothing)
        posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);
    else
        posix_spawn_file_actions_adddup2(&actions, output.writer.Number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors.writer.Number(), STDERR_FILENO);
    if (!command.workingFolder.empty())
        posix_spawn_file_actions_addchdir_np(&actions, command.workingFolder.c_str());
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments.front().c_str(), &actions, nullptr, Pointers(arguments).data(),
                                   Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("cannot start " + arguments.front() + ": " + std::strerror(error));

    output.writer.Close();
    std::string text;
    if (output.reader.Number() >= 0)
        text = ReadAll(output.reader, std::chrono::milliseconds(command.output == OutputTo::SlowReader ? 2 : 0));
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
    {
    }
    if (command.output == OutputTo::File)
        text = ReadFile(outputFile);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), text, ReadFile(folder.Path() / "errors")};
}
