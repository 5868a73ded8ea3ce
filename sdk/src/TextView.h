// A TaviString seen as a std::string_view.
#pragma once

#include <string_view>

#include <TaviDesktopSDK/TaviString.h>

namespace Veltrane::TaviDesktopSDK
{

// The string's bytes; empty for a string without text. Valid until the string is changed or destroyed.
inline std::string_view ViewOf(const TaviString& text)
{
    const char* const bytes = text.c_str();
    return bytes != nullptr ? std::string_view(bytes, text.size()) : std::string_view();
}

} // namespace Veltrane::TaviDesktopSDK
