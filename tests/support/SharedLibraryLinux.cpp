#include "SharedLibrary.h"

#include <dlfcn.h>

LibraryFunction FunctionOf(const std::filesystem::path& library, const char* function)
{
    void* const handle = dlopen(library.c_str(), RTLD_NOW);
    return handle != nullptr ? reinterpret_cast<LibraryFunction>(dlsym(handle, function)) : nullptr;
}
