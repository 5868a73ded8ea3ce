#include <check/CommandLineArguments.h>

namespace Corvane
{

std::vector<std::string> CommandLineArguments(int count, char** arguments)
{
    // A program can be started without even its name.
    return count > 0 ? std::vector<std::string>(arguments + 1, arguments + count) : std::vector<std::string>();
}

} // namespace Corvane
