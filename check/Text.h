// Texts of messages.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace Corvane
{

// JSON text, shortened; what is ill-formed in it comes out as U+FFFD.
std::string JsonTextOf(const nlohmann::json& value);

// Well-formed UTF-8, with U+FFFD for what is not.
std::string WellFormed(const std::string& text);

// "1 test", "2 tests".
std::string CountOf(std::size_t count, const std::string& what);

std::string JoinedBy(const std::string& separator, const std::vector<std::string>& texts);

} // namespace Corvane
