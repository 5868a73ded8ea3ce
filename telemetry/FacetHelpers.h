// How the wrapper fills the telemetry library's facets, by the set-or-remove rule of FacetAccess.h. Field names are
// those of FacetFields.h.
#pragma once

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/AttributeMap.h>

// One capital letter under "type": "C" for events with a component, "D" with a content, "S" with an entitlement.
void SetEventType(Veltrane::TaviDesktopSDK::Facet::Core& core, const char* letter);

// The codes of the scopes of our events.
inline constexpr int ComponentScope = 25;
inline constexpr int ContentScope = 6;
inline constexpr int EntitlementScope = 4;

// The letter that stands for `code`, 1 to 39, under "scope"; several codes share one. Any other code removes the entry.
void SetEventScope(Veltrane::TaviDesktopSDK::Facet::Core& core, int code);

void SetComponentName(Veltrane::TaviDesktopSDK::Facet::Base& component,
                      const Veltrane::TaviDesktopSDK::TaviString& name);

// Sets or removes one member of the object that the facet holds under `objectKey`. The object is created with its first
// member and removed with its last. An empty `key` removes the whole object.
void SetFacetObjectMember(Veltrane::TaviDesktopSDK::Facet::Base& facet,
                          const Veltrane::TaviDesktopSDK::TaviString& objectKey,
                          const Veltrane::TaviDesktopSDK::TaviString& key,
                          const Veltrane::TaviDesktopSDK::TaviString& value);

// The same for every attribute, in ascending order of the keys. Members that are there already stay.
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
