// Judges payloads that a host recorded, one JSON text a line. The arguments of their calls are not known, so that
// values are judged by their form.
#pragma once

#include <cstddef>
#include <functional>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include <check/Document.h>
#include <check/Judge.h>

namespace Corvane
{

struct CapturedPayload
{
    std::size_t line = 0;             // counted from 1
    std::vector<std::string> methods; // whose event it is; several when it fits them alike, none when it fits none
    std::vector<std::string> faults;  // sentences; none when it is good
    std::vector<std::string> remarks; // sentences
};

struct CapturedOutcome
{
    std::size_t good = 0;
    std::size_t bad = 0;
    std::map<std::string, std::size_t> events;  // how many of each came, by method; 0 of those that never did
    std::map<std::string, std::size_t> remarks; // with the number of payloads
};

// Hands each line that is not blank to `onPayload` once it is judged. `isStrict` makes remarks faults.
CapturedOutcome JudgeCapturedLines(const Document& document, const Judge& judge, bool isStrict, std::istream& input,
                                   const std::function<void(const CapturedPayload&)>& onPayload);

// A line, "line 3: good, TrackMeshSize", above what is wrong with a bad one.
std::string CapturedText(const CapturedPayload& payload);

// How many of each event came and which never, remarks and, as the last line, the numbers of good and bad payloads.
std::string CapturedClosingText(const CapturedOutcome& outcome);

// One JSON document, an object of
//   "document"  of docs/events.json: {"version"}
//   "strict"    whether remarks are faults
//   "payloads"  in order: {"line", "methods", "verdict" ("good" or "bad"), "faults", "remarks" (sentences)}
//   "events"    how many of each came, by method
//   "summary"   {"good", "bad"}, numbers
std::string CapturedJson(const CapturedOutcome& outcome, const std::vector<CapturedPayload>& payloads,
                         const Document& document, bool isStrict);

} // namespace Corvane
