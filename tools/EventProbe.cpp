// event_probe: makes the prober's calls and prints what they send, as a JSON array from which reference.py makes the
// event reference. It has each reporting method's "name", the method that it "takes_parameters_of", the known "names"
// that a caller can give the event, and its "calls": in each, the "parameter" (counted from 0) that differs from the
// first call's, how its "sample" differs, and the "payload".
#include <exception>
#include <iostream>
#include <ostream>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include <check/ReportingMethods.h>
#include <recorder/PayloadRecorder.h>

using nlohmann::ordered_json;
using namespace Corvane;

namespace
{

ordered_json Make(const ReportingMethod& method, const ProbingCall& call, const PayloadRecorder& recorder)
{
    const std::size_t before = recorder.Payloads().size();
    call.make();
    if (const std::size_t sent = recorder.Payloads().size() - before; sent != 1)
        throw std::runtime_error(CallText(method, call) + " sends " + std::to_string(sent) + " payloads, not one.");
    return {{"parameter", call.parameter ? ordered_json(*call.parameter) : ordered_json()},
            {"sample", call.sample},
            {"payload", ordered_json::parse(recorder.JsonText(before))}};
}

} // namespace

int main()
{
    std::ostream output(std::cout.rdbuf(nullptr)); // what the wrapper prints is dropped
    try
    {
        const PayloadRecorder recorder;
        if (!recorder.Refusal().empty())
            throw std::runtime_error("Nothing is recorded: " + recorder.Refusal() + ".");
        ordered_json methods = ordered_json::array();
        for (const ReportingMethod& method : ReportingMethods())
        {
            methods.push_back({{"name", method.name},
                               {"takes_parameters_of", method.preparedBy.empty() ? method.name : method.preparedBy},
                               {"names", method.eventNames},
                               {"calls", ordered_json::array()}});
            for (const ProbingCall& call : ProbingCalls(method))
                methods.back()["calls"].push_back(Make(method, call, recorder));
        }
        output << methods.dump(1) << std::endl;
    }
    catch (const std::exception& error)
    {
        std::cerr << error.what() << std::endl;
        return 1;
    }
    return output ? 0 : 1;
}
