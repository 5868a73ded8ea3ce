// The names that the telemetry library's header gives to its inline facet members, and the way to a facet's protected
// data. They are named here only: for a library that names them otherwise, edit this file and no other.
#pragma once

#include <TaviDesktopSDK/TaviDesktopSDK.h>

namespace Corvane
{

// The JSON object whose members are the facet's entries. Reading a constant facet creates no entry.
Veltrane::TaviDesktopSDK::JsonValue& FacetEntries(Veltrane::TaviDesktopSDK::Facet::Base& facet);
const Veltrane::TaviDesktopSDK::JsonValue& FacetEntries(const Veltrane::TaviDesktopSDK::Facet::Base& facet);

// Only a class that derives from Base, and its friends, may name Data(). Never instantiated.
class FacetAccess : public Veltrane::TaviDesktopSDK::Facet::Base
{
    friend Veltrane::TaviDesktopSDK::JsonValue& FacetEntries(Base& facet)
    {
        Veltrane::TaviDesktopSDK::JsonValue& (Base::*data)() = &FacetAccess::Data;
        return (facet.*data)();
    }

    friend const Veltrane::TaviDesktopSDK::JsonValue& FacetEntries(const Base& facet)
    {
        const Veltrane::TaviDesktopSDK::JsonValue& (Base::*data)() const = &FacetAccess::Data;
        return (facet.*data)();
    }
};

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
