#include "PayloadRecorder.h"

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

int Record(const JsonValue& payload, void* context, JsonValue&)
{
    static_cast<PayloadRecorder*>(context)->payloads.push_back(payload);
    return 0;
}

void EnableCallback(bool enabled)
{
    JsonValue flags;
    flags[Key("Testing_EnableCallback")] = JsonValue(enabled);
    Sdk::SetTestingFlags(TaviString(), flags);
}

} // namespace

PayloadRecorder::PayloadRecorder()
{
    EnableCallback(true);
    Sdk::SetTestingCallback(TaviString(), Record, this);
}

PayloadRecorder::~PayloadRecorder()
{
    Sdk::SetTestingCallback(TaviString(), nullptr, nullptr);
    EnableCallback(false);
}
