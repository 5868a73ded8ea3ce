// Conversions between literals and the library's values, and comparisons whose messages show the values.
//
// Only declared members are used, and no implicit conversion: a library may have made them explicit.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

inline Veltrane::TaviDesktopSDK::TaviString Text(const char* text)
{
    Veltrane::TaviDesktopSDK::TaviString made;
    made.SetString(text);
    return made;
}

// "" where the string has no text.
inline std::string Narrow(const Veltrane::TaviDesktopSDK::TaviString& text)
{
    return text.c_str() != nullptr ? text.c_str() : "";
}

inline Veltrane::TaviDesktopSDK::JsonValue String(const char* text)
{
    Veltrane::TaviDesktopSDK::JsonValue value;
    value.SetString(text);
    return value;
}

inline std::string TextIn(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return Narrow(value.operator Veltrane::TaviDesktopSDK::TaviString());
}

inline long long IntegerIn(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return value.operator long long();
}

// For messages.
inline std::string Json(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return Narrow(value.GetJsonString());
}

using Members = std::vector<std::pair<const char*, Veltrane::TaviDesktopSDK::JsonValue>>;

inline Veltrane::TaviDesktopSDK::JsonValue Object(const Members& members)
{
    Veltrane::TaviDesktopSDK::JsonValue object;
    for (const auto& [key, value] : members)
        object[Text(key)] = value;
    return object;
}

// Reads the member without creating it. The reference is valid until `object` changes.
inline const Veltrane::TaviDesktopSDK::JsonValue& Member(const Veltrane::TaviDesktopSDK::JsonValue& object,
                                                         const char* key)
{
    return object[Text(key)];
}

// The program compares expected with received values, and received with expected ones: both ways must agree.
inline testing::AssertionResult Compared(const Veltrane::TaviDesktopSDK::JsonValue& left,
                                         const Veltrane::TaviDesktopSDK::JsonValue& right, bool equal)
{
    const int leftWithRight = left.Compare(right);
    const int rightWithLeft = right.Compare(left);
    const bool isAsAsked = (leftWithRight == 0) == equal && (rightWithLeft == 0) == equal;
    return testing::AssertionResult(isAsAsked) << "Compare returned " << leftWithRight << ", and " << rightWithLeft
                                               << " the other way round, for " << Json(left) << " and " << Json(right);
}

inline testing::AssertionResult AreEqual(const Veltrane::TaviDesktopSDK::JsonValue& left,
                                         const Veltrane::TaviDesktopSDK::JsonValue& right)
{
    return Compared(left, right, true);
}

inline testing::AssertionResult Differ(const Veltrane::TaviDesktopSDK::JsonValue& left,
                                       const Veltrane::TaviDesktopSDK::JsonValue& right)
{
    return Compared(left, right, false);
}

inline testing::AssertionResult IsNull(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return AreEqual(value, Veltrane::TaviDesktopSDK::JsonValue());
}
