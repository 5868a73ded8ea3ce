// An event's attributes: text by key, in ascending order of the keys' bytes. Storing with operator[] under a key that
// is present replaces its text.
#pragma once

#include <map>

#include <TaviDesktopSDK/TaviString.h>

using AttributeMap = std::map<Veltrane::TaviDesktopSDK::TaviString, Veltrane::TaviDesktopSDK::TaviString>;
