// Converts the harness's texts to the library's strings.
#pragma once

#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

namespace Corvane
{

// In UTF-8, up to the first null character.
inline Veltrane::TaviDesktopSDK::TaviString NarrowText(const std::wstring& wide)
{
    Veltrane::TaviDesktopSDK::TaviString narrow;
    narrow.SetStringW(wide.c_str());
    return narrow;
}

// Byte for byte.
inline Veltrane::TaviDesktopSDK::TaviString NarrowText(const char* text)
{
    Veltrane::TaviDesktopSDK::TaviString narrow;
    narrow.SetString(text);
    return narrow;
}

} // namespace Corvane
