// Builds the payloads that the tests expect. The texts of numbers and flags are made here, by the harness's own rule,
// and not by the wrapper that is under test.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

namespace Corvane
{

// "True" or "False".
std::wstring ExpectedText(std::same_as<bool> auto flag)
{
    return flag ? L"True" : L"False";
}

template <typename Number>
concept WholeNumber = std::integral<Number> && !std::same_as<Number, bool>;

// Plain decimal, "-" before a negative number.
template <WholeNumber Number>
std::wstring ExpectedText(Number number)
{
    const std::string text = std::to_string(number);
    return std::wstring(text.begin(), text.end());
}

// Six decimals, without trailing zeros and without a trailing point.
std::wstring ExpectedText(double number);

// As given.
std::wstring ExpectedText(const std::wstring& text);

// A key beside its expected value, a text, number or flag, for parameter lists only: the key is borrowed for the call.
struct ExpectedMember
{
    template <typename Value>
    ExpectedMember(const std::wstring& memberKey, const Value& value) : key(memberKey), text(ExpectedText(value))
    {
    }

    const std::wstring& key;
    std::wstring text;
};

// An object of strings.
Veltrane::TaviDesktopSDK::JsonValue ExpectObject(std::initializer_list<ExpectedMember> members);

// "component_name" and, unless there are none, "component_attributes".
Veltrane::TaviDesktopSDK::JsonValue ExpectWaypoint(const std::wstring& name,
                                                   std::initializer_list<ExpectedMember> attributes);

// "content_meta" and "type", the letter of content events.
Veltrane::TaviDesktopSDK::JsonValue ExpectContent(std::initializer_list<ExpectedMember> meta);

} // namespace Corvane
