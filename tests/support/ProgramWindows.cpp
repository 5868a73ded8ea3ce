#include "Program.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <memory>
#include <system_error>

namespace
{

struct HandleCloser
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

struct Channel
{
    Handle reader; // of a pipe that is read
    Handle writer;
};

constexpr DWORD SmallCapacity = 4096;

void Check(bool succeeded, const char* what)
{
    if (!succeeded)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

Handle Checked(HANDLE opened, const char* what)
{
    Check(opened != nullptr && opened != INVALID_HANDLE_VALUE, what);
    return Handle(opened);
}

// A new console would need a window, and so a desktop. One without a window comes with a new process, and stays for as
// long as a process is attached.
void JoinHiddenConsole()
{
    std::wstring commandLine = L"cmd.exe /d /c pause";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    Check(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                         &startup, &started) != 0,
          "cannot start a console");
    const Handle thread(started.hThread);
    const Handle process(started.hProcess);

    void* const output = GetStdHandle(STD_OUTPUT_HANDLE);
    void* const errors = GetStdHandle(STD_ERROR_HANDLE);
    FreeConsole();
    while (AttachConsole(started.dwProcessId) == 0)
        Check(WaitForSingleObject(process.get(), 10) == WAIT_TIMEOUT, "cannot attach to a console");
    SetStdHandle(STD_OUTPUT_HANDLE, output);
    SetStdHandle(STD_ERROR_HANDLE, errors);
    TerminateProcess(process.get(), 0);
}

// From its first screen to its end this process has the console to itself: each program that is run there changes the
// console's code page and back.
void TakeTheConsole()
{
    static const Handle turn = Checked(CreateMutexW(nullptr, FALSE, L"Local\\cvtavi-console"), "cannot make a mutex");
    Check(WaitForSingleObject(turn.get(), INFINITE) != WAIT_FAILED, "cannot wait for the console");
    if (GetConsoleOutputCP() == 0)
        JoinHiddenConsole();
}

Handle OpenToInherit(const std::filesystem::path& file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    return Checked(CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, disposition,
                               FILE_ATTRIBUTE_NORMAL, nullptr),
                   "cannot open a file for a program");
}

Channel OpenChannel(OutputTo output, const std::filesystem::path& file)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    if (output == OutputTo::File)
        return {nullptr, OpenToInherit(file, GENERIC_WRITE, CREATE_ALWAYS)};
    if (output == OutputTo::Nothing)
        return {};
    if (output == OutputTo::Terminal)
    {
        TakeTheConsole();
        Handle screen =
            Checked(CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                              &inheritable, CONSOLE_TEXTMODE_BUFFER, nullptr),
                    "cannot make a screen");
        // Large enough that no line is wrapped or scrolled out.
        Check(SetConsoleScreenBufferSize(screen.get(), {500, 4000}) != 0, "cannot make the screen larger");
        return {nullptr, std::move(screen)};
    }
    HANDLE reader = nullptr;
    HANDLE writer = nullptr;
    const bool isSlow = output == OutputTo::SlowReader;
    Check(CreatePipe(&reader, &writer, &inheritable, isSlow ? SmallCapacity : 0) != 0, "cannot make a pipe");
    Channel pipe{Handle(reader), Handle(writer)};
    SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0);
    DWORD mode = PIPE_READMODE_BYTE | PIPE_NOWAIT;
    Check(!isSlow || SetNamedPipeHandleState(writer, &mode, nullptr, nullptr) != 0, "cannot make a pipe non-blocking");
    if (output == OutputTo::ReaderGone)
        pipe.reader.reset();
    return pipe;
}

std::string ReadAll(const Handle& reader, DWORD pause)
{
    std::string text;
    std::array<char, SmallCapacity> buffer;
    DWORD count = 0;
    while (ReadFile(reader.get(), buffer.data(), SmallCapacity, &count, nullptr) != 0)
    {
        text.append(buffer.data(), count);
        Sleep(pause);
    }
    return text;
}

