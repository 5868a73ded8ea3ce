// Judges payloads that a host recorded, one JSON text a line. Values are judged by their form, because the arguments of
// the calls are not known.
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
    std::vector<std::string> methods; // of the event that it fits best; several when it fits them alike
    std::vector<std::string> faults;  // empty when it is good
    std::vector<std::string> remarks;
};

struct CapturedOutcome
{
    std::size_t good = 0;
    std::size_t bad = 0;
    std::map<std::string, std::size_t> events;  // how many of each came, by method; 0 for those that never came
    std::map<std::string, std::size_t> remarks; // with the number of payloads
};

// Calls `onPayload` for each line that is not blank once it is judged. `isStrict` makes remarks faults.
CapturedOutcome JudgeCapturedLines(const Document& document, const Judge& judge, bool isStrict, std::istream& input,
                                   const std::function<void(const CapturedPayload&)>& onPayload);

// "line 3: good, TrackMeshSize", and below it the faults of a bad payload, a line each.
std::string CapturedText(const CapturedPayload& payload);

// Which events came how often and which never, remarks and, as the last line, the numbers of good and bad payloads.
std::string CapturedClosingText(const CapturedOutcome& outcome);

// One JSON document, an object of
//   "document"  of docs/events.json: {"version"}
//   "strict"    whether remarks are faults
//   "payloads"  in order: {"line", "methods", "verdict" ("good" or "bad"), "faults", "remarks"}
//   "events"    how many of each came, by method
//   "summary"   {"good", "bad"}, numbers
std::string CapturedJson(const CapturedOutcome& outcome, const std::vector<CapturedPayload>& payloads,
                         const Document& document, bool isStrict);

} // namespace Corvane
