// The text that stands for a typed value in an event.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>

#include <TaviDesktopSDK/TaviString.h>

// Up to its first null character.
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::wstring& value);
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::string& value);

// Plain decimal, "-" before a negative value.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int32_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int64_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::uint64_t value);

// As the telemetry library writes it.
Veltrane::TaviDesktopSDK::TaviString TextOf(double value);

// "True" or "False". A plain bool parameter would take any pointer as well.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::same_as<bool> auto value)
{
    return Veltrane::TaviDesktopSDK::TaviString(value ? "True" : "False");
}
