// Prints payloads, one JSON object a line: those of the catalogue, those of calls with arbitrary arguments, and
// mutants.
//
//     {"kind": "catalogue", "event": "TrackMeshSize", "payload": {...}}
//     {"kind": "call", "event": "TrackMeshSize", "payload": {...}}
//     {"kind": "mutant", "event": "TrackMeshSize", "payload": {...}, "what": "/scope removed"}
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ArbitraryCalls.h"
#include "CatalogueModel.h"
#include "CatalogueSource.h"
#include "Mutants.h"
#include "PayloadRecorder.h"
#include "Text.h"

using nlohmann::json;

namespace
{

constexpr int CallsOfEachMethod = 200;

// By index in the catalogue.
std::vector<std::string> MethodsOfTheCatalogue()
{
    const std::vector<CatalogueCall> calls = ReadCatalogueSource();
    std::vector<std::string> methods;
    for (const CatalogueTest& test : TheCatalogue())
    {
        const auto call =
            std::find_if(calls.begin(), calls.end(),
                         [&test](const CatalogueCall& candidate) { return candidate.title == test.title; });
        if (call == calls.end())
            throw std::runtime_error("harness/Catalogue.cpp has no \"" + test.title + "\"");
        methods.push_back(call->method);
    }
    return methods;
}

void WriteCatalogue()
{
    const std::vector<std::string> methods = MethodsOfTheCatalogue();
    for (std::size_t test = 0; test < methods.size(); ++test)
        std::cout << json{{"kind", "catalogue"}, {"event", methods[test]}, {"payload", TheCatalogue()[test].payload}}
                  << '\n';
    for (const std::vector<Mutant>& mutants : {MutantsOfExpectations(), FurtherMutants()})
    {
        for (const Mutant& mutant : mutants)
            std::cout << json{{"kind", "mutant"},
                              {"event", methods.at(mutant.test)},
                              {"what", mutant.what},
                              {"payload", mutant.payload}}
                      << '\n';
    }
}

// The payloads' texts are the library's.
void WriteCalls()
{
    std::mt19937_64 generator(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same numbers every time
    const NumberSource source = [&generator](std::uint64_t greatest)
    { return greatest == std::mt19937_64::max() ? generator() : generator() % (greatest + 1); };
    PayloadRecorder recorder;
    for (int i = 0; i < CallsOfEachMethod; ++i)
    {
        for (const ArbitraryReport& report : ArbitraryReports())
        {
            recorder.payloads.clear();
            report.report(source);
            if (recorder.payloads.size() != 1)
                throw std::runtime_error(report.method + " sends " + std::to_string(recorder.payloads.size()) +
                                         " events, not one");
            std::cout << R"({"kind": "call", "event": ")" << report.method << R"(", "payload": )"
                      << Json(recorder.payloads.front()) << "}\n";
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
