// Every inline member of the telemetry library's interface once, so that the object file shows which exported ones they
// come down to.
#include <utility>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

using namespace Veltrane::TaviDesktopSDK;

void UseInlineMembersOfTaviString(TaviString& target)
{
    TaviString empty;
    TaviString text("text");
    empty = std::move(text);
    TaviString moved(std::move(empty));
    target = std::move(moved);
}

bool UseInlineMembersOfJsonValue(JsonValue& target)
{
    JsonValue null;
    JsonValue moved(std::move(target));
    null = std::move(moved);
    return null.IsNull();
}

bool UseInlineMembersOfBase(Facet::Base& facet, const TaviString& key, const JsonValue& value)
{
    facet.SetFacetEntry(key, value);
    const Facet::Base& reading = facet;
    return &reading.GetFacetEntry(key) == &facet.GetFacetEntry(key);
}

const char* UseInlineMembersOfFacets(const char* (*nameOf)(const Facet::Base&))
{
    const Facet::Product product;
    const Facet::Content content;
    const Facet::Entitlement entitlement;
    const Facet::Component component;
    for (const Facet::Base* const facet :
         {static_cast<const Facet::Base*>(&product), static_cast<const Facet::Base*>(&content),
          static_cast<const Facet::Base*>(&entitlement), static_cast<const Facet::Base*>(&component)})
        nameOf(*facet);
    return product.Product::GetFacetName() == content.Content::GetFacetName() ? entitlement.Entitlement::GetFacetName()
                                                                              : component.Component::GetFacetName();
}

const char* UseInlineMembersOfCore(const TaviString& key)
{
    Facet::Core core;
    for (Facet::Base* const facet :
         {&core.ComponentFacet(), &core.ContentFacet(), &core.EntitlementFacet(), &core.ProductFacet()})
        facet->SetFacetEntry(key, JsonValue());
    return core.Core::GetFacetName();
}
