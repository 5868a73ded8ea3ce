// Makes the prober's calls and judges the payloads: each call must send exactly one, right in every key. What has
// failed once stays failed.
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
    std::size_t calls = 1; // the number of calls in which the key was wrong; `fault` is the first one's
};

struct TestOutcome
{
    std::string name; // the catalogue's, as in "MeshSize"
    std::string method;
    std::vector<CallFault> faults;     // empty when the test passed; one for each key
    std::vector<std::string> messages; // lines printed during the calls
    std::size_t calls = 0;
    std::size_t payloads = 0;
    double seconds = 0;
};

struct ReceivedPayload
{
    std::string call; // empty: the payload came during no call
    std::string text; // as the library wrote it
};

using Counts = std::map<std::string, std::size_t>; // numbers of payloads or tests, by message

struct RunOutcome
{
    bool isInTestMode = false;
    std::string productRemark; // on the product file; empty: none
    std::vector<TestOutcome> tests;
    std::vector<std::string> errors; // faults that belong to no test
    Counts productFaults;            // faults of the product's description, with the number of payloads
    Counts remarks;                  // with the number of tests
    std::vector<ReceivedPayload> payloads;

    std::vector<std::string> FailedTests() const; // their names

    // All errors that belong to no test, with the remarks when `isStrict`.
    std::vector<std::string> Errors(bool isStrict) const;
};

struct Progress
{
    std::function<void(const RunOutcome&)> onStart; // the library has entered test mode, or refused it
    std::function<void(const RunOutcome&, const std::string& name)> onTest; // before a test
    std::function<void(const TestOutcome&)> onVerdict;                      // after it
};

// Puts the library into test mode and proves the methods of these names. Prints nothing: a line that the wrapper prints
// on std::cout is a fault. Neither reads nor starts anything if the user has not opted in.
RunOutcome ProveMethods(const Document& document, const std::filesystem::path& productFile,
                        const std::vector<std::string>& methods, const Progress& progress);

// Call after reporting: a later payload ends the process with status 1 and a line on the error stream.
void RefuseFurtherPayloads();

} // namespace Corvane
