// What Linux and Windows do differently.
#pragma once

#include <string>
#include <vector>

namespace Corvane
{

// The arguments after the program's name, in UTF-8. `count` and `arguments` are main()'s.
std::vector<std::string> CommandLineArguments(int count, char** arguments);

// While it lives, the output of others to standard output goes to the error stream.
class StandardOutputAside
{
public:
    StandardOutputAside();
    ~StandardOutputAside();
    StandardOutputAside(const StandardOutputAside&) = delete;
    StandardOutputAside& operator=(const StandardOutputAside&) = delete;

private:
    int previous; // a descriptor of standard output; negative if that is closed
};

} // namespace Corvane
