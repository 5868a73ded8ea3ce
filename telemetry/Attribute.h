// A key and a typed value side by side, for parameter lists only: both are borrowed for the call.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <variant>

#include <telemetry/AttributeMap.h>
#include <telemetry/ValueText.h>

class AttributeValue
{
public:
    AttributeValue(const std::wstring& text) : value(&text) {}
    AttributeValue(std::same_as<bool> auto flag) : value(flag) {}
    AttributeValue(std::int32_t number) : value(number) {}
    AttributeValue(std::int64_t number) : value(number) {}
    AttributeValue(std::uint64_t number) : value(number) {}
    AttributeValue(double number) : value(number) {}

    Veltrane::TaviDesktopSDK::TaviString Text() const
    {
        return std::visit(
            [](const auto& held)
            {
                if constexpr (std::same_as<decltype(held), const std::wstring* const&>)
                    return TextOf(*held);
                else
                    return TextOf(held);
            },
            value);
    }

private:
    std::variant<const std::wstring*, bool, std::int32_t, std::int64_t, std::uint64_t, double> value;
};

struct Attribute
{
    const std::wstring& key;
    AttributeValue value;
};

// Stored in the order given, so that the last of two equal keys wins.
inline AttributeMap MakeAttributeMap(std::initializer_list<Attribute> attributes)
{
    AttributeMap map;
    for (const Attribute& attribute : attributes)
        map[TextOf(attribute.key)] = attribute.value.Text();
    return map;
}
