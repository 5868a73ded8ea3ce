#include <check/Options.h>

#include <algorithm>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>

namespace Corvane
{

namespace
{

const char* const Description =
    "Calls every reporting method of the wrapper and compares each payload, whole, with what docs/events.json says:\n"
    "each call sends exactly one, with every key, scope, type and object as it is there. Of the product's description\n"
    "and of the edit timer only the type is compared. Listed are further top-level keys, and an edit timer that does "
    "not\n"
    "come.";

const char* const ExitStatuses =
    "Exit status: 0 every test passed; 1 a test failed, or the library refused test mode, or the user has not\n"
    "opted in; 2 the arguments are wrong; 3 something that was asked for could not be written, whatever became of the\n"
    "tests.";

// Without what an option excludes.
class ShortHelp : public CLI::Formatter
{
public:
    std::string make_option_opts(const CLI::Option* option) const override
    {
        return option->get_type_size() != 0 ? " " + option->get_type_name() : "";
    }
};

// What is quoted from the arguments may hold anything.
std::string OneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char character) { return character == '\n' || character == '\r'; }, ' ');
    return text;
}

} // namespace

CommandLine ReadCommandLine(std::vector<std::string> arguments)
{
    CommandLine commandLine;
    Options& options = commandLine.options;
    CLI::App app(Description, "tavi_check");
    app.allow_windows_style_options(false); // the same arguments on every system
    app.formatter(std::make_shared<ShortHelp>());
    app.footer(ExitStatuses);
    app.set_help_flag("-h,--help", "Print this and exit");
    app.set_version_flag("--version", "tavi_check " CORVANE_VERSION, "Print the version and exit");
    CLI::Option* const only =
        app.add_option("--only", options.only, R"(Run these tests; "*" stands for any text and "?" for a character)")
            ->type_name("NAME...");
    CLI::Option* const list = app.add_flag("--list", options.list, "Print the tests' names and exit");
    CLI::Option* const whitelist =
        app.add_option("--whitelist", options.whitelist,
                       "Print every waypoint with its attributes, to compare a whitelist with, and exit")
            ->type_name("json|csv")
            ->check(CLI::IsMember({"json", "csv"}).description(""));
    CLI::Option* const strict = app.add_flag("--strict", options.strict, "What is listed otherwise is a fault");
    CLI::Option* const json = app.add_flag("--json", options.json, "Print the outcome as one JSON document");
    CLI::Option* const junit =
        app.add_option("--junit", options.junitFile, "Write a JUnit report as well")->type_name("FILE");
    CLI::Option* const payloads =
        app.add_option("--payloads", options.payloadsFile,
                       "Write the payloads that are received, as a JSON array; one that is no JSON text as a string")
            ->type_name("FILE");
    for (CLI::Option* const ofARun : {strict, json, junit, payloads})
    {
        list->excludes(ofARun);
        whitelist->excludes(ofARun);
    }
    whitelist->excludes(list)->excludes(only);

    std::reverse(arguments.begin(), arguments.end()); // as the parser takes them
    try
    {
        app.parse(std::move(arguments));
    }
    catch (const CLI::CallForHelp&)
    {
        commandLine.text = app.help();
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
