// The texts of a run's outcome.
#pragma once

#include <set>
#include <string>

#include <check/Document.h>
#include <check/Run.h>

namespace Corvane
{

// The first line, on the product file; empty when the file is good.
std::string ProductRemarkText(const RunOutcome& outcome, bool isStrict);

// A test's verdict, which follows its name, and its faults below. A fault that is already in `reported` is only named;
// the test's faults are added to `reported`.
std::string VerdictText(const TestOutcome& test, std::set<std::string>& reported);

// Remarks, errors that belong to no test, the names of failed tests and, as the last line, the numbers of tests that
// passed and failed. `isStrict` makes remarks errors.
std::string ClosingText(const RunOutcome& outcome, bool isStrict);

// One JSON document, an object of
//   "document"   of docs/events.json: {"version"}
//   "strict"     whether remarks are errors
//   "tests"      in order: {"name", "method", "verdict" ("passed" or "failed"), "faults", "messages" (lines printed
//                during the calls), "calls", "payloads" (numbers)}; a fault is {"call", "key", "expected", "sent",
//                "message", "calls" (in how many)}, in which null means none
//   "errors"     that belong to no test, texts
//   "remarks"    {"message", "tests" (in how many; null: belongs to no test)}
//   "summary"    {"passed", "failed", "errors"}, numbers
std::string JsonReport(const RunOutcome& outcome, const Document& document, bool isStrict);

// A JUnit report: one suite with a case for each test. Errors that belong to no test are one more case,
// "OutsideTheTests". A test that has begun is a case with the error "not finished".
std::string JUnitReport(const RunOutcome& outcome, bool isStrict, const std::string& begunTest = "");

// The payloads, in order, as a JSON array of {"call", "payload"}. Each is as it was received; a payload that is no
// JSON text is a string.
std::string PayloadsAsJson(const RunOutcome& outcome);

} // namespace Corvane
