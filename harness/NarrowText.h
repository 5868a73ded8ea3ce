#pragma once

#include <string>

#include <TaviDesktopSDK/TaviString.h>

// The library's string of a wide text.
inline Veltrane::TaviDesktopSDK::TaviString NarrowText(const std::wstring& wide)
{
    Veltrane::TaviDesktopSDK::TaviString narrow;
    narrow.SetStringW(wide.c_str());
    return narrow;
}
