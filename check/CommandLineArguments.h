// The arguments that the program was started with.
#pragma once

#include <string>
#include <vector>

namespace Corvane
{

// Those after the program's name, in UTF-8. `count` and `arguments` are main()'s.
std::vector<std::string> CommandLineArguments(int count, char** arguments);

} // namespace Corvane
