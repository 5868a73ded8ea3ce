// What the program tells of a run.
#pragma once

#include <string>

#include <check/Document.h>
#include <check/Run.h>

namespace Corvane
{

// A line for each test, "PASSED  MeshSize" or "FAILED  MeshSize", above its faults; then errors outside the tests, the
// keys that docs/events.json does not name, those of the library's own that did not come, and the numbers of tests that
// passed and failed.
std::string TextReport(const RunOutcome& outcome);

// One JSON document, an object of
//   "document"   of docs/events.json: {"version"}
//   "strict"     whether further and unsent keys are faults
//   "tests"      in order: {"name", "method" (null when docs/events.json has no such test), "verdict" ("passed" or
//                "failed"), "faults" (sentences), "further_keys", "unsent_keys", "messages" (lines printed during the
//                call), "payloads" (how many)}
//   "errors"     outside the tests, sentences
//   "summary"    {"passed", "failed", "errors"}, numbers
std::string JsonReport(const RunOutcome& outcome, const Document& document, bool isStrict);

// A JUnit report: one suite, and a case for each test. Errors outside the tests are one more case, "OutsideTheTests".
std::string JUnitReport(const RunOutcome& outcome);

// The payloads, in order, as a JSON array. Each is as it was received; one that is no JSON text is a string.
std::string PayloadsAsJson(const RunOutcome& outcome);

} // namespace Corvane
