// Picks reporting methods by their names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <check/ReportingMethods.h>

namespace Corvane
{

// Whether `pattern` matches all of `name`: "*" matches any text, "?" one character. The case of ASCII letters is
// ignored.
bool Matches(std::string_view pattern, std::string_view name);

struct Selection
{
    std::vector<std::string> methods;   // their names, in the order of `methods`, each once
    std::vector<std::string> unmatched; // patterns that match nothing
};

// Selects by the names of methods and of their tests in the catalogue; a method that another one prepares has that
// one's name, too. All methods are selected when there are no patterns.
Selection Select(const std::vector<ReportingMethod>& methods, const std::vector<std::string>& patterns);

// The names that are most like `name`, which no test or method has; none when all differ in many letters.
std::vector<std::string> NamesNear(const std::vector<ReportingMethod>& methods, std::string_view name);

} // namespace Corvane
