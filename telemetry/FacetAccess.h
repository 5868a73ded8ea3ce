// The names that the telemetry library's header gives to its inline facet members, and the way to a facet's protected
// data. They are named here only: for a library that names them otherwise, edit this file and no other.
//
// Facet fields are set by one rule, set-or-remove: null, or text that the library treats as none, removes the key.
#pragma once

#include <concepts>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

namespace Corvane
{

// Never instantiated. It derives from Base so that pointers to the protected members can be formed.
class FacetAccess : public Veltrane::TaviDesktopSDK::Facet::Base
{
public:
    FacetAccess() = delete;

    static Veltrane::TaviDesktopSDK::JsonValue& Entries(Veltrane::TaviDesktopSDK::Facet::Base& facet)
    {
        using Member = Veltrane::TaviDesktopSDK::JsonValue& (Base::*)();
        return (facet.*Member(&FacetAccess::Data))();
    }

    static const Veltrane::TaviDesktopSDK::JsonValue& Entries(const Veltrane::TaviDesktopSDK::Facet::Base& facet)
    {
        using Member = const Veltrane::TaviDesktopSDK::JsonValue& (Base::*)() const;
        return (facet.*Member(&FacetAccess::Data))();
    }
};

// The JSON object whose members are the facet's entries. Reading a constant facet creates no entry.
inline const Veltrane::TaviDesktopSDK::JsonValue& FacetEntries(const Veltrane::TaviDesktopSDK::Facet::Base& facet)
{
    return FacetAccess::Entries(facet);
}
inline Veltrane::TaviDesktopSDK::JsonValue& FacetEntries(Veltrane::TaviDesktopSDK::Facet::Base& facet)
{
    return FacetAccess::Entries(facet);
}

// The event's sub-facets, created on the first request; they live until the core is cleared or destroyed.
inline Veltrane::TaviDesktopSDK::Facet::Base& ComponentFacet(Veltrane::TaviDesktopSDK::Facet::Core& core)
{
    return core.ComponentFacet();
}
inline Veltrane::TaviDesktopSDK::Facet::Base& ContentFacet(Veltrane::TaviDesktopSDK::Facet::Core& core)
{
    return core.ContentFacet();
}
inline Veltrane::TaviDesktopSDK::Facet::Base& EntitlementFacet(Veltrane::TaviDesktopSDK::Facet::Core& core)
{
    return core.EntitlementFacet();
}
inline Veltrane::TaviDesktopSDK::Facet::Base& ProductFacet(Veltrane::TaviDesktopSDK::Facet::Core& core)
{
    return core.ProductFacet();
}

} // namespace Corvane

// Sets or removes one entry. `value` and `text` are exactly of the library's types, and not of a type that converts to
// them: a pointer would become the boolean true, and a number or a flag would become text.
void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                   const std::same_as<Veltrane::TaviDesktopSDK::JsonValue> auto& value)
{
    facet.SetFacetEntry(key, value);
}

// The same for text. A null pointer, or a string without text, removes the key.
inline void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                          const char* text)
{
    Veltrane::TaviDesktopSDK::JsonValue value;
    value.SetString(text);
    facet.SetFacetEntry(key, value);
}
void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                   const std::same_as<Veltrane::TaviDesktopSDK::TaviString> auto& text)
{
    SetFacetEntry(facet, key, text.c_str());
}
