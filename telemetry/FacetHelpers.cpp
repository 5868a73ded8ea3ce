#include <telemetry/FacetHelpers.h>

#include <cstddef>
#include <utility>

#include <telemetry/Attributes.h>
#include <telemetry/EventCodes.h>
#include <telemetry/FacetAccess.h>
#include <telemetry/FacetFields.h>

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

void SetEventType(Facet::Core& core, const char* letter)
{
    SetFacetEntry(core, TextOf(FacetFields::type), letter);
}

void SetEventScope(Facet::Core& core, int code)
{
    const bool isKnown = code >= 1 && code <= static_cast<int>(ScopeLetters.size());
    const char letter[] = {isKnown ? ScopeLetters[static_cast<std::size_t>(code - 1)] : '\0', '\0'};
    SetFacetEntry(core, TextOf(FacetFields::scope), isKnown ? letter : nullptr);
}

void SetComponentName(Facet::Base& component, const TaviString& name)
{
    SetFacetEntry(component, TextOf(FacetFields::component_name), name);
}

void SetFacetObjectMember(Facet::Base& facet, const TaviString& objectKey, const TaviString& key,
                          const TaviString& value)
{
    if (key.size() == 0)
    {
        SetFacetEntry(facet, objectKey, JsonValue());
        return;
    }
    if (value.c_str() != nullptr)
    {
        JsonValue& member = FacetEntries(facet)[objectKey][key];
        member.SetString(value.c_str());
        if (member.Compare(JsonValue()) != 0)
            return;
        // The library stores this text as null: the member is removed.
    }
    JsonValue& object = FacetEntries(facet)[objectKey];
    object.RemoveKey(key);
    if (object.GetCount() == 0)
        SetFacetEntry(facet, objectKey, JsonValue());
}

TaviString Corvane::FacetEntryText(const Facet::Base& facet, const char* key)
{
    return FacetEntries(facet)[TextOf(key)].operator TaviString();
}

void Corvane::SetFacetObjectMembers(Facet::Base& facet, const char* objectKey, const AttributeMap& attributes)
{
    const TaviString objectName = TextOf(objectKey);
    for (const auto& [key, value] : attributes)
        SetFacetObjectMember(facet, objectName, key, value);
}

void SetComponentAttributes(Facet::Base& component, const AttributeMap& attributes)
{
    const TaviString objectName = TextOf(FacetFields::component_attributes);
    for (const auto& [key, value] : ReadComponentAttributes(FacetEntries(std::as_const(component))[objectName]))
        SetFacetObjectMember(component, objectName, key, TaviString());
    SetFacetObjectMembers(component, FacetFields::component_attributes, attributes);
}

AttributeMap ReadComponentAttributes(const JsonValue& object)
{
    AttributeMap attributes;
    const JsonValue keys = object.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const TaviString key = keys[i].operator TaviString();
        attributes[key] = object[key].operator TaviString();
    }
    return attributes;
}

void BuildProductKey(const Facet::Product& product, TaviString& key)
{
    const TaviString line = FacetEntryText(product, FacetFields::product_line_name);
    const TaviString release = FacetEntryText(product, FacetFields::product_release_id);
    const TaviString master = FacetEntryText(product, FacetFields::product_master_id);
    const TaviString build = FacetEntryText(product, FacetFields::product_build_id);
    if (line.size() == 0 || release.size() == 0 || master.size() == 0 || build.size() == 0)
        return;
    const TaviString separator = TextOf("&");
    key = line + separator + release + separator + master + separator + build;
}
