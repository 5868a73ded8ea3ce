#include <telemetry/ExecutableFolder.h>

#include <dlfcn.h>
#include <link.h>

#include <system_error>

namespace Corvane
{

namespace
{

std::optional<std::filesystem::path> FolderOf(const std::filesystem::path& file)
{
    if (file.empty())
        return std::nullopt;
    return file.parent_path();
}

} // namespace

std::optional<std::filesystem::path> ExecutableFolder()
{
    std::error_code error;
    return FolderOf(std::filesystem::read_symlink("/proc/self/exe", error));
}

std::optional<std::filesystem::path> ModuleFolder()
{
    // The loader has an empty name for the program itself.
    Dl_info symbol{};
    void* module = nullptr;
    if (dladdr1(reinterpret_cast<void*>(&ModuleFolder), &symbol, &module, RTLD_DL_LINKMAP) == 0)
        return std::nullopt;
    const char* const name = static_cast<const link_map*>(module)->l_name;
    if (*name == '\0')
        return ExecutableFolder();
    std::error_code error;
    return FolderOf(std::filesystem::absolute(name, error));
}

std::FILE* OpenForReading(const std::filesystem::path& file)
{
    return std::fopen(file.c_str(), "r");
}

} // namespace Corvane
