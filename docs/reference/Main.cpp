// event_probe: prints what the wrapper sends, as one JSON object of which reference.py makes the event reference.
//   "methods"    each reporting method's "name", the method that it "takes_parameters_of", and the payloads of its
//                "calls": the first with simple arguments, each other with one "parameter" (counted from 0) changed
//                to a "sample"
//   "catalogue"  each test of the test program, its "test" and its "payload"
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include <harness/Catalogue.h>
#include <telemetry/CorvaneTavi.h>

#include "Probe.h"
#include "Recording.h"
#include "Text.h"

using nlohmann::ordered_json;
using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

ordered_json PayloadOf(const JsonValue& payload)
{
    return ordered_json::parse(Json(payload));
}

ordered_json Methods()
{
    ordered_json methods = ordered_json::array();
    for (const ProbedMethod& method : ProbeMethods())
    {
        ordered_json calls = ordered_json::array();
        for (const ProbingCall& call : method.calls)
        {
            ordered_json entry = {
                {"parameter", nullptr}, {"sample", call.sample}, {"payload", PayloadOf(call.payload)}};
            if (call.parameter)
                entry["parameter"] = *call.parameter;
            calls.push_back(entry);
        }
        methods.push_back({{"name", method.name}, {"takes_parameters_of", method.takesParametersOf}, {"calls", calls}});
    }
    return methods;
}

// What the test program sends, told apart by the titles that it prints.
ordered_json Catalogue()
{
    Recording recording = Record(
        []
        {
            TestResultList results;
            RunTests(results);
        });
    // The last test registers a callback of its own; its document can be sent once more.
    const Recording document = Record([] { CorvaneTavi::Instance().StartTrackFileChange(L"fileName1"); });
    recording.payloads.insert(recording.payloads.end(), document.payloads.begin(), document.payloads.end());

    ordered_json tests = ordered_json::array();
    std::istringstream lines(recording.output);
    for (std::string line; std::getline(lines, line);)
    {
        const std::string opening = "Testing ";
        if (line.starts_with(opening))
            tests.push_back(
                {{"test", line.substr(opening.size())}, {"payload", PayloadOf(recording.payloads.at(tests.size()))}});
    }
    return tests;
}

} // namespace

int main()
{
    try
    {
        std::cout << ordered_json{{"methods", Methods()}, {"catalogue", Catalogue()}}.dump(1) << std::endl;
    }
    catch (const std::exception& error)
    {
        std::cerr << "event_probe: " << error.what() << std::endl;
        return 1;
    }
    return std::cout ? 0 : 1;
}
