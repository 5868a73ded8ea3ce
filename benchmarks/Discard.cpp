#include "Discard.h"

#include <cstdint>

using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

int Count(void* context)
{
    ++*static_cast<std::uint64_t*>(context);
    return 0;
}

} // namespace

int DiscardValue(const JsonValue&, void* context, JsonValue&)
{
    return Count(context);
}

int DiscardNlohmann(const nlohmann::json&, void* context)
{
    return Count(context);
}

int DiscardRapidJson(const rapidjson::Document&, void* context)
{
    return Count(context);
}

int DiscardText(std::string_view, void* context)
{
    return Count(context);
}
