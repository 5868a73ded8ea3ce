// Prints payloads, one JSON object a line: those of the catalogue, those of the prober's calls and of calls with other
// samples put together, and mutants of the catalogue's.
//
//     {"kind": "catalogue", "event": "TrackMeshSize", "payload": {...}}
//     {"kind": "call", "event": "TrackMeshSize", "payload": {...}}
//     {"kind": "mutant", "event": "TrackMeshSize", "payload": {...}, "what": "/scope removed"}
#include <cstdlib>
#include <exception>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/ReportingMethods.h>
#include <recorder/PayloadRecorder.h>

#include "CatalogueModel.h"
#include "Mutants.h"

using nlohmann::json;
using namespace Corvane;

namespace
{

constexpr int MixedCallsOfEachMethod = 100;

void WriteCatalogue()
{
    for (const CatalogueTest& test : TheCatalogue())
        std::cout << json{{"kind", "catalogue"}, {"event", test.method}, {"payload", test.payload}} << '\n';
    for (const Mutant& mutant : Mutants())
        std::cout << json{{"kind", "mutant"},
                          {"event", TheCatalogue()[mutant.test].method},
                          {"what", mutant.what},
                          {"payload", mutant.payload}}
                  << '\n';
}

// The payloads' texts are the library's.
void WriteCalls()
{
    std::mt19937 generator(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same numbers every time
    const PayloadRecorder recorder;
    for (const ReportingMethod& method : ReportingMethods())
    {
        std::vector<ProbingCall> calls = ProbingCalls(method);
        for (int i = 0; i < MixedCallsOfEachMethod && method.samples.size() > 1; ++i)
        {
            std::vector<std::size_t> chosen;
            for (const std::vector<std::string>& samples : method.samples)
                chosen.push_back(generator() % samples.size());
            calls.push_back(method.call(chosen));
        }
        for (const ProbingCall& call : calls)
        {
            call.make();
            std::cout << R"({"kind": "call", "event": ")" << method.name << R"(", "payload": )"
                      << recorder.JsonText(recorder.Payloads().size() - 1) << "}\n";
        }
    }
}

} // namespace

int main()
{
    try
    {
        WriteCatalogue();
        WriteCalls();
    }
    catch (const std::exception& error)
    {
        std::cerr << "payload_writer: " << error.what() << std::endl;
        return EXIT_FAILURE;
    }
    return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
