// Converts a value to the text that an event has for it, as the telemetry library's string. Each call converts anew.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

namespace Corvane
{

// Up to its first null character, byte for byte; no text for a null pointer.
Veltrane::TaviDesktopSDK::TaviString TextOf(const char* value);
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::string& value);

// Up to its first null character, as the library's SetStringW() converts it.
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::wstring& value);

// Plain decimal, "-" before a negative value.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int32_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int64_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::uint64_t value);

// As the library writes it, TaviString(double).
Veltrane::TaviDesktopSDK::TaviString TextOf(double value);

// "True" or "False". A plain bool parameter would take any pointer as well.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::same_as<bool> auto value)
{
    return TextOf(value ? "True" : "False");
}

} // namespace Corvane
