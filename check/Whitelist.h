// The events of docs/events.json as a list to compare an uploaded whitelist with.
#pragma once

#include <string>

#include <check/Document.h>

namespace Corvane
{

// An array with an object for each event and each name that it can have: "method"; "waypoint", null where there is
// none; "name_from", the parameter by which the caller gives the name, or null; "type"; and "attributes", the members
// of the attribute objects, each with "object" and "key". An event whose name the caller gives is listed under the
// names of the vocabulary.
std::string WhitelistAsJson(const Document& document);

// The same as lines of CSV (RFC 4180): a header, and a line for each attribute; an event without attributes has one
// line, where these fields are empty. No field needs quotes: each is a name.
std::string WhitelistAsCsv(const Document& document);

} // namespace Corvane
