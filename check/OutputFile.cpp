#include <check/OutputFile.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace Corvane
{

std::error_code WriteOutputFile(const std::string& name, std::string_view text)
{
    errno = 0;
    std::ofstream file(std::filesystem::path(std::u8string(name.begin(), name.end())), std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close(); // which writes what is held back
    if (file)
        return {};
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

} // namespace Corvane
