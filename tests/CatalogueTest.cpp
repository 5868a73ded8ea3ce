// A test for each reporting method that the program calls: what the program, as it was built, prints of the method. One
// run of the program serves all the tests of a process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "CatalogueModel.h"
#include "CatalogueSource.h"
#include "Differences.h"
#include "Program.h"
#include "Utf8Path.h"

namespace
{

const char* const CatalogueFile = SOURCE_DIR "/harness/Catalogue.cpp";

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
std::string WrongMembers(const std::string& title)
{
    const std::vector<CatalogueTest>& tests = TheCatalogue();
    const auto test = std::find_if(tests.begin(), tests.end(),
                                   [&title](const CatalogueTest& candidate) { return candidate.title == title; });
    return test != tests.end() && !test->payload.is_null() ? DifferencesOf(*test) + "\n" : "";
}

// What is wrong, in a sentence. `part` is null when the test's title was not printed.
std::string Sentence(const CatalogueCall& call, const std::string* part)
{
    const ProgramRun& run = TheRun();
    const std::string ending = "the program ended with exit status " + std::to_string(run.outcome.status) +
                               (run.lastTitle.empty() ? " before the first test." : " in \"" + run.lastTitle + "\".");
    if (part == nullptr && !run.ended)
        return call.method + " is not reached: " + ending;
    if (part == nullptr)
        return call.method + " is not called: \"" + call.title + "\" is not printed.";
    if (!run.ended && call.title == run.lastTitle)
        return call.method + " does not return: " + ending;
    if (Verdicts(*part) == 0)
        return call.method + " sends nothing that comes back: there is no verdict.";
    if (Verdicts(*part) > 1)
        return call.method + " sends more than one event.";
    return call.method + " does not send what this test expects.";
}

// Empty when the program prints of the call what it must.
std::string Fault(const CatalogueCall& call)
{
    const ProgramRun& run = TheRun();
    const auto found = run.parts.find(call.title);
    const std::string* const part = found != run.parts.end() ? &found->second : nullptr;
    if (part != nullptr && *part == "PASSED\n" && (run.ended || call.title != run.lastTitle))
        return "";

    std::string fault = Sentence(call, part) + "\n";
    if (part != nullptr && run.ended && Verdicts(*part) == 1)
        fault += WrongMembers(call.title);
    const std::string printed = (part != nullptr ? *part : run.beforeTheFirstTitle) + run.outcome.errors;
    if (!printed.empty())
        fault += "The program prints:\n" + FirstLines(printed, 40);
    return fault;
}

class Catalogue : public testing::Test
{
};

class MethodTest : public Catalogue
{
public:
    explicit MethodTest(CatalogueCall testedCall) : call(std::move(testedCall)) {}

private:
    void TestBody() override
    {
        const std::string fault = Fault(call);
        if (!fault.empty())
            ADD_FAILURE_AT(CatalogueFile, call.line) << fault;
    }

    CatalogueCall call;
};

bool RegisterMethodTests()
{
    for (const CatalogueCall& call : ReadCatalogueSource())
        testing::RegisterTest("Catalogue", call.method.c_str(), nullptr, nullptr, CatalogueFile, call.line,
                              [call]() -> Catalogue* { return new MethodTest(call); });
    return true;
}

// Calls of the wrapper, by method.
std::map<std::string, int> CallsInTheCatalogue()
{
    std::map<std::string, int> calls;
    for (const CatalogueCall& test : ReadCatalogueSource())
    {
        for (const std::string& method : test.calls)
            ++calls[method];
    }
    return calls;
}

// The wrapper's public methods, each with its line in the header.
std::map<std::string, int> PublicMethods(const std::string& header)
{
    std::map<std::string, int> methods;
    const auto begin = header.begin() + static_cast<std::ptrdiff_t>(header.find("public:"));
    const auto end = header.begin() + static_cast<std::ptrdiff_t>(header.find("private:"));
    const std::regex declaration(R"(\n    (?:static )?[\w:]+[ &]+(\w+)\()");
    for (std::sregex_iterator match(begin, end, declaration), none; match != none; ++match)
        methods[(*match)[1]] = 1 + static_cast<int>(std::count(header.begin(), (*match)[1].first, '\n'));
    return methods;
}

} // namespace

TEST_F(Catalogue, CallsEveryPublicReportingMethodOnce)
{
    const char* const header = SOURCE_DIR "/telemetry/CorvaneTavi.h";
    const std::map<std::string, int> methods = PublicMethods(ReadFile(PathOf(header)));
    std::map<std::string, int> calls = CallsInTheCatalogue();
    for (const auto& [method, count] : calls)
        EXPECT_TRUE(methods.contains(method)) << method << " is called, and no public declaration of it is found.";
    for (const auto& [method, line] : methods)
    {
        // These report nothing, or are what the others report through.
        if (method == "Instance" || method == "StartSdk" || method == "GetProductKey" || method == "TrackWaypoint")
            continue;
        if (calls[method] == 0)
            ADD_FAILURE_AT(header, line) << method << " has no test in harness/Catalogue.cpp.";
        // Of two documents one is reported.
        else if (calls[method] != (method == "AddDocument" ? 2 : 1))
            ADD_FAILURE_AT(header, line) << method << " is called " << calls[method]
                                         << " times in harness/Catalogue.cpp.";
    }
}

TEST_F(Catalogue, TheKeptOutputHasTheTitlesOfTheTests)
{
    std::set<std::string> kept;
    std::istringstream lines(GoodRun());
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with("Testing "))
            kept.insert(line);
    }
    const std::string whatToDo = ": run scripts/reference.sh, and commit what it writes.";
    for (const CatalogueCall& call : ReadCatalogueSource())
    {
        if (kept.erase(call.title) == 0)
            ADD_FAILURE_AT(CatalogueFile, call.line)
                << "tests/data/good_run.txt lacks \"" << call.title << "\"" << whatToDo;
    }
    for (const std::string& title : kept)
        ADD_FAILURE() << "tests/data/good_run.txt has \"" << title << "\", which no test prints" << whatToDo;
}

const bool methodTestsAreRegistered = RegisterMethodTests();
