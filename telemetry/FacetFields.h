// The 8-bit names of the facet fields, spelt as the telemetry library spells them, and as constants of the same names.
//
// The wrapper writes strings under them, except an integer under "content_size" and objects of strings under
// "component_attributes", "content_meta" and "entitlement_properties".
#pragma once

#include <array>

namespace Corvane::FacetFields
{

// The table of field names, in its fixed order. Those from "user_info" to "ldap_root" are declared but never written.
#define CORVANE_FACET_FIELDS(FIELD)                                                                                    \
    FIELD(type)                                                                                                        \
    FIELD(scope)                                                                                                       \
    FIELD(product_id_provider)                                                                                         \
    FIELD(product_line_name)                                                                                           \
    FIELD(product_release_id)                                                                                          \
    FIELD(product_master_id)                                                                                           \
    FIELD(product_build_id)                                                                                            \
    FIELD(product_key)                                                                                                 \
    FIELD(product_suite_name)                                                                                          \
    FIELD(content_type)                                                                                                \
    FIELD(content_size)                                                                                                \
    FIELD(content_meta)                                                                                                \
    FIELD(entitlement_usage)                                                                                           \
    FIELD(entitlement_license_id)                                                                                      \
    FIELD(entitlement_properties)                                                                                      \
    FIELD(user_info)                                                                                                   \
    FIELD(provider_name)                                                                                               \
    FIELD(user_id)                                                                                                     \
    FIELD(roles)                                                                                                       \
    FIELD(logged_in)                                                                                                   \
    FIELD(ldap_registration)                                                                                           \
    FIELD(ldap_root)                                                                                                   \
    FIELD(component_type)                                                                                              \
    FIELD(component_name)                                                                                              \
    FIELD(component_attributes)
#define CORVANE_CONSTANT(name) inline constexpr const char* name = #name;
#define CORVANE_ELEMENT(name) name,

CORVANE_FACET_FIELDS(CORVANE_CONSTANT)
inline constexpr std::array<const char*, 25> Names = {CORVANE_FACET_FIELDS(CORVANE_ELEMENT)};

// Written for documents only. They are not part of the table.
CORVANE_CONSTANT(content_name)
CORVANE_CONSTANT(content_root)

#undef CORVANE_ELEMENT
#undef CORVANE_CONSTANT
#undef CORVANE_FACET_FIELDS

} // namespace Corvane::FacetFields
