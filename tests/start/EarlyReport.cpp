// A host's static object reports before main(), when the vocabulary's constants may not exist yet: this source does not
// include them. What is reported from main() on must be whole nevertheless.
#include <iostream>

#include <telemetry/CorvaneTavi.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

constinit bool isReportedEarly = false;

void Report()
{
    CorvaneTavi::Instance().TrackMeshSize(3000, 99'999);
}

struct EarlyReporter
{
    EarlyReporter()
    {
        Report();
        isReportedEarly = true;
    }
};

const EarlyReporter earlyReporter;

int Keep(const JsonValue& payload, void* context, JsonValue&)
{
    *static_cast<JsonValue*>(context) = payload;
    return 0;
}

bool IsWhole(const JsonValue& payload)
{
    const JsonValue& attributes = payload[Key("component_attributes")];
    return Json(payload[Key("component_name")]) == R"("CV.MESH_SIZE_COUNT")" && attributes.GetCount() == 2 &&
           Json(attributes[Key("CV.MESH_SIZE_ELEMENTS")]) == R"("3000")" &&
           Json(attributes[Key("CV.MESH_SIZE_NODES")]) == R"("99999")";
}

} // namespace

int main()
{
    const TaviString productKey = Key(CorvaneTavi::Instance().GetProductKey().c_str());
    JsonValue flags;
    flags[Key("Testing_EnableCallback")] = JsonValue(true);
    JsonValue payload;
    if (Sdk::SetTestingFlags(productKey, flags) != 0 || Sdk::SetTestingCallback(productKey, Keep, &payload) != 0)
    {
        std::cerr << "The library does not go into test mode\n";
        return 1;
    }
    Report();
    Sdk::SetTestingCallback(productKey, nullptr, nullptr);
    if (isReportedEarly && IsWhole(payload))
        return 0;
    std::cerr << (isReportedEarly ? "" : "Nothing was reported before main()\n")
              << "Reported from main(): " << Json(payload) << "\n";
    return 1;
}
