// The text that stands for a typed value in an event.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>

#include <TaviDesktopSDK/JsonValue.h>
#include <TaviDesktopSDK/TaviString.h>

// Up to its first null character: wide text as SetStringW() converts it, 8-bit text byte for byte.
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::wstring& value);
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::string& value);

// Plain decimal, "-" before a negative value.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int64_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::uint64_t value);

// Makes `member` a string of the same text.
void SetText(Veltrane::TaviDesktopSDK::JsonValue& member, const std::wstring& value);
void SetText(Veltrane::TaviDesktopSDK::JsonValue& member, std::int64_t value);
void SetText(Veltrane::TaviDesktopSDK::JsonValue& member, std::uint64_t value);

// As the telemetry library writes it, TaviString(double).
void SetText(Veltrane::TaviDesktopSDK::JsonValue& member, double value);

// "True" or "False". A plain bool parameter would take any pointer as well.
void SetText(Veltrane::TaviDesktopSDK::JsonValue& member, std::same_as<bool> auto value)
{
    member.SetString(value ? "True" : "False");
}
