#include <telemetry/ExecutableFolder.h>

#include <windows.h>

#include <shlwapi.h>

#include <cwchar>

namespace Corvane
{

namespace
{

std::optional<std::filesystem::path> FolderOf(HMODULE module)
{
    wchar_t buffer[MAX_PATH] = {};
    if (GetModuleFileNameW(module, buffer, MAX_PATH) == 0)
        return std::nullopt;
    PathRemoveFileSpecW(buffer);
    return std::filesystem::path(buffer);
}

} // namespace

std::optional<std::filesystem::path> ExecutableFolder()
{
    return FolderOf(nullptr);
}

std::optional<std::filesystem::path> ModuleFolder()
{
    HMODULE module = nullptr;
    const auto* const address = reinterpret_cast<LPCWSTR>(&ModuleFolder);
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           address, &module) == 0)
        return std::nullopt;
    return FolderOf(module);
}

std::FILE* OpenForReading(const std::filesystem::path& file)
{
    std::FILE* opened = nullptr;
    return _wfopen_s(&opened, file.c_str(), L"r") == 0 ? opened : nullptr;
}

} // namespace Corvane
