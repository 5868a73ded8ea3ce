#include <check/Options.h>

#include <algorithm>
#include <utility>

#include <CLI/CLI.hpp>

#include <check/FileNames.h>

namespace Corvane
{

namespace
{

// Lines of at most 80 columns, and the same text with any version of CLI11.
const char* const Help =
    R"(Usage: tavi_check [OPTION]...

Calls every reporting method of the telemetry wrapper with arguments of all
kinds and judges the payloads by docs/events.json: each call sends exactly one,
with every key at its place and the value that the arguments give. Nothing is
uploaded.

  --only NAME...        prove these alone: names of tests or methods, in any
                        case; "*" stands for any text, "?" for a character
  --list                print the tests' names and exit
  --strict              fail for what is only a remark otherwise: a top-level
                        key that docs/events.json lacks; an edit timer or a
                        product's description that is absent or has another
                        form; a product that is "undefined"; a library that
                        takes "" for no text, or withholds events whose names
                        are not in the vocabulary
  --json                print the outcome as one JSON document, and verdicts on
                        the error stream
  --junit FILE          write a JUnit report as well
  --payloads FILE       write the payloads with their calls as a JSON array
  --whitelist json|csv  print every event that can be sent with its attributes,
                        to compare a whitelist with, and exit; a name that the
                        caller gives is marked by the parameter's name
  --captured FILE       judge the payloads that a host recorded, one JSON text a
                        line, "-" being standard input; recorded payloads hold
                        serial numbers and names of files in clear text
  -h, --help            print this and exit
  --version             print the version and exit

Examples:
  tavi_check --only 'Mesh*' FileInput
  example_host --print | tavi_check --captured -

Exit status: 0 all passed, or all payloads are good; 1 not all, or the library
refused test mode, or the user has not opted in; 2 the arguments are wrong, or
captured payloads cannot be read; 3 output could not be written.
)";

// An argument that is quoted in the text may have line ends.
std::string OneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char character) { return character == '\n' || character == '\r'; }, ' ');
    return text;
}

// Empty when `name` is good as the name of a file.
std::string FileNameError(const std::string& name)
{
    if (name.empty())
        return "the name of a file is empty";
    if (name.starts_with("-"))
        return name + " is an option where the name of a file belongs";
    return "";
}

bool IsOneFile(const std::string& one, const std::string& other)
{
    std::error_code failure;
    const auto whole = [&failure](const std::string& name)
    { return std::filesystem::weakly_canonical(std::filesystem::absolute(PathOf(name), failure), failure); };
    return whole(one) == whole(other) || std::filesystem::equivalent(whole(one), whole(other), failure);
}

} // namespace

CommandLine ReadCommandLine(std::vector<std::string> arguments)
{
    CommandLine commandLine;
    Options& options = commandLine.options;
    CLI::App app;
    app.allow_windows_style_options(false); // the same arguments on every system
    app.set_help_flag("-h,--help");
    app.set_version_flag("--version", "tavi_check " CORVANE_VERSION);
    CLI::Option* const only = app.add_option("--only", options.only);
    CLI::Option* const list = app.add_flag("--list", options.list);
    CLI::Option* const whitelist =
        app.add_option("--whitelist", options.whitelist)->check(CLI::IsMember({"json", "csv"}));
    CLI::Option* const strict = app.add_flag("--strict", options.strict);
    CLI::Option* const json = app.add_flag("--json", options.json);
    CLI::Option* const junit = app.add_option("--junit", options.junitFile);
    CLI::Option* const payloads = app.add_option("--payloads", options.payloadsFile);
    CLI::Option* const captured = app.add_option("--captured", options.capturedFile);
    junit->check(FileNameError);
    payloads->check(FileNameError);
    captured->check([](const std::string& name) { return name == "-" ? "" : FileNameError(name); });
    for (CLI::Option* const alone : {list, whitelist})
    {
        for (CLI::Option* const ofARun : {strict, json, junit, payloads, captured})
            alone->excludes(ofARun);
    }
    whitelist->excludes(list)->excludes(only);
    captured->excludes(only)->excludes(junit)->excludes(payloads);

    std::reverse(arguments.begin(), arguments.end()); // the order in which CLI11 takes them
    try
    {
        app.parse(std::move(arguments));
        if (!options.junitFile.empty() && !options.payloadsFile.empty() &&
            IsOneFile(options.junitFile, options.payloadsFile))
            commandLine.usageError = OneLine("--junit and --payloads name one file, " + options.junitFile);
    }
    catch (const CLI::CallForHelp&)
    {
        commandLine.text = Help;
    }
    catch (const CLI::CallForVersion& version)
    {
        commandLine.text = std::string(version.what()) + "\n";
    }
    catch (const CLI::ParseError& error)
    {
        commandLine.usageError = OneLine(error.what());
    }
    return commandLine;
}

} // namespace Corvane
