// Finds the folder of the running code, and opens files, by each platform's means.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>

namespace Corvane
{

// The folder of the running program's file; std::nullopt when the system does not return it. Independent of the working
// folder and of how the program was called. On Windows a path of 260 characters or more is cut off there, and the
// folder is that of what is left.
std::optional<std::filesystem::path> ExecutableFolder();

// The folder of the program or shared library that this code is linked into; std::nullopt as above.
std::optional<std::filesystem::path> ModuleFolder();

// Opens the file in text mode. Null when it cannot be opened. The caller closes it.
std::FILE* OpenForReading(const std::filesystem::path& file);

} // namespace Corvane
