// A folder that is removed with all that is in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include <check/FileNames.h>

// Texts of this project and of its build are UTF-8.
using Corvane::PathOf;
using Corvane::Utf8Of;

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::random_device random;
        do
            path = std::filesystem::temp_directory_path() / ("cvtavi-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path));
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path; }

    // Writes the bytes to a file below the folder and returns its full path. Missing folders are created.
    std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const
    {
        std::filesystem::path file = path / name;
        std::filesystem::create_directories(file.parent_path());
        if (!(std::ofstream(file, std::ios::binary) << bytes << std::flush))
            throw std::runtime_error("cannot write " + Utf8Of(file));
        return file;
    }

private:
    std::filesystem::path path;
};
