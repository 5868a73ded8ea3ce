// Compares a payload with what docs/events.json says of its event.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Document.h>

namespace Corvane
{

struct PayloadFindings
{
    std::vector<std::string> faults;      // a sentence each
    std::vector<std::string> furtherKeys; // top-level keys that the event does not have, ascending; no fault
    std::vector<std::string> unsentKeys;  // of the library's own, in the document's order; no fault
};

// Every key of the event that the wrapper writes must be there with its type and value; of the product's description
// and the edit timer only the type is compared. An object that holds keys of the event holds no others.
PayloadFindings CheckPayload(const nlohmann::json& payload, const DocumentEvent& event);

// JSON text for messages: what is ill-formed in it comes out as U+FFFD.
std::string JsonTextOf(const nlohmann::json& value);

} // namespace Corvane
