// Converts the names of files, which the program has as UTF-8.
#pragma once

#include <filesystem>
#include <string>

namespace Corvane
{

inline std::filesystem::path PathOf(const std::string& name)
{
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

inline std::string Utf8Of(const std::filesystem::path& path)
{
    const std::u8string name = path.u8string();
    return std::string(name.begin(), name.end());
}

} // namespace Corvane