// The lines down to the cursor's, without the blanks at their ends. A character two cells wide is read once.
std::string ReadScreen(const Handle& screen)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    Check(GetConsoleScreenBufferInfo(screen.get(), &info) != 0, "cannot read the screen");
    std::wstring text;
    for (SHORT row = 0; row <= info.dwCursorPosition.Y; ++row)
    {
        std::wstring line(static_cast<std::size_t>(info.dwSize.X), L' ');
        DWORD count = 0;
        Check(ReadConsoleOutputCharacterW(screen.get(), line.data(), static_cast<DWORD>(line.size()), {0, row},
                                          &count) != 0,
              "cannot read the screen");
        line.resize(count);
        text += (row == 0 ? L"" : L"\n") + line.substr(0, line.find_last_not_of(L' ') + 1);
    }
    return Utf8Of(text);
}

std::string WithUnixLineEnds(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i != text.size(); ++i)
        if (text.compare(i, 2, "\r\n") != 0)
            result += text[i];
    return result;
}

// No argument of a test has a quote in it or a backslash at its end.
std::wstring CommandLine(const Command& command)
{
    std::wstring line = L'"' + command.program.native() + L'"';
    for (const std::string& argument : command.arguments)
        line += L" \"" + PathOf(argument).native() + L'"';
    return line;
}

} // namespace

bool HasTerminals()
{
    return true;
}

std::map<OutputTo, int> BrokenOutputs()
{
    return {{OutputTo::Nothing, ERROR_INVALID_HANDLE}, {OutputTo::ReaderGone, ERROR_NO_DATA}};
}

Outcome RunProgram(const Command& command)
{
    const TemporaryFolder folder;
    const bool onScreen = command.output == OutputTo::Terminal;
    Channel output = OpenChannel(command.output, folder.Path() / "output");
    Handle errors = OpenToInherit(folder.Path() / "errors", GENERIC_WRITE, CREATE_ALWAYS);
    const Handle input = OpenToInherit("NUL", GENERIC_READ, OPEN_EXISTING);

    const std::filesystem::path workingFolder = std::filesystem::absolute(command.workingFolder / ".");
    const std::filesystem::path program = (workingFolder / command.program).lexically_normal();
    std::wstring commandLine = CommandLine(command);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.get();
    startup.hStdOutput = output.writer.get();
    startup.hStdError = errors.get();
    // Without a screen there is no console either, so that no program changes the code page of one that a screen is on.
    const DWORD console = onScreen ? 0U : DETACHED_PROCESS;
    PROCESS_INFORMATION started{};
    const auto start = [&]
    {
        return CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, console, nullptr,
                              workingFolder.c_str(), &startup, &started) != 0;
    };
    for (const auto& [name, value] : command.environment)
        SetEnvironmentVariableW(PathOf(name).c_str(), PathOf(value).c_str());
    // Wine fails to start a program once in some thousand times, with this error, before any of its code has run.
    bool isStarted = start();
    for (int i = 0; i < 3 && !isStarted && GetLastError() == ERROR_INTERNAL_ERROR; ++i)
        isStarted = start();
    Check(isStarted, ("cannot start " + Utf8Of(program)).c_str());
    for (const auto& [name, value] : command.environment)
        SetEnvironmentVariableW(PathOf(name).c_str(), nullptr);
    const Handle thread(started.hThread);
    const Handle process(started.hProcess);

    std::string text;
    if (output.reader != nullptr)
    {
        output.writer.reset();
        text = ReadAll(output.reader, command.output == OutputTo::SlowReader ? 2 : 0);
    }
    DWORD status = 0;
    Check(WaitForSingleObject(process.get(), INFINITE) != WAIT_FAILED &&
              GetExitCodeProcess(process.get(), &status) != 0,
          "cannot wait for a program");
    if (command.output == OutputTo::File)
        text = ReadFile(folder.Path() / "output");
    if (onScreen)
        text = ReadScreen(output.writer);
    return {static_cast<int>(status), command.keepsLineEnds ? text : WithUnixLineEnds(text),
            WithUnixLineEnds(ReadFile(folder.Path() / "errors"))};
}
