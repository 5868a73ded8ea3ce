// One run of the test program: opt-in, test mode, catalogue, summary.
#pragma once

namespace Corvane
{

// Puts the telemetry library into test mode and runs the catalogue. Returns the program's exit status: 0 when every
// test passed, 1 when one failed or the user has not opted in, the library's own status when it refuses test mode. A
// run that ends early says why in one line on std::cout. The library keeps a callback whose context is gone afterwards:
// before any further event another must be registered.
int RunDriver();

} // namespace Corvane
