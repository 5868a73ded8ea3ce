#include <telemetry/Attribute.h>

#include <algorithm>
#include <cassert>

#include <telemetry/ValueText.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

void SetText(JsonValue& member, const std::wstring* text)
{
    ::SetText(member, *text);
}

} // namespace

void Attribute::StoreIn(JsonValue& object) const
{
    JsonValue& member = object[*key];
    std::visit([&member](auto held) { SetText(member, held); }, value);
}

void StoreAttributes(Facet::Base& facet, const TaviString& objectKey, std::span<const Attribute> attributes)
{
    if (attributes.empty())
        return;
    assert(std::is_sorted(attributes.begin(), attributes.end(),
                          [](const Attribute& left, const Attribute& right) { return left.Key() < right.Key(); }));
    JsonValue& object = facet.GetFacetEntry(objectKey);
    for (const Attribute& attribute : attributes)
        attribute.StoreIn(object);
}
