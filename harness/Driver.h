// One run of the test program: opt-in check, test mode, catalogue, summary.
#pragma once

#include <optional>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/Verification.h>

namespace Corvane
{

// Why there is no test mode.
struct Refusal
{
    std::string sentence;
    std::optional<int> status; // the library's; none when the user has not opted in
};

// Puts the telemetry library into test mode, where it hands each payload to `callback` with `context` and uploads none.
// Nothing is read or started for a user who has not opted in.
std::optional<Refusal> EnterTestMode(int (*callback)(const Veltrane::TaviDesktopSDK::JsonValue& payload, void* context,
                                                     Veltrane::TaviDesktopSDK::JsonValue& reply),
                                     void* context);

// Puts the telemetry library into test mode and runs the catalogue. Returns the program's exit status: 0 when every
// test passed, 1 when one failed or the user has not opted in, the library's own status when it refuses test mode. A
// run that ends early says why in one line on std::cout.
int RunDriver();

// Prints an empty line and the closing one. Returns 0 when every record passed, an empty list included, else 1.
int PrintSummary(const TestResultList& results);

} // namespace Corvane
