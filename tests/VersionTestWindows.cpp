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

// The file's version resource; empty when there is none.
std::vector<std::byte> VersionResource(const std::filesystem::path& file)
{
    std::vector<std::byte> resource(GetFileVersionInfoSizeW(file.c_str(), nullptr));
    if (GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()) == 0)
        resource.clear();
    return resource;
}

// "1.2.3.4"; empty when the resource has no fixed part.
std::string Numbers(const std::vector<std::byte>& resource)
{
    void* found = nullptr;
    UINT size = 0;
    if (VerQueryValueW(resource.data(), L"\\", &found, &size) == 0 || size < sizeof(VS_FIXEDFILEINFO))
        return "";
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(found);
    std::string numbers;
    for (const DWORD pair : {info.dwFileVersionMS, info.dwFileVersionLS})
        numbers += std::to_string(HIWORD(pair)) + "." + std::to_string(LOWORD(pair)) + ".";
    numbers.pop_back();
    return numbers;
}

// The English text of that name; empty when there is none.
std::wstring Text(const std::vector<std::byte>& resource, const std::wstring& name)
{
    void* found = nullptr;
    UINT size = 0;
    if (VerQueryValueW(resource.data(), (L"\\StringFileInfo\\040904B0\\" + name).c_str(), &found, &size) == 0)
        return L"";
    return static_cast<const wchar_t*>(found);
}

} // namespace

TEST(Version, ThePropertiesOfTheProgramsAndTheLibraryShowTheProjects)
{
    const std::wstring version = PathOf(VERSION).wstring();
    for (const std::filesystem::path& file : {PathOf(PROGRAM_FILE), PathOf(TAVI_CHECK_FILE), PathOf(STAND_IN_FILE)})
    {
        const std::vector<std::byte> resource = VersionResource(file);
        ASSERT_FALSE(resource.empty()) << file;
        EXPECT_EQ(Numbers(resource), VERSION ".0") << file;
        EXPECT_EQ(Text(resource, L"FileVersion"), version) << file;
        EXPECT_EQ(Text(resource, L"ProductVersion"), version) << file;
        EXPECT_EQ(Text(resource, L"ProductName"), L"CorvaneTavi") << file;
        EXPECT_EQ(Text(resource, L"OriginalFilename"), file.filename().wstring()) << file;
        EXPECT_NE(Text(resource, L"FileDescription"), L"") << file;
    }
}
