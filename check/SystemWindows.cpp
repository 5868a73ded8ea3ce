#include <check/System.h>

#include <windows.h>

#include <io.h>
#include <shellapi.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

namespace Corvane
{

namespace
{

// Ill-formed text becomes U+FFFD.
std::string Utf8(std::wstring_view wide)
{
    const int size = static_cast<int>(wide.size());
    std::string utf8(3 * wide.size(), '\0');
    const int count = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), 3 * size, nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(count));
    return utf8;
}

void PointStandardOutputTo(int descriptor)
{
    static_cast<void>(std::fflush(stdout));
    _dup2(descriptor, _fileno(stdout));
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the C run time has handles as numbers
    SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdout))));
}

} // namespace

// main()'s arguments are in the system's code page, which lacks characters.
std::vector<std::string> CommandLineArguments(int, char**)
{
    struct Free
    {
        void operator()(LPWSTR* list) const { LocalFree(list); }
    };
    int count = 0;
    const std::unique_ptr<LPWSTR, Free> list(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; list && i < count; ++i)
        arguments.push_back(Utf8(list.get()[i]));
    return arguments;
}

// Diverts libraries that share the program's C run time or ask Windows for the handle. Diverts nothing when one of the
// streams is closed: it has no descriptor, and the C run time ends a program that passes none.
StandardOutputAside::StandardOutputAside()
    : previous(_fileno(stdout) >= 0 && _fileno(stderr) >= 0 ? _dup(_fileno(stdout)) : -1)
{
    if (previous >= 0)
        PointStandardOutputTo(_fileno(stderr));
}

StandardOutputAside::~StandardOutputAside()
{
    if (previous < 0)
        return;
    PointStandardOutputTo(previous);
    _close(previous);
}

} // namespace Corvane
