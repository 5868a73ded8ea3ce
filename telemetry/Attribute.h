// A key and a typed value side by side, for parameter lists only: both are borrowed for the call.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <variant>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/VocabularyText.h>

class Attribute
{
public:
    // `name` is one of the vocabulary's constants and no copy of it: its address tells which.
    Attribute(const std::wstring& name, const std::wstring& text) : key(&NarrowOf(name)), value(&text) {}
    Attribute(const std::wstring& name, std::same_as<bool> auto flag) : key(&NarrowOf(name)), value(flag) {}
    Attribute(const std::wstring& name, std::int32_t number) : key(&NarrowOf(name)), value(std::int64_t{number}) {}
    Attribute(const std::wstring& name, std::int64_t number) : key(&NarrowOf(name)), value(number) {}
    Attribute(const std::wstring& name, std::uint64_t number) : key(&NarrowOf(name)), value(number) {}
    Attribute(const std::wstring& name, double number) : key(&NarrowOf(name)), value(number) {}

    const Veltrane::TaviDesktopSDK::TaviString& Key() const { return *key; }

    // Sets the member under the attribute's key to the text that stands for its value.
    void StoreIn(Veltrane::TaviDesktopSDK::JsonValue& object) const;

private:
    const Veltrane::TaviDesktopSDK::TaviString* key;
    std::variant<const std::wstring*, bool, std::int64_t, std::uint64_t, double> value;
};

// Adds the attributes to the object that the facet holds under `objectKey`. They are in ascending order of their keys,
// as they are to be sent. No attributes make no object.
void StoreAttributes(Veltrane::TaviDesktopSDK::Facet::Base& facet,
                     const Veltrane::TaviDesktopSDK::TaviString& objectKey, std::span<const Attribute> attributes);
inline void StoreAttributes(Veltrane::TaviDesktopSDK::Facet::Base& facet,
                            const Veltrane::TaviDesktopSDK::TaviString& objectKey,
                            std::initializer_list<Attribute> attributes)
{
    StoreAttributes(facet, objectKey, std::span(attributes.begin(), attributes.size()));
}
