// A folder of the test's own, removed with all that is in it.
#pragma once

#include <filesystem>
#include <string_view>

class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path; }

    // Writes the bytes to a file below the folder and gives its full path. Folders on the way are made.
    std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const;

private:
    std::filesystem::path path;
};
