// What the wrapper sends for different arguments: each reporting method is called with simple ones, and then once for
// every sample of every parameter. The compiler makes the arguments from the method's declaration.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

struct ProbingCall
{
    std::optional<std::size_t> parameter; // the one that differs from the first call's, counted from 0
    std::string sample;                   // how it differs: "text", "flag", "number", "decimal" or "empty"
    Veltrane::TaviDesktopSDK::JsonValue payload;
};

struct ProbedMethod
{
    std::string name;
    std::string takesParametersOf; // the method that is given the values: this one, or one that prepares the event
    std::vector<ProbingCall> calls;
};

// Every public reporting method of the wrapper. Throws std::runtime_error when one does not send exactly one event.
std::vector<ProbedMethod> ProbeMethods();
