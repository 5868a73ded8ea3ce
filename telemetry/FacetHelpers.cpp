#include <telemetry/FacetHelpers.h>

#include <string>
#include <string_view>
#include <utility>

#include <telemetry/FacetFieldTexts.h>
#include <telemetry/FacetFields.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

void SetFacetEntry(Facet::Base& facet, const char* key, const JsonValue& value)
{
    facet.SetFacetEntry(TaviString(key), value);
}

void SetFacetEntry(Facet::Base& facet, const char* key, const TaviString& value)
{
    SetFacetEntry(facet, TaviString(key), value.c_str());
}

void SetEventScope(Facet::Core& core, int code)
{
    // The letters of the codes 1 to 39. Several codes share a letter.
    constexpr std::string_view letters = "SEFDISEFNT"
                                         "OXIVALSEFN"
                                         "UAOPCDUOAS"
                                         "CECCCUDIJ";
    static_assert(letters.size() == 39);

    const bool isKnown = code >= 1 && code <= static_cast<int>(letters.size());
    const char letter[] = {isKnown ? letters[static_cast<std::size_t>(code - 1)] : '\0', '\0'};
    SetFacetEntry(core, FacetFields().scope, isKnown ? letter : nullptr);
}

void SetFacetObjectMember(Facet::Base& facet, const char* objectKey, const TaviString& key, const TaviString& value)
{
    const TaviString objectName(objectKey);
    if (key.size() == 0)
    {
        facet.SetFacetEntry(objectName, JsonValue());
        return;
    }

    JsonValue& object = facet.GetFacetEntry(objectName);
    if (value.c_str() != nullptr)
        object[key].SetString(value.c_str());
    else
        object.RemoveKey(key);
    if (object.GetCount() == 0)
        facet.SetFacetEntry(objectName, JsonValue());
}

void SetFacetObjectMembers(Facet::Base& facet, const char* objectKey, const AttributeMap& attributes)
{
    for (const auto& [key, value] : attributes)
        SetFacetObjectMember(facet, objectKey, key, value);
}

void SetComponentAttributes(Facet::Base& component, const AttributeMap& attributes)
{
    const TaviString objectName(FacetField::component_attributes);
    for (const auto& [key, value] : ReadComponentAttributes(std::as_const(component).GetFacetEntry(objectName)))
        SetFacetObjectMember(component, FacetField::component_attributes, key, TaviString());
    SetFacetObjectMembers(component, FacetField::component_attributes, attributes);
}

AttributeMap ReadComponentAttributes(const JsonValue& object)
{
    AttributeMap attributes;
    const JsonValue keys = object.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const auto key = static_cast<TaviString>(keys[i]);
        attributes[key] = static_cast<TaviString>(object[key]);
    }
    return attributes;
}

void BuildProductKey(const Facet::Product& product, TaviString& key)
{
    const auto read = [&product](const char* field)
    { return static_cast<TaviString>(product.GetFacetEntry(TaviString(field))); };
    const TaviString line = read(FacetField::product_line_name);
    const TaviString release = read(FacetField::product_release_id);
    const TaviString master = read(FacetField::product_master_id);
    const TaviString build = read(FacetField::product_build_id);
    if (line.size() == 0 || release.size() == 0 || master.size() == 0 || build.size() == 0)
        return;
    const TaviString separator("&");
    key = line + separator + release + separator + master + separator + build;
}
