// Picks tests by their names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Corvane
{

// Whether the whole name is what the pattern says, in which "*" stands for any text and "?" for one character. Case
// counts.
bool Matches(std::string_view pattern, std::string_view name);

struct Selection
{
    std::vector<std::string> names;     // in the order of all names, each once
    std::vector<std::string> unmatched; // patterns that no name is like
};

// All names when there are no patterns.
Selection Select(const std::vector<std::string>& names, const std::vector<std::string>& patterns);

} // namespace Corvane
