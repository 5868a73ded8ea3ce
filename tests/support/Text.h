// Conversions between literals and the library's types, for expectations; and deep values.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

// "" if the string has no text.
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

// An object in an object, and so on, each with the one member "x"; `leaf` is in the last of `levels`.
inline Veltrane::TaviDesktopSDK::JsonValue Nested(int levels, const Veltrane::TaviDesktopSDK::JsonValue& leaf)
{
    Veltrane::TaviDesktopSDK::JsonValue nested(leaf);
    for (int i = 0; i < levels; ++i)
    {
        Veltrane::TaviDesktopSDK::JsonValue outer;
        outer[Key("x")] = std::move(nested);
        nested = std::move(outer);
    }
    return nested;
}

// The JSON text of such a value, given that of the leaf.
inline std::string NestedText(int levels, const std::string& leaf)
{
    std::string opening;
    for (int i = 0; i < levels; ++i)
        opening += R"({"x":)";
    return opening + leaf + std::string(static_cast<std::size_t>(levels), '}');
}
