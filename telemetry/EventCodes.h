// The codes of an event: the letter of its type, and the code of its scope with the letter that is sent for it.
#pragma once

#include <string_view>

namespace Corvane
{

// What stands under "type": the letter, by the sub-facet that holds the event's values.
enum class EventType : char
{
    Component = 'C',
    Content = 'D',
    Entitlement = 'S',
};

// The scope codes of our events. What stands under "scope" is the code's letter, see ScopeLetters.
enum class EventScope : int
{
    Entitlement = 4, // "D"
    Content = 6,     // "S"
    Component = 25,  // "C"
};

// The letters of the scope codes, beginning with code 1. Several codes share a letter.
inline constexpr std::string_view ScopeLetters = "SEFDISEFNT" // 1 to 10
                                                 "OXIVALSEFN" // 11 to 20
                                                 "UAOPCDUOAS" // 21 to 30
                                                 "CECCCUDIJ"; // 31 to 39

} // namespace Corvane
