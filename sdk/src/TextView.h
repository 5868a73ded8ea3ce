#pragma once

#include <string_view>

#include <TaviDesktopSDK/TaviString.h>

namespace Veltrane::TaviDesktopSDK
{

// The string's bytes; empty for a string without text.
inline std::string_view ViewOf(const TaviString& text)
{
    return text.c_str() != nullptr ? std::string_view(text.c_str(), text.size()) : std::string_view();
}

} // namespace Veltrane::TaviDesktopSDK
