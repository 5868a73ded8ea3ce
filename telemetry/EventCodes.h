// The letters of the events' types and the codes of their scopes.
#pragma once

#include <string_view>

// The letters that we send under "type", by the sub-facet that holds the event's values.
namespace Corvane::EventTypes
{

inline constexpr const char* Component = "C";
inline constexpr const char* Content = "D";
inline constexpr const char* Entitlement = "S";

} // namespace Corvane::EventTypes

// The scope codes that we send; "scope" gets the code's letter.
namespace Corvane::EventScopes
{

inline constexpr int Component = 25;  // "C"
inline constexpr int Content = 6;     // "S"
inline constexpr int Entitlement = 4; // "D"

} // namespace Corvane::EventScopes

namespace Corvane
{

// The letters of the scope codes, beginning with code 1. Several codes share a letter.
inline constexpr std::string_view ScopeLetters = "SEFDISEFNT" // 1 to 10
                                                 "OXIVALSEFN" // 11 to 20
                                                 "UAOPCDUOAS" // 21 to 30
                                                 "CECCCUDIJ"; // 31 to 39

} // namespace Corvane
