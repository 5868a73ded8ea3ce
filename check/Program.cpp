#include <check/Program.h>

#include <iostream>
#include <system_error>
#include <utility>

#include <check/Document.h>
#include <check/Options.h>
#include <check/OutputFile.h>
#include <check/Report.h>
#include <check/Run.h>
#include <check/Selection.h>
#include <check/Status.h>
#include <check/Whitelist.h>

namespace Corvane
{

namespace
{

bool IsWritten(const std::string& what, std::error_code failure)
{
    if (failure)
        std::cerr << "tavi_check: " + what + " cannot be written: " + failure.message() + "\n";
    return !failure;
}

// Output comes before `status`: an outcome that is not told is of no use, and what became of the tests shows elsewhere.
int Print(const std::string& text, StandardOutput& output, int status)
{
    std::cout << text;
    return IsWritten("standard output", output.Flush()) ? status : Status::Output;
}

std::string Lines(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += name + "\n";
    return text;
}

int RunSelected(const Options& options, const std::vector<std::string>& names, StandardOutput& output)
{
    const Document document = ReadDocument(CompiledInDocument());
    const RunOutcome outcome = RunChecks(document, names, options.strict);
    int status = Print(options.json ? JsonReport(outcome, document, options.strict) : TextReport(outcome), output,
                       outcome.Passed() ? Status::Passed : Status::Failed);
    const auto write = [&status](const std::string& file, const std::string& text)
    {
        if (!file.empty() && !IsWritten(file, WriteOutputFile(file, text)))
            status = Status::Output;
    };
    write(options.junitFile, JUnitReport(outcome));
    write(options.payloadsFile, PayloadsAsJson(outcome));
    RefuseFurtherPayloads();
    return status;
}

} // namespace

int RunTaviCheck(std::vector<std::string> arguments, StandardOutput& output)
{
    const CommandLine commandLine = ReadCommandLine(std::move(arguments));
    const Options& options = commandLine.options;
    if (!commandLine.usageError.empty())
    {
        std::cerr << "tavi_check: " + commandLine.usageError + "; --help tells what there is\n";
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

    const Selection selection = Select(TestNames(), options.only);
    if (!selection.unmatched.empty())
    {
        std::cerr << "tavi_check: there is no test " + selection.unmatched.front() + "; there are\n" +
                         Lines(TestNames());
        return Status::Usage;
    }
    if (options.list)
        return Print(Lines(selection.names), output, Status::Passed);
    return RunSelected(options, selection.names, output);
}

} // namespace Corvane
