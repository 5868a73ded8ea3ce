#pragma once

#include <TaviDesktopSDK/JsonValue.h>

namespace Veltrane::TaviDesktopSDK
{

// Copies each member of the object `from` into `into`, replacing one of the same key. Any other `from` has no members.
inline void MergeMembers(JsonValue& into, const JsonValue& from)
{
    const JsonValue keys = from.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const auto key = static_cast<TaviString>(keys[i]);
        into[key] = from[key];
    }
}

} // namespace Veltrane::TaviDesktopSDK
