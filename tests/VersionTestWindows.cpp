// What the properties of the built files show.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "Utf8Path.h"

namespace
{

// A part of a file's version resource; a null pointer if there is no such part.
template <typename Part>
const Part* Find(const std::vector<std::byte>& resource, const std::wstring& name)
{
    void* found = nullptr;
    UINT size = 0;
    return VerQueryValueW(resource.data(), name.c_str(), &found, &size) != 0 ? static_cast<const Part*>(found)
                                                                             : nullptr;
}

} // namespace

TEST(Version, ThePropertiesOfTheProgramsAndTheLibraryShowTheProjects)
{
    const std::wstring version = PathOf(VERSION).wstring();
    for (const std::filesystem::path& file : {PathOf(PROGRAM_FILE), PathOf(TAVI_CHECK_FILE), PathOf(STAND_IN_FILE)})
    {
        std::vector<std::byte> resource(GetFileVersionInfoSizeW(file.c_str(), nullptr));
        ASSERT_NE(GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()), 0);
        const auto* const fixed = Find<VS_FIXEDFILEINFO>(resource, L"\\");
        ASSERT_NE(fixed, nullptr) << file;
        EXPECT_EQ(std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                      std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                      std::to_string(HIWORD(fixed->dwFileVersionLS)),
                  VERSION)
            << file;
        const std::pair<std::wstring, std::wstring> properties[] = {{L"FileVersion", version},
                                                                    {L"ProductVersion", version},
                                                                    {L"ProductName", L"CorvaneTavi"},
                                                                    {L"OriginalFilename", file.filename().wstring()}};
        for (const auto& [name, expected] : properties)
        {
            const auto* const text = Find<wchar_t>(resource, L"\\StringFileInfo\\040904B0\\" + name); // in English
            ASSERT_NE(text, nullptr) << file;
            EXPECT_EQ(text, expected) << file;
        }
    }
}
