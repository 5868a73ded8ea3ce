// Uses every inline member of the telemetry library's interface: the object file's undefined symbols are the exported
// functions that these call.
#include <utility>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

using namespace Veltrane::TaviDesktopSDK;

void UseInlineMembersOfTaviString(TaviString& target)
{
    TaviString empty;
    TaviString moved(std::move(target));
    empty = std::move(moved);
    target = std::move(empty);
}

void UseInlineMembersOfJsonValue(JsonValue& target)
{
    JsonValue null;
    JsonValue moved(std::move(target));
    null = std::move(moved);
    target = std::move(null);
}

void UseInlineMembersOfBase(Facet::Base& facet, const TaviString& key, const JsonValue& value)
{
    facet.SetFacetEntry(key, value);
}

const char* UseInlineMembersOfFacets(const char* (*nameOf)(const Facet::Base&))
{
    const Facet::Product product;
    const Facet::Content content;
    return nameOf(product) == nameOf(content) ? product.Product::GetFacetName() : content.Content::GetFacetName();
}

// Those that only a core can create.
const char* UseInlineMembersOfSubFacets(const Facet::Entitlement& entitlement, const Facet::Component& component,
                                        bool isEntitlement)
{
    return isEntitlement ? entitlement.Entitlement::GetFacetName() : component.Component::GetFacetName();
}

const char* UseInlineMembersOfCore(const TaviString& key)
{
    Facet::Core core;
    for (Facet::Base* const facet :
         {&core.ComponentFacet(), &core.ContentFacet(), &core.EntitlementFacet(), &core.ProductFacet()})
        facet->SetFacetEntry(key, JsonValue());
    return core.Core::GetFacetName();
}
