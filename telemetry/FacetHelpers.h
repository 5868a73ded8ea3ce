// How the wrapper fills the telemetry library's facets. Field names are those of FacetFields.h.
//
// Entries are set by one rule, set-or-remove: null, or text that the library treats as none, removes the key.
#pragma once

#include <concepts>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/Attributes.h>
#include <telemetry/FacetAccess.h>

// Sets or removes one entry. `value` and `text` are exactly of the library's types, and not of a type that converts to
// them: a pointer would become the boolean true, and a number or a flag would become text.
void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                   const std::same_as<Veltrane::TaviDesktopSDK::JsonValue> auto& value)
{
    if (value.Compare(Veltrane::TaviDesktopSDK::JsonValue()) != 0)
        Corvane::FacetEntries(facet)[key] = value;
    else
        Corvane::FacetEntries(facet).RemoveKey(key);
}
inline void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                          const char* text)
{
    Veltrane::TaviDesktopSDK::JsonValue value;
    value.SetString(text);
    SetFacetEntry(facet, key, value);
}
void SetFacetEntry(Veltrane::TaviDesktopSDK::Facet::Base& facet, const Veltrane::TaviDesktopSDK::TaviString& key,
                   const std::same_as<Veltrane::TaviDesktopSDK::TaviString> auto& text)
{
    SetFacetEntry(facet, key, text.c_str());
}

// EventCodes.h names the letters and codes that the wrapper sends.
void SetEventType(Veltrane::TaviDesktopSDK::Facet::Core& core, const char* letter);

// Sets the letter of `code` under "scope". A code without a letter removes the entry.
void SetEventScope(Veltrane::TaviDesktopSDK::Facet::Core& core, int code);

void SetComponentName(Veltrane::TaviDesktopSDK::Facet::Base& component,
                      const Veltrane::TaviDesktopSDK::TaviString& name);

// Sets or removes one member of the object that the facet holds under `objectKey`. The object is created with its first
// member and removed with its last. An empty `key` removes the whole object.
void SetFacetObjectMember(Veltrane::TaviDesktopSDK::Facet::Base& facet,
                          const Veltrane::TaviDesktopSDK::TaviString& objectKey,
                          const Veltrane::TaviDesktopSDK::TaviString& key,
                          const Veltrane::TaviDesktopSDK::TaviString& value);

namespace Corvane
{

// The text of one entry, as the library converts its value to a string. Creates no entry.
Veltrane::TaviDesktopSDK::TaviString FacetEntryText(const Veltrane::TaviDesktopSDK::Facet::Base& facet,
                                                    const char* key);

// Sets or removes one member per attribute, in ascending order of the keys; others stay.
void SetFacetObjectMembers(Veltrane::TaviDesktopSDK::Facet::Base& facet, const char* objectKey,
                           const AttributeMap& attributes);

} // namespace Corvane

// Replaces the whole "component_attributes" object; no attributes leave none.
void SetComponentAttributes(Veltrane::TaviDesktopSDK::Facet::Base& component, const AttributeMap& attributes);

// Every member of a JSON object as text; empty for any other value.
AttributeMap ReadComponentAttributes(const Veltrane::TaviDesktopSDK::JsonValue& object);

// The product line, release, master and build of `product`, joined by "&". When one of them is missing or empty, `key`
// is left as it is.
void BuildProductKey(const Veltrane::TaviDesktopSDK::Facet::Product& product,
                     Veltrane::TaviDesktopSDK::TaviString& key);
