// The facet keys with which expected payloads are built and read, as wide text.
#pragma once

#include <string>

namespace Corvane::FacetKeys
{

inline const std::wstring component_name = L"component_name";
inline const std::wstring component_attributes = L"component_attributes";
inline const std::wstring content_meta = L"content_meta";
inline const std::wstring entitlement_usage = L"entitlement_usage";
inline const std::wstring entitlement_license_id = L"entitlement_license_id";
inline const std::wstring entitlement_properties = L"entitlement_properties";
inline const std::wstring product_suite_name = L"product_suite_name";
inline const std::wstring type = L"type";

} // namespace Corvane::FacetKeys
