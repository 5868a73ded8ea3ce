// An event's attributes: text by key, in ascending order as the telemetry library orders its strings. Storing with
// operator[] under a key that is present replaces its text.
#pragma once

#include <map>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

using AttributeMap = std::map<Veltrane::TaviDesktopSDK::TaviString, Veltrane::TaviDesktopSDK::TaviString>;
