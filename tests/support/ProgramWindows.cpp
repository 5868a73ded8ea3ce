#include "Program.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace
{

class Handle
{
public:
    explicit Handle(HANDLE opened = nullptr) : handle(opened == INVALID_HANDLE_VALUE ? nullptr : opened) {}
    Handle(Handle&& other) noexcept : handle(std::exchange(other.handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(handle, other.handle);
        return *this;
    }
    ~Handle() { Close(); }

    HANDLE Get() const { return handle; }

    void Close()
    {
        if (handle != nullptr)
            CloseHandle(std::exchange(handle, nullptr));
    }

private:
    HANDLE handle;
};

struct Channel
{
    Handle reader; // of a pipe that is read only
    Handle writer;
};

[[noreturn]] void Fail(const char* what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

std::wstring Wide(std::string_view utf8)
{
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(utf8.size(), L'\0');
    const int count = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(count));
    return wide;
}

std::string Utf8(std::wstring_view wide)
{
    const int size = static_cast<int>(wide.size());
    std::string utf8(3 * wide.size(), '\0');
    const int count = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), 3 * size, nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(count));
    return utf8;
}

// A run in a terminal has this process's console to itself, also among other processes on the same console: each
// program changes the console's code page and back.
class ConsoleTurn
{
public:
    ConsoleTurn() : mutex(CreateMutexW(nullptr, FALSE, L"Local\\cvtavi-console"))
    {
        if (mutex.Get() == nullptr || WaitForSingleObject(mutex.Get(), INFINITE) == WAIT_FAILED)
            Fail("cannot wait for the console");
    }
    ~ConsoleTurn() { ReleaseMutex(mutex.Get()); }
    ConsoleTurn(const ConsoleTurn&) = delete;
    ConsoleTurn& operator=(const ConsoleTurn&) = delete;

private:
    Handle mutex;
};

// A console of this process's own would need a window, and so a desktop. One without a window comes with a new
// process, and stays for as long as anyone is attached.
void JoinHiddenConsole()
{
    std::wstring commandLine = L"cmd.exe /d /c pause";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                       &startup, &started) == 0)
        Fail("cannot start a console");
    const Handle thread(started.hThread);
    const Handle process(started.hProcess);

    constexpr std::array streams{STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    std::array<HANDLE, streams.size()> own{};
    for (std::size_t i = 0; i != streams.size(); ++i)
        own[i] = GetStdHandle(streams[i]);
    FreeConsole();
    while (AttachConsole(started.dwProcessId) == 0)
        if (WaitForSingleObject(process.Get(), 10) != WAIT_TIMEOUT)
            Fail("cannot attach to a console");
    for (std::size_t i = 0; i != streams.size(); ++i)
        SetStdHandle(streams[i], own[i]);
    TerminateProcess(process.Get(), 0);
}

class AttributeList
{
public:
    // `inherited` stays in use for as long as the list.
    explicit AttributeList(std::vector<HANDLE>& inherited)
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory = std::make_unique<std::byte[]>(size);
        if (InitializeProcThreadAttributeList(Get(), 1, 0, &size) == 0 ||
            UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, inherited.data(),
                                      inherited.size() * sizeof(HANDLE), nullptr, nullptr) == 0)
            Fail("cannot list the handles to inherit");
    }
    ~AttributeList() { DeleteProcThreadAttributeList(Get()); }
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST Get() const { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory.get()); }

private:
    std::unique_ptr<std::byte[]> memory;
};

Handle OpenToInherit(const std::filesystem::path& file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Handle opened(CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    if (opened.Get() == nullptr)
        Fail("cannot open a file for a program");
    return opened;
}

constexpr DWORD SlowReadersRoom = 4096;

Channel OpenChannel(OutputTo output, const std::filesystem::path& file)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    switch (output)
    {
    case OutputTo::File:
        return {Handle(), OpenToInherit(file, GENERIC_WRITE, CREATE_ALWAYS)};
    case OutputTo::Pipe:
    case OutputTo::SlowReader:
    case OutputTo::ReaderGone:
    {
        HANDLE ends[2] = {};
        if (CreatePipe(&ends[0], &ends[1], &inheritable, output == OutputTo::SlowReader ? SlowReadersRoom : 0) == 0)
            Fail("cannot make a pipe");
        Channel pipe{Handle(ends[0]), Handle(ends[1])};
        DWORD mode = PIPE_READMODE_BYTE | PIPE_NOWAIT;
        if (output == OutputTo::SlowReader && SetNamedPipeHandleState(ends[1], &mode, nullptr, nullptr) == 0)
            Fail("cannot make a pipe that does not wait");
        if (output == OutputTo::ReaderGone)
            pipe.reader.Close();
        return pipe;
    }
    case OutputTo::Nothing:
        return {Handle(), Handle()};
    case OutputTo::FullDisk:
        throw std::invalid_argument("this system has no disk that is always full");
    case OutputTo::Terminal:
        if (GetConsoleOutputCP() == 0)
            JoinHiddenConsole();
        break;
    }
    Handle screen(CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            &inheritable, CONSOLE_TEXTMODE_BUFFER, nullptr));
    // Large enough that no line is wrapped or scrolled out.
    if (screen.Get() == nullptr || SetConsoleScreenBufferSize(screen.Get(), {500, 4000}) == 0)
        Fail("cannot make a screen");
    return {Handle(), std::move(screen)};
}

