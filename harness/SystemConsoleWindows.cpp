#include <harness/SystemConsole.h>

#include <windows.h>

#include <algorithm>
#include <string>

namespace Corvane
{

namespace
{

// A line end that is one of Windows's already stays as it is.
std::string WithWindowsLineEnds(std::string_view text)
{
    std::string result;
    for (const char character : text)
        result.append(character == '\n' && !result.ends_with('\r') ? "\r" : "").append(1, character);
    return result;
}

bool IsConsole(HANDLE stream)
{
    DWORD mode = 0;
    return GetConsoleMode(stream, &mode) != 0;
}

} // namespace

SystemConsole::SystemConsole()
{
    void* const inherited = GetStdHandle(STD_OUTPUT_HANDLE);
    if (GetFileType(inherited) != FILE_TYPE_UNKNOWN)
        output = inherited; // else closed: the next file that is opened could get this handle
    if (!IsConsole(output) && !IsConsole(GetStdHandle(STD_ERROR_HANDLE)))
        return;
    previousCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
}

SystemConsole::~SystemConsole()
{
    if (previousCodePage != 0)
        SetConsoleOutputCP(previousCodePage);
}

std::error_code SystemConsole::Write(std::string_view text)
{
    const bool isConsole = IsConsole(output);
    const std::string bytes = isConsole ? std::string(text) : WithWindowsLineEnds(text);
    constexpr std::size_t most = 1U << 30;
    std::size_t piece = most;
    for (std::size_t written = 0; written != bytes.size();)
    {
        DWORD count = 0;
        piece = std::min(piece, bytes.size() - written);
        if (WriteFile(output, bytes.data() + written, static_cast<DWORD>(piece), &count, nullptr) == 0)
            return {static_cast<int>(GetLastError()), std::system_category()};
        if (count == 0)
        {
            // A non-blocking pipe is full, or takes no piece of this size.
            piece = std::max<std::size_t>(piece / 2, 1);
            Sleep(1);
            continue;
        }
        // Some consoles return the number of characters, not of bytes.
        written += isConsole ? piece : count;
        piece = most;
    }
    return {};
}

} // namespace Corvane
