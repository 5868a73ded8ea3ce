// Short ways from literals to the library's types and back, for expectations.
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

inline Veltrane::TaviDesktopSDK::TaviString Key(const char* text)
{
    return Veltrane::TaviDesktopSDK::TaviString(text);
}

inline Veltrane::TaviDesktopSDK::JsonValue String(const char* text)
{
    Veltrane::TaviDesktopSDK::JsonValue value;
    value.SetString(text);
    return value;
}
