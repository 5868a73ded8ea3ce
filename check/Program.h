// One run of the program.
#pragma once

#include <string>
#include <vector>

#include <harness/Console.h>

namespace Corvane
{

// Does what the arguments say and returns the exit status (Status.h). What cannot be written is a line on the error
// stream each.
int RunTaviCheck(std::vector<std::string> arguments, StandardOutput& output);

} // namespace Corvane
