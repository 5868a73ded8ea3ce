#include <check/CommandLineArguments.h>

#include <windows.h>

#include <shellapi.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace Corvane
{

namespace
{

// What is ill-formed comes out as U+FFFD.
std::string Utf8(std::wstring_view wide)
{
    const int size = static_cast<int>(wide.size());
    std::string utf8(3 * wide.size(), '\0');
    const int count = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), 3 * size, nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(count));
    return utf8;
}

} // namespace

// main()'s arguments are in the system's code page, and lack what that cannot show.
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

} // namespace Corvane
