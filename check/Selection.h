// Picks reporting methods by their names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <check/ReportingMethods.h>

namespace Corvane
{

// Whether the whole name is what the pattern says, in which "*" stands for any text and "?" for one character. The case
// of ASCII letters does not count.
bool Matches(std::string_view pattern, std::string_view name);

struct Selection
{
    std::vector<std::string> methods;   // their names, in the order of all, each once
    std::vector<std::string> unmatched; // patterns that no name is like
};

// By the names of methods, and of their tests in the catalogue; a method that another one prepares has that one's name,
// too. All methods when there are no patterns.
Selection Select(const std::vector<ReportingMethod>& methods, const std::vector<std::string>& patterns);

// The names that differ least from one that there is not, in few letters; often none.
std::vector<std::string> NamesNear(const std::vector<ReportingMethod>& methods, std::string_view name);

} // namespace Corvane
