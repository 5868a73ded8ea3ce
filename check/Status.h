// The program's exit status.
#pragma once

namespace Corvane::Status
{

constexpr int Passed = 0;
constexpr int Failed = 1; // a test failed, or the library refused test mode, or the user has not opted in
constexpr int Usage = 2;
constexpr int Output = 3; // output could not be written, whatever the outcome of the tests

} // namespace Corvane::Status
