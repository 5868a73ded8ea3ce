#include "TemporaryFolder.h"
#include "Utf8Path.h"

#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

TemporaryFolder::TemporaryFolder()
{
    std::random_device random;
    do
        path = std::filesystem::temp_directory_path() / ("cvtavi-" + std::to_string(random()));
    while (!std::filesystem::create_directory(path));
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::filesystem::path TemporaryFolder::Write(const std::filesystem::path& name, std::string_view bytes) const
{
    std::filesystem::path file = path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush())
        throw std::runtime_error("cannot write " + Utf8Of(file));
    return file;
}
