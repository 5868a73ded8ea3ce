// A test for each reporting method: what the program, as it was built, prints of the method. One run of the program
// serves all the tests of a process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <check/ReportingMethods.h>
#include <telemetry/Vocabulary.h> // its constants must exist before the tests, whose methods have some of them

#include "CatalogueModel.h"
#include "Differences.h"
#include "Program.h"
#include "Utf8Path.h"

namespace
{

struct ProgramRun
{
    Outcome outcome;
    std::string beforeTheFirstTitle;
    std::map<std::string, std::string> parts; // what is printed below each title
    std::string lastTitle;
    bool ended = false; // with a summary
};

ProgramRun RunTheProgram()
{
    ProgramRun run{RunProgram({.program = PathOf(PROGRAM_FILE)}), {}, {}, {}};
    const std::set<std::string> summaries = {"All tests passed", "Errors occured during testing"};
    std::string* part = &run.beforeTheFirstTitle;
    std::istringstream lines(run.outcome.output);
    for (std::string line, emptyLines; std::getline(lines, line);)
    {
        run.ended = summaries.contains(line);
        if (line.starts_with("Testing "))
        {
            run.lastTitle = line;
            part = &run.parts[line];
        }
        else if (line.empty())
        {
            emptyLines += "\n";
            continue; // it may belong to the next title
        }
        else if (!run.ended)
        {
            *part += emptyLines + line + "\n";
        }
        emptyLines.clear();
    }
    return run;
}

const ProgramRun& TheRun()
{
    static const ProgramRun run = RunTheProgram();
    return run;
}

std::size_t Verdicts(const std::string& part)
{
    std::size_t verdicts = 0;
    std::istringstream lines(part);
    for (std::string line; std::getline(lines, line);)
        verdicts += line == "PASSED" || line == "FAILED" ? 1 : 0;
    return verdicts;
}

// Which members differ, a line each. For this the catalogue is run in this process, too, which must not end there.
std::string WrongMembers(const std::string& method)
{
    const std::vector<CatalogueTest>& tests = TheCatalogue();
    const auto test = std::find_if(tests.begin(), tests.end(),
                                   [&method](const CatalogueTest& candidate) { return candidate.method == method; });
    return test != tests.end() && !test->payload.is_null() ? DifferencesOf(*test) + "\n" : "";
}

// What is wrong, in a sentence. `part` is null when the test's title was not printed.
std::string Sentence(const std::string& method, const std::string& title, const std::string* part)
{
    const ProgramRun& run = TheRun();
    const std::string ending = "the program ended with exit status " + std::to_string(run.outcome.status) +
                               (run.lastTitle.empty() ? " before the first test." : " in \"" + run.lastTitle + "\".");
    if (part == nullptr && !run.ended)
        return method + " is not reached: " + ending;
    if (part == nullptr)
        return method + " is not called: \"" + title + "\" is not printed.";
    if (!run.ended && title == run.lastTitle)
        return method + " does not return: " + ending;
    if (Verdicts(*part) == 0)
        return method + " sends nothing that comes back: there is no verdict.";
    if (Verdicts(*part) > 1)
        return method + " sends more than one event.";
    return method + " does not send what this test expects.";
}

// Empty when the program prints of the method what it must.
std::string Fault(const std::string& method, const std::string& title)
{
    const ProgramRun& run = TheRun();
    const auto found = run.parts.find(title);
    const std::string* const part = found != run.parts.end() ? &found->second : nullptr;
    if (part != nullptr && *part == "PASSED\n" && (run.ended || title != run.lastTitle))
        return "";

    std::string fault = Sentence(method, title, part) + "\n";
    if (part != nullptr && run.ended && Verdicts(*part) == 1)
        fault += WrongMembers(method);
    const std::string printed = (part != nullptr ? *part : run.beforeTheFirstTitle) + run.outcome.errors;
    if (!printed.empty())
        fault += "The program prints:\n" + FirstLines(printed, 40);
    return fault;
}

class MethodTest : public testing::Test
{
public:
    explicit MethodTest(const Corvane::ReportingMethod& testedMethod) : method(testedMethod) {}

private:
    void TestBody() override
    {
        const std::string fault = Fault(method.name, TitleOf(method));
        if (!fault.empty())
            ADD_FAILURE_AT(SOURCE_DIR "/harness/Catalogue.cpp", -1) << fault; // no line of it
    }

    const Corvane::ReportingMethod& method;
};

bool RegisterMethodTests()
{
    for (const Corvane::ReportingMethod& method : Corvane::ReportingMethods())
        testing::RegisterTest("Catalogue", method.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [&method] { return new MethodTest(method); });
    return true;
}

} // namespace

const bool methodTestsAreRegistered = RegisterMethodTests();
