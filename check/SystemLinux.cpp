#include <check/System.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace Corvane
{

std::vector<std::string> CommandLineArguments(int count, char** arguments)
{
    // A program can be started without even its name.
    return count > 0 ? std::vector<std::string>(arguments + 1, arguments + count) : std::vector<std::string>();
}

StandardOutputAside::StandardOutputAside() : previous(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0))
{
    static_cast<void>(std::fflush(stdout));
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

StandardOutputAside::~StandardOutputAside()
{
    static_cast<void>(std::fflush(stdout));
    dup2(previous, STDOUT_FILENO);
    close(previous);
}

} // namespace Corvane
