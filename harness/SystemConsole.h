// The system's side of standard output: the console's encoding, and writing bytes.
#pragma once

#include <string_view>
#include <system_error>

namespace Corvane
{

// While it lives, a console or terminal at standard output takes UTF-8; afterwards what it took before. Construct it
// before the program's first output and before any file is opened, else a file opened later could reuse a closed
// stdout's number.
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
