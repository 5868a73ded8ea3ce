// A host's static object reports before main(), when the vocabulary's constants may not exist yet: this source does not
// include them. What is reported from main() on must be whole nevertheless.
#include <iostream>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

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

} // namespace

int main()
{
    const Corvane::PayloadRecorder recorder;
    Report();
    const std::string payload = recorder.Payloads().size() == 1 ? recorder.JsonText(0) : "";
    if (isReportedEarly && payload.find(R"("component_name":"CV.MESH_SIZE_COUNT")") != std::string::npos &&
        payload.find(R"({"CV.MESH_SIZE_ELEMENTS":"3000","CV.MESH_SIZE_NODES":"99999"})") != std::string::npos)
        return 0;
    std::cerr << recorder.Refusal() << (isReportedEarly ? "" : "\nNothing was reported before main()")
              << "\nReported from main():\n";
    recorder.WriteLines(std::cerr);
    return 1;
}
