// Paths from and to UTF-8, in which the texts of this project and of its build are. Visual C++ would take a narrow text
// for one in the system's code page.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

inline std::filesystem::path PathOf(std::string_view utf8)
{
    return std::u8string(utf8.begin(), utf8.end());
}

inline std::string Utf8Of(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}
