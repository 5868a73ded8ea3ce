// The program's command line and exit status.
#pragma once

#include <string>
#include <vector>

namespace Corvane
{

struct Options
{
    std::vector<std::string> only; // names and patterns; empty: all
    bool list = false;
    std::string whitelist; // "json" or "csv"; empty: not asked for
    bool strict = false;
    bool json = false;
    std::string junitFile; // in UTF-8, as the next two; empty: not asked for
    std::string payloadsFile;
    std::string capturedFile; // "-": standard input
};

struct CommandLine
{
    Options options;
    std::string text;       // the output of --help or --version; empty without them
    std::string usageError; // one line; empty when the arguments are good
};

// `arguments` are those after the program's name, in UTF-8.
CommandLine ReadCommandLine(std::vector<std::string> arguments);

namespace Status
{

constexpr int Passed = 0;
constexpr int Failed = 1; // a test failed, or the library refused test mode, or the user has not opted in
constexpr int Usage = 2;
constexpr int Output = 3; // output could not be written, whatever the outcome of the tests

} // namespace Status

} // namespace Corvane
