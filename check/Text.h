// Texts of messages.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace Corvane
{

// JSON text, shortened, with U+FFFD for what is ill-formed.
std::string JsonTextOf(const nlohmann::json& value);

// Well-formed UTF-8, with U+FFFD for what is not.
std::string WellFormed(const std::string& text);

// "1 test", "2 tests".
std::string CountOf(std::size_t count, const std::string& what);

std::string JoinedBy(const std::string& separator, const std::vector<std::string>& texts);

// Null for an empty text.
nlohmann::ordered_json TextOrNull(const std::string& text);

} // namespace Corvane
