// From the harness's wide text to the library's strings.
#pragma once

#include <string>

#include <TaviDesktopSDK/TaviString.h>

// In UTF-8, up to the first null character.
inline Veltrane::TaviDesktopSDK::TaviString NarrowText(const std::wstring& wide)
{
    Veltrane::TaviDesktopSDK::TaviString narrow;
    narrow.SetStringW(wide.c_str());
    return narrow;
}
