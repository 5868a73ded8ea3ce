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
    // `name` is a constant of the vocabulary. A literal, or any other temporary, in its place does not compile.
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

// The map of all attributes. Of several with the same key the last is kept.
inline AttributeMap Attributes(std::initializer_list<Attribute> attributes)
{
    AttributeMap stored;
    for (const Attribute& attribute : attributes)
        attribute.StoreIn(stored);
    return stored;
}

} // namespace Corvane
