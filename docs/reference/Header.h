// What the wrapper's header declares, read from its source.
#pragma once

#include <string>
#include <vector>

struct Declaration
{
    std::string name;
    std::string signature;               // laid out as in the header
    std::vector<std::string> parameters; // their names
    std::string heading;                 // the first sentence of the comment above it or above its group
    std::string note;                    // what the comment says beyond it
};

// The public methods of the class that return nothing, in order.
std::vector<Declaration> ReadMethods(const std::string& header);
