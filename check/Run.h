// Runs the prober's calls and judges what comes of each: exactly one payload, right in every key. What failed once has
// failed, whatever comes after it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <check/Document.h>
#include <check/Judge.h>

namespace Corvane
{

struct CallFault
{
    std::string call; // as in "TrackMeshSize(101, 102)"
    Fault fault;
    std::size_t calls = 1; // in how many calls of the test the key was wrong; the fault is the first one's
};

struct TestOutcome
{
    std::string name; // the catalogue's, as in "MeshSize"
    std::string method;
    std::vector<CallFault> faults;     // none when the test passed; one for each key
    std::vector<std::string> messages; // lines that were printed meanwhile
    std::size_t calls = 0;
    std::size_t payloads = 0;
    double seconds = 0;
};

struct ReceivedPayload
{
    std::string call; // empty: during none
    std::string text; // as the library wrote it
};

using Counts = std::map<std::string, std::size_t>; // of payloads or tests, by a sentence

struct RunOutcome
{
    bool isInTestMode = false;
    std::string productRemark; // of the product file, told first; empty: none
    std::vector<TestOutcome> tests;
    std::vector<std::string> errors; // outside the tests, a sentence each
    Counts productFaults;            // of the product's description, with the number of payloads
    Counts remarks;                  // with the number of tests
    std::vector<ReceivedPayload> payloads;

    std::size_t FailedTests() const;

    // All that is wrong outside the tests; remarks are, when `isStrict`.
    std::vector<std::string> Errors(bool isStrict) const;
};

struct Progress
{
    std::function<void(const RunOutcome&)> onStart;                         // test mode is entered, or refused
    std::function<void(const RunOutcome&, const std::string& name)> onTest; // a test begins
    std::function<void(const TestOutcome&)> onVerdict;                      // and has ended
};

// Puts the library into test mode and proves the methods of these names. Nothing is printed: what the wrapper prints on
// std::cout is kept, and fails the test. For a user who has not opted in nothing is read or started.
RunOutcome RunChecks(const Document& document, const std::filesystem::path& productFile,
                     const std::vector<std::string>& methods, const Progress& progress);

// After the outcome of a run in test mode is told: a payload that still comes ends the process with status 1 and a line
// on the error stream.
void RefuseFurtherPayloads();

} // namespace Corvane
