#pragma once

#include <filesystem>

using LibraryFunction = void (*)();

// A function of a shared library, which is loaded for it and stays loaded. Null when either cannot be had.
LibraryFunction FunctionOf(const std::filesystem::path& library, const char* function);
