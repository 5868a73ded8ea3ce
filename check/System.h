// What each system does in a way of its own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Corvane
{

// The arguments after the program's name, in UTF-8. `count` and `arguments` are main()'s.
std::vector<std::string> CommandLineArguments(int count, char** arguments);

// The folder of the running program's file; std::nullopt when the system does not tell.
std::optional<std::filesystem::path> ProgramFolder();

// While it lives, what code of others writes to standard output goes to the error stream.
class StandardOutputAside
{
public:
    StandardOutputAside();
    ~StandardOutputAside();
    StandardOutputAside(const StandardOutputAside&) = delete;
    StandardOutputAside& operator=(const StandardOutputAside&) = delete;

private:
    int kept; // a descriptor of standard output; negative when that is closed
};

} // namespace Corvane
