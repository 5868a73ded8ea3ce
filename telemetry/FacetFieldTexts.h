// Names of facet fields as the telemetry library takes them, made once.
#pragma once

#include <TaviDesktopSDK/TaviString.h>

#include <telemetry/FacetFields.h>

struct FacetFieldTexts
{
    Veltrane::TaviDesktopSDK::TaviString type{FacetField::type};
    Veltrane::TaviDesktopSDK::TaviString scope{FacetField::scope};
    Veltrane::TaviDesktopSDK::TaviString component_type{FacetField::component_type};
    Veltrane::TaviDesktopSDK::TaviString component_name{FacetField::component_name};
    Veltrane::TaviDesktopSDK::TaviString component_attributes{FacetField::component_attributes};
    Veltrane::TaviDesktopSDK::TaviString content_type{FacetField::content_type};
    Veltrane::TaviDesktopSDK::TaviString content_size{FacetField::content_size};
    Veltrane::TaviDesktopSDK::TaviString content_meta{FacetField::content_meta};
    Veltrane::TaviDesktopSDK::TaviString entitlement_usage{FacetField::entitlement_usage};
    Veltrane::TaviDesktopSDK::TaviString entitlement_license_id{FacetField::entitlement_license_id};
    Veltrane::TaviDesktopSDK::TaviString entitlement_properties{FacetField::entitlement_properties};
    Veltrane::TaviDesktopSDK::TaviString product_key{FacetField::product_key};
    Veltrane::TaviDesktopSDK::TaviString product_suite_name{FacetField::product_suite_name};
};

// Made at the first call, and there until the process ends.
inline const FacetFieldTexts& FacetFields()
{
    // Never destroyed: the host may report until the last of its own statics is gone.
    static const FacetFieldTexts& texts = *new FacetFieldTexts;
    return texts;
}
