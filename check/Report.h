// What the program tells of a run.
#pragma once

#include <set>
#include <string>

#include <check/Document.h>
#include <check/Run.h>

namespace Corvane
{

// The line on the product file, which stands first; empty when there is nothing to say of it.
std::string ProductRemarkText(const RunOutcome& outcome, bool isStrict);

// What follows a test's name: its verdict, and its faults below it. A fault that is in `told` already is named only;
// the test's faults are added there.
std::string VerdictText(const TestOutcome& test, std::set<std::string>& told);

// Remarks, errors outside the tests, the names of failed tests and, as the last line, the numbers of tests that passed
// and failed. `isStrict` calls remarks errors.
std::string ClosingText(const RunOutcome& outcome, bool isStrict);

// One JSON document, an object of
//   "document"   of docs/events.json: {"version"}
//   "strict"     whether a remark is an error, too
//   "tests"      in order: {"name", "method", "verdict" ("passed" or "failed"), "faults", "messages" (lines printed
//                during the calls), "calls", "payloads" (numbers)}; a fault is {"call", "key", "expected", "sent",
//                "message" (a sentence), "calls" (in how many)}, in which null stands for what there is not
//   "errors"     outside the tests, sentences
//   "remarks"    {"message", "tests" (in how many; null: not of a test)}
//   "summary"    {"passed", "failed", "errors"}, numbers
std::string JsonReport(const RunOutcome& outcome, const Document& document, bool isStrict);

// A JUnit report: one suite, and a case for each test. Errors outside the tests are one more case, "OutsideTheTests".
// So is a test that has begun: an error, "not finished".
std::string JUnitReport(const RunOutcome& outcome, bool isStrict, const std::string& begunTest = "");

// The payloads, in order, as a JSON array of {"call", "payload"}. Each is as it was received; one that is no JSON text
// is a string.
std::string PayloadsAsJson(const RunOutcome& outcome);

} // namespace Corvane
