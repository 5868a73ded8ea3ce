// A host's static object reports before main(), when the vocabulary's constants may not exist yet: this source does not
// include them. What is reported from main() on must be whole nevertheless.
#include <iostream>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;

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
    const Corvane::PayloadRecorder recorder;
    Report();
    if (isReportedEarly && recorder.Payloads().size() == 1 && IsWhole(recorder.Payloads().front()))
        return 0;
    std::cerr << recorder.Refusal() << (isReportedEarly ? "" : "\nNothing was reported before main()")
              << "\nReported from main():\n";
    recorder.WriteLines(std::cerr);
    return 1;
}
