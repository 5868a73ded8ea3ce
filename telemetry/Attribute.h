// A key and a typed value side by side, for parameter lists only: both are borrowed for the call.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <variant>

#include <telemetry/AttributeMap.h>
#include <telemetry/ValueText.h>

class Attribute
{
public:
    Attribute(const std::wstring& name, const std::wstring& text) : key(name), value(&text) {}
    Attribute(const std::wstring& name, std::same_as<bool> auto flag) : key(name), value(flag) {}
    Attribute(const std::wstring& name, std::int32_t number) : key(name), value(number) {}
    Attribute(const std::wstring& name, std::int64_t number) : key(name), value(number) {}
    Attribute(const std::wstring& name, std::uint64_t number) : key(name), value(number) {}
    Attribute(const std::wstring& name, double number) : key(name), value(number) {}

    // Replaces what the map holds under the key.
    void StoreIn(AttributeMap& map) const
    {
        map[TextOf(key)] = std::visit(
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
    const std::wstring& key;
    std::variant<const std::wstring*, bool, std::int32_t, std::int64_t, std::uint64_t, double> value;
};

// Stored in the order given, so that the last of two equal keys wins.
inline AttributeMap MakeAttributeMap(std::initializer_list<Attribute> attributes)
{
    AttributeMap map;
    for (const Attribute& attribute : attributes)
        attribute.StoreIn(map);
    return map;
}
