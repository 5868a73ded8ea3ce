// Conversions between literals and the library's types, for expectations.
#pragma once

#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

// "" where the string has no text.
inline std::string Text(const Veltrane::TaviDesktopSDK::TaviString& text)
{
    return text.c_str() != nullptr ? text.c_str() : "";
}

// The value as JSON text.
inline std::string Json(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return Text(value.GetJsonString());
}

inline bool IsNull(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return value.Compare(Veltrane::TaviDesktopSDK::JsonValue()) == 0;
}

// The value as a string. A cast would be ambiguous with the conversion to a number.
inline Veltrane::TaviDesktopSDK::TaviString TextValue(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return value.operator Veltrane::TaviDesktopSDK::TaviString();
}

inline Veltrane::TaviDesktopSDK::TaviString Key(const char* text)
{
    Veltrane::TaviDesktopSDK::TaviString key;
    key.SetString(text);
    return key;
}

inline Veltrane::TaviDesktopSDK::JsonValue String(const char* text)
{
    Veltrane::TaviDesktopSDK::JsonValue value;
    value.SetString(text);
    return value;
}
