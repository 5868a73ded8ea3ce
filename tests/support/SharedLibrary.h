#pragma once

#include <filesystem>

using LibraryFunction = void (*)();

// Loads a shared library, which stays loaded, and looks up its function. Null when either is not found.
LibraryFunction FunctionOf(const std::filesystem::path& library, const char* function);
