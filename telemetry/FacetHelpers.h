// How the wrapper fills the telemetry library's facets.
//
// One rule holds throughout, set-or-remove: a value that was never given text removes its key instead of storing it,
// while an empty text is stored as an empty string. Field names are those of FacetFields.h.
#pragma once

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/AttributeMap.h>
#include <telemetry/FacetFieldTexts.h>

void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const char* key,
                   const Veltrane::TaviDesktopSDK::JsonValue& value);
void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const char* key,
                   const Veltrane::TaviDesktopSDK::TaviString& value);
inline void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                          const char* value)
{
    if (value != nullptr)
        facet.GetFacetEntry(key).SetString(value);
    else
        facet.SetFacetEntry(key, Veltrane::TaviDesktopSDK::JsonValue());
}

// One capital letter under "type": "C" for events with a component, "D" with a content, "S" with an entitlement.
inline void SetEventType(Veltrane::TaviDesktopSDK::Facet::Core& core, const char* letter)
{
    SetFacetEntry(core, FacetFields().type, letter);
}

// The codes of the scopes of our events.
inline constexpr int ComponentScope = 25;
inline constexpr int ContentScope = 6;
inline constexpr int EntitlementScope = 4;

// The letter that stands for `code`, 1 to 39, under "scope"; several codes share one. Any other code removes the entry.
void SetEventScope(Veltrane::TaviDesktopSDK::Facet::Core& core, int code);

inline void SetComponentName(Veltrane::TaviDesktopSDK::Facet::Base& component,
                             const Veltrane::TaviDesktopSDK::TaviString& name)
{
    SetFacetEntry(component, FacetFields().component_name, name.c_str());
}

// Sets or removes one member of the object that the facet holds under `objectKey`. The object is created with its first
// member and removed with its last. An empty `key` removes the whole object.
void SetFacetObjectMember(Veltrane::TaviDesktopSDK::Facet::Base& facet, const char* objectKey,
                          const Veltrane::TaviDesktopSDK::TaviString& key,
                          const Veltrane::TaviDesktopSDK::TaviString& value);

// Adds every attribute to the object under `objectKey`, in ascending order of the keys.
void SetFacetObjectMembers(Veltrane::TaviDesktopSDK::Facet::Base& facet, const char* objectKey,
                           const AttributeMap& attributes);

// Replaces the whole "component_attributes" object; no attributes leave none.
void SetComponentAttributes(Veltrane::TaviDesktopSDK::Facet::Base& component, const AttributeMap& attributes);

// Every member of a JSON object as text; empty for any other value.
AttributeMap ReadComponentAttributes(const Veltrane::TaviDesktopSDK::JsonValue& object);

// The product line, release, master and build of `product`, joined by "&". When one of them is missing or empty, `key`
// is left as it is.
void BuildProductKey(const Veltrane::TaviDesktopSDK::Facet::Product& product,
                     Veltrane::TaviDesktopSDK::TaviString& key);
