// An event's attributes, and the conversion of values to the text that an event has for them.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

// Text by key, in ascending order as the telemetry library orders its strings. Storing with operator[] under a key that
// is present replaces its text.
using AttributeMap = std::map<Veltrane::TaviDesktopSDK::TaviString, Veltrane::TaviDesktopSDK::TaviString>;

namespace Corvane
{

// The bytes of `value` up to its first null character; no text for a null pointer.
Veltrane::TaviDesktopSDK::TaviString TextOf(const char* value);
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::string& value);

// `value` up to its first null character, as the library's SetStringW() converts it.
Veltrane::TaviDesktopSDK::TaviString TextOf(const std::wstring& value);

// Plain decimal, "-" before a negative value.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int32_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::int64_t value);
Veltrane::TaviDesktopSDK::TaviString TextOf(std::uint64_t value);

// The text that TaviString(double) makes of it.
Veltrane::TaviDesktopSDK::TaviString TextOf(double value);

// "True" or "False". A plain bool parameter would take any pointer as well.
Veltrane::TaviDesktopSDK::TaviString TextOf(std::same_as<bool> auto value)
{
    return TextOf(value ? "True" : "False");
}

// The library's string as a standard one; empty if it has no text.
std::string StandardString(const Veltrane::TaviDesktopSDK::TaviString& text);

template <typename Value>
concept AttributeValue = std::same_as<Value, std::wstring> || std::same_as<Value, bool> ||
    std::same_as<Value, std::int32_t> || std::same_as<Value, std::int64_t> || std::same_as<Value, std::uint64_t> ||
    std::same_as<Value, float> || std::same_as<Value, double>;

// A key beside the text of a typed value, for parameter lists.
class Attribute
{
    // The type that a list in braces is given, so that it meets the assertion as well.
    struct List
    {
        List(const auto&) {} // cppcheck-suppress noExplicitConstructor
        List(std::initializer_list<List>) {}
    };

public:
    // `name` is a constant of the vocabulary: a literal, or any other temporary, does not compile.
    template <typename Value = List>
    Attribute(const std::wstring& name, const Value& value) : key(TextOf(name)), text(TextOfValue(value))
    {
    }
    Attribute(const std::wstring&&, const auto&) = delete;

private:
    template <typename Value>
    static Veltrane::TaviDesktopSDK::TaviString TextOfValue(const Value& value)
    {
        static_assert(AttributeValue<Value>,
                      "An attribute's value is a std::wstring, bool, std::int32_t, std::int64_t, "
                      "std::uint64_t, float or double");
        if constexpr (AttributeValue<Value>)
            return TextOf(value);
        else
            return {};
    }

    friend AttributeMap Attributes(std::initializer_list<Attribute> attributes);

    // Mutable, because the elements of an initializer_list are constant: key and text are moved, not copied.
    mutable Veltrane::TaviDesktopSDK::TaviString key;
    mutable Veltrane::TaviDesktopSDK::TaviString text;
};

// The map of all attributes. Of several with the same key the last is kept.
AttributeMap Attributes(std::initializer_list<Attribute> attributes);

} // namespace Corvane
