// Sequences of reporting calls, each with any combination of the prober's samples: each sends exactly one payload,
// which the judge finds right.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <check/Document.h>
#include <check/Judge.h>
#include <check/ProductFile.h>
#include <check/ReportingMethods.h>
#include <recorder/PayloadRecorder.h>

using namespace Corvane;
using nlohmann::json;

namespace
{

[[noreturn]] void Fail(const ReportingMethod& method, const ProbingCall& call, const std::string& fault)
{
    std::cerr << "reporting: " << CallText(method, call) << ": " << fault << std::endl;
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Document document = ReadDocument(CompiledInDocument());
    static const Judge judge(ReadProductFile(ProductFilePath()), LibraryTakesEmptyForNone());
    FuzzedDataProvider input(data, size);
    const PayloadRecorder recorder;
    while (input.remaining_bytes() > 0)
    {
        const ReportingMethod& method =
            ReportingMethods()[input.ConsumeIntegralInRange<std::size_t>(0, ReportingMethods().size() - 1)];
        std::vector<std::size_t> chosen;
        for (const std::vector<std::string>& samples : method.samples)
            chosen.push_back(input.ConsumeIntegralInRange<std::size_t>(0, samples.size() - 1));
        const ProbingCall call = method.call(chosen);
        const std::size_t before = recorder.Payloads().size();
        call.make();
        if (recorder.Payloads().size() != before + 1)
            Fail(method, call, "it does not send one event");
        const json payload = json::parse(recorder.JsonText(before), nullptr, false);
        const Findings findings = judge.OfCall(*FindEvent(document, method.name), call.arguments, payload);
        for (const std::vector<Fault>* const faults : {&findings.faults, &findings.productFaults})
        {
            if (!faults->empty())
                Fail(method, call, faults->front().message);
        }
    }
    return 0;
}
