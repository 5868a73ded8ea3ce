// A key and a typed value side by side, for parameter lists only: both are borrowed for the call.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <variant>

#include <telemetry/AttributeMap.h>
#include <telemetry/ValueText.h>

namespace Corvane
{

class Attribute
{
public:
    // A key is a constant of the vocabulary. A literal or any other temporary, spelt at the call, does not compile.
    Attribute(const std::wstring& name, const std::wstring& text) : key(&name), value(&text) {}
    Attribute(const std::wstring& name, std::same_as<bool> auto flag) : key(&name), value(flag) {}
    Attribute(const std::wstring& name, std::int32_t number) : key(&name), value(number) {}
    Attribute(const std::wstring& name, std::int64_t number) : key(&name), value(number) {}
    Attribute(const std::wstring& name, std::uint64_t number) : key(&name), value(number) {}
    Attribute(const std::wstring& name, double number) : key(&name), value(number) {}
    Attribute(const std::wstring&&, const auto&) = delete;

    void StoreIn(AttributeMap& attributes) const
    {
        Veltrane::TaviDesktopSDK::TaviString text = std::visit([](auto held) { return Text(held); }, value);
        attributes[TextOf(*key)] = std::move(text);
    }

private:
    static Veltrane::TaviDesktopSDK::TaviString Text(const std::wstring* held) { return TextOf(*held); }
    static Veltrane::TaviDesktopSDK::TaviString Text(auto held) { return TextOf(held); }

    const std::wstring* key;
    std::variant<const std::wstring*, bool, std::int32_t, std::int64_t, std::uint64_t, double> value;
};

// Stores them one after the other: of two under the same key the later stands.
inline AttributeMap Attributes(std::initializer_list<Attribute> attributes)
{
    AttributeMap stored;
    for (const Attribute& attribute : attributes)
        attribute.StoreIn(stored);
    return stored;
}

} // namespace Corvane
