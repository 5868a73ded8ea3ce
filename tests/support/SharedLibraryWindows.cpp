#include "SharedLibrary.h"

#include <windows.h>

LibraryFunction FunctionOf(const std::filesystem::path& library, const char* function)
{
    const HMODULE handle = LoadLibraryW(library.c_str());
    return handle != nullptr ? reinterpret_cast<LibraryFunction>(GetProcAddress(handle, function)) : nullptr;
}
