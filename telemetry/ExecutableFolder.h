// Where the running code lies and how a file is opened, by each platform's own means.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>

// The folder of the running program's file; nothing when the system does not tell, which on Windows includes a path of
// 260 characters or more. Independent of the working folder and of how the program was called.
std::optional<std::filesystem::path> ExecutableFolder();

// The folder of the program or shared library that this code is linked into; nothing as above.
std::optional<std::filesystem::path> ModuleFolder();

// In text mode. Null when the file cannot be opened. The caller closes it.
std::FILE* OpenForReading(const std::filesystem::path& file);
