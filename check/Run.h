// Runs the tests of the catalogue by stricter rules than cvtavi_test: each call sends exactly one payload, and that is
// compared whole with docs/events.json. What failed once has failed, whatever comes after it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <check/Document.h>

namespace Corvane
{

struct TestOutcome
{
    std::string name;
    std::string method;                   // empty when docs/events.json has no event of the test
    std::vector<std::string> faults;      // a sentence each; none when the test passed
    std::vector<std::string> furtherKeys; // top-level keys that docs/events.json does not name, ascending
    std::vector<std::string> unsentKeys;  // the library's own that docs/events.json names and that did not come
    std::vector<std::string> messages;    // lines that were printed meanwhile
    std::size_t payloads = 0;
    double seconds = 0;
};

struct RunOutcome
{
    std::vector<TestOutcome> tests;
    std::vector<std::string> errors;   // outside the tests, a sentence each
    std::vector<std::string> payloads; // all that were received, in order, as the library wrote them

    std::size_t FailedTests() const;
    bool Passed() const { return errors.empty() && FailedTests() == 0; }
};

// Those of the catalogue, in order.
std::vector<std::string> TestNames();

// Puts the library into test mode and runs the tests of these names. `isStrict` makes further and unsent keys faults.
// Nothing is printed: what the wrapper and the library print on std::cout is kept. The callback stays registered, and
// its context is never destroyed: the library may call it until the process ends.
RunOutcome RunChecks(const Document& document, const std::vector<std::string>& names, bool isStrict);

// After the outcome is told: a payload that still comes ends the process with status 1 and a line on the error stream.
void RefuseFurtherPayloads();

} // namespace Corvane
