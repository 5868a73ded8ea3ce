// The system's side of the output: the console's encoding, and writing bytes to standard output.
#pragma once

#include <string_view>
#include <system_error>

namespace Corvane
{

// While it lives, a console at standard output or at the error stream takes UTF-8; afterwards it takes what it took
// before. Construct it before the program's first output and before any file is opened: a file opened earlier could
// have the number of a standard output that is closed.
class SystemConsole
{
public:
    SystemConsole();
    ~SystemConsole(); // NOLINT(performance-trivially-destructible): not every system has nothing to undo
    SystemConsole(const SystemConsole&) = delete;
    SystemConsole& operator=(const SystemConsole&) = delete;

    // Writes all of `text`, with the system's line ends; an output that takes nothing for the moment is waited for.
    // Returns the system's error when writing fails. That the reader has gone away is such an error.
    std::error_code Write(std::string_view text);

private:
    [[maybe_unused]] void* output = nullptr;
    [[maybe_unused]] unsigned previousCodePage = 0;
};

} // namespace Corvane
