// An event's attributes: text by key, ordered by key. Storing under a key that is present replaces its text.
#pragma once

#include <map>

#include <TaviDesktopSDK/TaviString.h>

using AttributeMap = std::map<Veltrane::TaviDesktopSDK::TaviString, Veltrane::TaviDesktopSDK::TaviString>;
