// The events of docs/events.json as a list to compare an uploaded whitelist with.
#pragma once

#include <string>

#include <check/Document.h>

namespace Corvane
{

// An array with an object for each event and each name that it can have: "method"; "waypoint", null where there is
// none; "name_from", the parameter by which the caller gives the name, or null; "type"; and "attributes", the members
// of the attribute objects, each with "object" and "key". Of the names that a caller gives it has those of the
// vocabulary.
std::string WhitelistAsJson(const Document& document);

// The same by RFC 4180: a header, and a line for each attribute; an event without attributes has a line without one.
std::string WhitelistAsCsv(const Document& document);

} // namespace Corvane
