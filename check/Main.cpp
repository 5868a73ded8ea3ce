// The program tavi_check.
#include <cerrno>
#include <fstream>
#include <iostream>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include <check/Captured.h>
#include <check/Document.h>
#include <check/FileNames.h>
#include <check/Judge.h>
#include <check/Options.h>
#include <check/ProductFile.h>
#include <check/Report.h>
#include <check/ReportingMethods.h>
#include <check/Run.h>
#include <check/Selection.h>
#include <check/System.h>
#include <check/Text.h>
#include <check/Whitelist.h>
#include <harness/Console.h>

namespace Corvane
{

namespace
{

void PrintError(const std::string& line)
{
    std::cerr << "tavi_check: " + line + "\n";
}

bool IsWritten(const std::string& what, std::error_code failure)
{
    if (failure)
        PrintError(what + " cannot be written: " + failure.message());
    return !failure;
}

// A write failure overrides `status`.
int Print(const std::string& text, StandardOutput& output, int status)
{
    std::cout << text;
    return IsWritten("standard output", output.Flush()) ? status : Status::Output;
}

bool WriteFile(const std::string& name, const std::string& text)
{
    errno = 0;
    std::ofstream file(PathOf(name), std::ios::binary);
    file << text;
    file.close(); // which flushes
    return IsWritten(name,
                     file ? std::error_code() : std::error_code(errno != 0 ? errno : EIO, std::generic_category()));
}

// A telemetry library that prints must not spoil a document on standard output. While this has a value, what the
// library prints goes to the error stream. It is never destroyed, because the library may print while it is unloaded.
std::optional<StandardOutputAside>& Aside()
{
    static auto& aside = *new std::optional<StandardOutputAside>;
    return aside;
}

int PrintDocument(const std::string& document, int status)
{
    Aside().reset();
    {
        StandardOutput output; // the real one
        status = Print(document, output, status);
    }
    Aside().emplace();
    return status;
}

int RunSelected(const Options& options, const std::vector<std::string>& methods, StandardOutput& output)
{
    // A run that is interrupted leaves a report with a test that is not finished.
    const auto writeJUnit = [&options](const RunOutcome& outcome, const std::string& begunTest) {
        return options.junitFile.empty() ||
               WriteFile(options.junitFile, JUnitReport(outcome, options.strict, begunTest));
    };
    if (!writeJUnit({}, "Start"))
        return Status::Output;
    if (options.json)
        Aside().emplace();

    std::ostream& verdicts = options.json ? std::cerr : std::cout;
    std::set<std::string> reported;
    const Document document = ReadDocument(CompiledInDocument());
    const Progress progress = {[&](const RunOutcome& started)
                               { verdicts << ProductRemarkText(started, options.strict) << std::flush; },
                               [&](const RunOutcome& unfinished, const std::string& test)
                               {
                                   verdicts << test << " ... " << std::flush;
                                   writeJUnit(unfinished, test);
                               },
                               [&](const TestOutcome& test) { verdicts << VerdictText(test, reported) << std::flush; }};
    const RunOutcome outcome = ProveMethods(document, ProductFilePath(), methods, progress);

    const bool hasPassed = outcome.FailedTests().empty() && outcome.Errors(options.strict).empty();
    int status = hasPassed ? Status::Passed : Status::Failed;
    status = options.json ? PrintDocument(JsonReport(outcome, document, options.strict), status)
                          : Print(ClosingText(outcome, options.strict), output, status);
    if (!writeJUnit(outcome, ""))
        status = Status::Output;
    if (!options.payloadsFile.empty() && !WriteFile(options.payloadsFile, PayloadsAsJson(outcome)))
        status = Status::Output;
    if (outcome.isInTestMode)
        RefuseFurtherPayloads();
    return status;
}

int RunCaptured(const Options& options, StandardOutput& output)
{
    std::ifstream file;
    if (options.capturedFile != "-")
        file.open(PathOf(options.capturedFile), std::ios::binary);
    std::istream& input = options.capturedFile != "-" ? file : std::cin;

    const Document document = ReadDocument(CompiledInDocument());
    const Judge judge({}, LibraryTakesEmptyForNone());
    std::vector<CapturedPayload> payloads;
    const auto report = [&](const CapturedPayload& payload)
    {
        if (options.json)
            payloads.push_back(payload);
        else
            std::cout << CapturedText(payload) << std::flush;
    };
    const CapturedOutcome outcome = JudgeCapturedLines(document, judge, options.strict, input, report);
    if (!input.eof() || input.bad())
    {
        PrintError(options.capturedFile + " cannot be read");
        return Status::Usage;
    }
    return Print(options.json ? CapturedJson(outcome, payloads, document, options.strict)
                              : CapturedClosingText(outcome),
                 output, outcome.bad == 0 ? Status::Passed : Status::Failed);
}

std::string NoTest(const std::string& name)
{
    std::string message = "there is no test or method " + name;
    std::string separator = "; is it ";
    for (const std::string& near : NamesNear(ReportingMethods(), name))
        message += std::exchange(separator, " or ") + near;
    return message + (separator == " or " ? "?" : "; --list prints those that there are");
}

int RunProgram(std::vector<std::string> arguments, StandardOutput& output)
{
    const CommandLine commandLine = ReadCommandLine(std::move(arguments));
    const Options& options = commandLine.options;
    if (!commandLine.usageError.empty())
    {
        PrintError(commandLine.usageError + "; --help tells what there is");
        return Status::Usage;
    }
    if (!commandLine.text.empty())
        return Print(commandLine.text, output, Status::Passed);
    if (!options.whitelist.empty())
    {
        const Document document = ReadDocument(CompiledInDocument());
        return Print(options.whitelist == "csv" ? WhitelistAsCsv(document) : WhitelistAsJson(document), output,
                     Status::Passed);
    }
    if (!options.capturedFile.empty())
        return RunCaptured(options, output);

    const Selection selection = Select(ReportingMethods(), options.only);
    if (!selection.unmatched.empty())
    {
        PrintError(NoTest(selection.unmatched.front()));
        return Status::Usage;
    }
    if (!options.list)
        return RunSelected(options, selection.methods, output);
    std::string names;
    for (const std::string& method : selection.methods)
        names += TestName(method) + "\n";
    return Print(names, output, Status::Passed);
}

} // namespace

} // namespace Corvane

int main(int count, char** arguments)
{
    Corvane::StandardOutput output;
    return Corvane::RunProgram(Corvane::CommandLineArguments(count, arguments), output);
}