std::string ReadAll(const Handle& reader, DWORD pause)
{
    std::string text;
    std::array<char, SlowReadersRoom> buffer;
    DWORD count = 0;
    while (ReadFile(reader.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) != 0)
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
    if (GetConsoleScreenBufferInfo(screen.Get(), &info) == 0)
        Fail("cannot read the screen");
    std::wstring text;
    for (SHORT row = 0; row <= info.dwCursorPosition.Y; ++row)
    {
        std::wstring line(static_cast<std::size_t>(info.dwSize.X), L' ');
        DWORD count = 0;
        if (ReadConsoleOutputCharacterW(screen.Get(), line.data(), static_cast<DWORD>(line.size()), {0, row}, &count) ==
            0)
            Fail("cannot read the screen");
        line.resize(count);
        text += (row == 0 ? L"" : L"\n") + line.substr(0, line.find_last_not_of(L' ') + 1);
    }
    return Utf8(text);
}

std::string WithUnixLineEnds(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i != text.size(); ++i)
        if (text.compare(i, 2, "\r\n") != 0)
            result += text[i];
    return result;
}

// Windows takes a long path only with this prefix.
std::wstring FullPath(const std::filesystem::path& path)
{
    std::wstring full = std::filesystem::absolute(path).lexically_normal().make_preferred().native();
    const bool beginsWithDrive = full.find(L':') == 1;
    if (beginsWithDrive && full.size() >= MAX_PATH)
        full.insert(0, L"\\\\?\\");
    return full;
}

// A program splits its command line where a blank is outside quotes. A quote that is meant has a backslash before it,
// and backslashes stand for half their number where a quote follows.
std::wstring Quoted(std::wstring_view argument)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument)
    {
        if (character == L'"')
            quoted.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring CommandLine(const Command& command)
{
    std::wstring line = L'"' + command.program.native() + L'"';
    for (const std::string& argument : command.arguments)
        line += L' ' + Quoted(Wide(argument));
    return line;
}

std::wstring EnvironmentBlock(const std::map<std::string, std::string>& additions)
{
    struct IgnoringCase
    {
        bool operator()(const std::wstring& left, const std::wstring& right) const
        {
            return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
        }
    };
    struct Free
    {
        void operator()(wchar_t* strings) const { FreeEnvironmentStringsW(strings); }
    };
    std::map<std::wstring, std::wstring, IgnoringCase> variables;
    const std::unique_ptr<wchar_t, Free> own(GetEnvironmentStringsW());
    for (const wchar_t* variable = own.get(); *variable != L'\0';)
    {
        const std::wstring text(variable);
        const std::size_t split = text.find(L'=', 1); // the name of a drive's current folder begins with one
        variables[text.substr(0, split)] = text.substr(split + 1);
        variable += text.size() + 1;
    }
    for (const auto& [name, value] : additions)
        variables[Wide(name)] = Wide(value);

    std::wstring block;
    for (const auto& [name, value] : variables)
        block.append(name).append(1, L'=').append(value).append(1, L'\0');
    return block.append(1, L'\0');
}

} // namespace

std::vector<std::filesystem::path> OddFolders()
{
    return {};
}

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
    const std::filesystem::path outputFile = folder.Path() / "output";
    const bool onScreen = command.output == OutputTo::Terminal;
    std::optional<ConsoleTurn> turn;
    if (onScreen)
        turn.emplace();
    Channel output = OpenChannel(command.output, outputFile);
    Channel errors = OpenChannel(OutputTo::File, folder.Path() / "errors");
    const Handle input = OpenToInherit("NUL", GENERIC_READ, OPEN_EXISTING);

    std::filesystem::path program = command.workingFolder / command.program;
    if (!program.has_extension())
        program += ".exe";
    const std::wstring workingFolder = FullPath(command.workingFolder.empty() ? "." : command.workingFolder);
    std::wstring commandLine = CommandLine(command);
    std::wstring environment = EnvironmentBlock(command.environment);

    // Other threads start programs at the same time: theirs must not keep our pipe open.
    std::vector<HANDLE> inherited{input.Get(), errors.writer.Get()};
    if (output.writer.Get() != nullptr)
        inherited.push_back(output.writer.Get());
    const AttributeList attributes(inherited);
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = input.Get();
    startup.StartupInfo.hStdOutput = output.writer.Get();
    startup.StartupInfo.hStdError = errors.writer.Get();
    startup.lpAttributeList = attributes.Get();
    // Without a screen there is no console either, so that nobody changes the code page of one that a screen is on.
    const DWORD console = onScreen ? 0U : DETACHED_PROCESS;
    PROCESS_INFORMATION started{};
    const auto start = [&]
    {
        return CreateProcessW(FullPath(program).c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                              console | EXTENDED_STARTUPINFO_PRESENT | CREATE_UNICODE_ENVIRONMENT, environment.data(),
                              workingFolder.c_str(), &startup.StartupInfo, &started) != 0;
    };
    // Wine fails to start a program once in some thousand times, with this error, before any of its code has run.
    bool isStarted = start();
    for (int i = 0; i < 3 && !isStarted && GetLastError() == ERROR_INTERNAL_ERROR; ++i)
        isStarted = start();
    if (!isStarted)
        Fail(("cannot start " + Utf8(program.native())).c_str());
    const Handle thread(started.hThread);
    const Handle process(started.hProcess);

    std::string text;
    if (output.reader.Get() != nullptr)
    {
        output.writer.Close();
        text = ReadAll(output.reader, command.output == OutputTo::SlowReader ? 2 : 0);
    }
    DWORD status = 0;
    if (WaitForSingleObject(process.Get(), INFINITE) == WAIT_FAILED || GetExitCodeProcess(process.Get(), &status) == 0)
        Fail("cannot wait for a program");
    if (command.output == OutputTo::File)
        text = ReadFile(outputFile);
    if (onScreen)
        text = ReadScreen(output.writer);
    return {static_cast<int>(status), command.keepsLineEnds ? text : WithUnixLineEnds(text),
            WithUnixLineEnds(ReadFile(folder.Path() / "errors"))};
}
