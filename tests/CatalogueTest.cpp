// A test for each reporting method: the built program prints "PASSED" below its title and nothing else. One run of the
// program serves all tests of a process.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>

#include <check/ReportingMethods.h>
#include <telemetry/Vocabulary.h> // its constants must exist before the tests, whose methods have some of them

#include "CatalogueModel.h"
#include "Differences.h"
#include "Program.h"

namespace
{

struct ProgramRun
{
    Outcome outcome;
    std::map<std::string, std::string> printed; // by test, below its title
    std::string lastTest;
    bool ended = false; // with a summary
};

ProgramRun RunTheProgram()
{
    ProgramRun run{RunProgram({.program = PathOf(PROGRAM_FILE)}), {}, {}};
    std::string output = run.outcome.output;
    for (const std::string summary : {"\nAll tests passed\n", "\nErrors occured during testing\n"})
    {
        if (!output.ends_with(summary))
            continue;
        output.erase(output.size() - summary.size());
        run.ended = true;
    }
    const std::string mark = "\nTesting ";
    for (std::size_t next = output.find(mark); next != std::string::npos;)
    {
        const std::size_t name = next + mark.size();
        const std::size_t nameEnd = output.find('\n', name) + 1;
        next = output.find(mark, nameEnd);
        run.lastTest = output.substr(name, nameEnd - 1 - name);
        run.printed[run.lastTest] = output.substr(nameEnd, next - nameEnd);
    }
    return run;
}

const ProgramRun& TheRun()
{
    static const ProgramRun run = RunTheProgram();
    return run;
}

std::size_t Verdicts(const std::string& printed)
{
    std::size_t count = 0;
    for (const std::string verdict : {"PASSED\n", "FAILED\n"})
    {
        for (std::size_t at = printed.find(verdict); at != std::string::npos; at = printed.find(verdict, at + 1))
            ++count;
    }
    return count;
}

// Begins with the cause; empty if `printed` is as it must be.
std::string Fault(const std::string& name, const std::string& printed)
{
    const ProgramRun& run = TheRun();
    const std::string shown = "The program prints:\n" + FirstLines(printed + run.outcome.errors, 20);
    if (!run.ended && name == run.lastTest)
        return "the program ends here with exit status " + std::to_string(run.outcome.status) + ".\n" + shown;
    if (printed == "PASSED\n")
        return "";
    if (Verdicts(printed) == 0)
        return "no event comes back: there is no verdict.\n" + shown;
    if (Verdicts(printed) > 1)
        return "more than one event is sent.\n" + shown;
    for (const CatalogueTest& test : TheCatalogue())
    {
        if (Corvane::TestName(test.method) == name && !test.payload.is_null())
            return "what is sent differs from what this test expects:\n" + DifferencesOf(test) + "\n" + shown;
    }
    return "what is sent differs from what this test expects.\n" + shown;
}

class MethodTest : public testing::Test
{
public:
    explicit MethodTest(const std::string& method) : name(Corvane::TestName(method)) {}

private:
    void TestBody() override
    {
        const ProgramRun& run = TheRun();
        const auto found = run.printed.find(name);
        if (found == run.printed.end() && !run.ended && !run.lastTest.empty())
            GTEST_SKIP() << "The program ends in the test " << run.lastTest << ", before this one.";
        std::string fault = "there is no such test, or the program ends before it with exit status " +
                            std::to_string(run.outcome.status) + ".\n" + FirstLines(run.outcome.errors, 20);
        if (found != run.printed.end())
            fault = Fault(name, found->second);
        if (!fault.empty())
            ADD_FAILURE_AT(SOURCE_DIR "/harness/Catalogue.cpp", -1) << name << ": " << fault; // no line of it
    }

    std::string name;
};

bool RegisterMethodTests()
{
    for (const Corvane::ReportingMethod& method : Corvane::ReportingMethods())
        testing::RegisterTest("Catalogue", method.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [&method] { return new MethodTest(method.name); });
    return true;
}

} // namespace

const bool methodTestsAreRegistered = RegisterMethodTests();
