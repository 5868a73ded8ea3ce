// The prober: the wrapper's reporting methods, and calls that prove each parameter of each method.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace Corvane
{

struct ProbingCall
{
    // In the order of the parameters: a flag, a number or a text in UTF-8; for a list {"count", "last"}, its size and,
    // unless it is empty, an object with the text and the flag of its last element.
    std::vector<nlohmann::json> arguments;
    std::function<void()> make;           // through CorvaneTavi::Instance()
    std::optional<std::size_t> parameter; // the parameter that differs from the first call's, counted from 0
    std::string sample;                   // how it differs: "text", "flag", "number", "decimal" or "empty"
};

struct ReportingMethod
{
    std::string name;                              // "TrackMeshSize"
    std::string preparedBy;                        // the method that takes the values, where it is another one
    std::vector<std::string> eventNames;           // known names that a caller gives as the first argument
    std::vector<std::vector<std::string>> samples; // of each parameter, how each sample differs from the first one
    std::function<ProbingCall(const std::vector<std::size_t>& chosen)> call; // with a sample for each parameter
};

// All methods, in the order of the test program's catalogue.
const std::vector<ReportingMethod>& ReportingMethods();

// The first call's arguments differ from one another in the text that is sent for them, as far as they can. Each
// further call changes one parameter.
std::vector<ProbingCall> ProbingCalls(const ReportingMethod& method);

// The name of the method's test in the catalogue: the method's without the leading "Track".
std::string TestName(const std::string& method);

// The call as in C++, with long texts shortened.
std::string CallText(const ReportingMethod& method, const ProbingCall& call);

} // namespace Corvane
