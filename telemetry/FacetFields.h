// The 8-bit names of the facet fields, spelt as the telemetry library spells them.
//
// The wrapper writes strings under them, except an integer under "content_size" and objects of strings under
// "component_attributes", "content_meta" and "entitlement_properties".
#pragma once

#include <array>

namespace Corvane::FacetFields
{

inline constexpr const char* type = "type";
inline constexpr const char* scope = "scope";
inline constexpr const char* product_id_provider = "product_id_provider";
inline constexpr const char* product_line_name = "product_line_name";
inline constexpr const char* product_release_id = "product_release_id";
inline constexpr const char* product_master_id = "product_master_id";
inline constexpr const char* product_build_id = "product_build_id";
inline constexpr const char* product_key = "product_key";
inline constexpr const char* product_suite_name = "product_suite_name";
inline constexpr const char* content_type = "content_type";
inline constexpr const char* content_size = "content_size";
inline constexpr const char* content_meta = "content_meta";
inline constexpr const char* entitlement_usage = "entitlement_usage";
inline constexpr const char* entitlement_license_id = "entitlement_license_id";
inline constexpr const char* entitlement_properties = "entitlement_properties";
inline constexpr const char* user_info = "user_info";
inline constexpr const char* provider_name = "provider_name";
inline constexpr const char* user_id = "user_id";
inline constexpr const char* roles = "roles";
inline constexpr const char* logged_in = "logged_in";
inline constexpr const char* ldap_registration = "ldap_registration";
inline constexpr const char* ldap_root = "ldap_root";
inline constexpr const char* component_type = "component_type";
inline constexpr const char* component_name = "component_name";
inline constexpr const char* component_attributes = "component_attributes";

// Written for documents only. They are not part of the table.
inline constexpr const char* content_name = "content_name";
inline constexpr const char* content_root = "content_root";

// The table of field names, in its fixed order. Those from "user_info" to "ldap_root" are declared but never written.
inline constexpr std::array<const char*, 25> Names = {
    type,
    scope,
    product_id_provider,
    product_line_name,
    product_release_id,
    product_master_id,
    product_build_id,
    product_key,
    product_suite_name,
    content_type,
    content_size,
    content_meta,
    entitlement_usage,
    entitlement_license_id,
    entitlement_properties,
    user_info,
    provider_name,
    user_id,
    roles,
    logged_in,
    ldap_registration,
    ldap_root,
    component_type,
    component_name,
    component_attributes,
};

} // namespace Corvane::FacetFields
