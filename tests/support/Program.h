// Runs other programs and returns what they print.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "TemporaryFolder.h"

enum class OutputTo
{
    File,
    Pipe,
    Terminal,   // a terminal or console: the outcome is what it shows
    SlowReader, // a non-blocking pipe of small capacity, read bit by bit
    Nothing,    // standard output is closed from the start
    ReaderGone, // a pipe that nobody reads any more
    FullDisk,   // on Linux only
};

struct Command
{
    std::filesystem::path program;
    std::vector<std::string> arguments = {};
    std::map<std::string, std::string> environment = {}; // in addition to this process's own
    std::filesystem::path workingFolder = {};            // empty: this process's own
    OutputTo output = OutputTo::File;
    bool keepsLineEnds = false; // otherwise they are "\n" in the outcome, whatever the system's own are
};

struct Outcome
{
    int status; // on Linux 128 + signal number if a signal ended it, 127 if it could not be started
    std::string output;
    std::string errors;
};

// Waits for the program to end. Its standard input is empty.
Outcome RunProgram(const Command& command);

// Whether there is OutputTo::Terminal. A test that needs it is skipped where there is none, with this message.
bool HasTerminals();
inline const char* const WithoutTerminals = "no pseudo-terminal can be opened here, so that nothing is run in one";

std::string ReadFile(const std::filesystem::path& file);

// Outputs that cannot be written, as far as the system has them, each with the system's error.
std::map<OutputTo, int> BrokenOutputs();

// What the program prints when every test passes.
const std::string& GoodRun();

// A copy of the built programs in its own folder, laid out as installed, on either telemetry library.
class ProgramCopy
{
public:
    enum class Library
    {
        StandIn,
        Faulty,
    };

    // `folder`, relative, is where the copy lies below the temporary folder.
    explicit ProgramCopy(Library library = Library::Faulty, const std::filesystem::path& folder = "copy");

    const TemporaryFolder& Folder() const { return temporary; }
    std::filesystem::path Executable() const { return bin / PathOf(PROGRAM_FILE).filename(); }
    std::filesystem::path TaviCheck() const { return bin / PathOf(TAVI_CHECK_FILE).filename(); }
    std::filesystem::path ProductFile() const { return bin / "UPI" / "upiconfig.xml"; }
    std::filesystem::path LogFile() const { return temporary.Path() / "calls.log"; }

    // The faulty library follows `script` and writes its calls to LogFile(), a JSON text a line. Relative names of
    // files are in Folder().
    Outcome Run(const std::string& script = "{}", OutputTo output = OutputTo::File) const;
    Outcome RunTaviCheck(const std::vector<std::string>& arguments,
                         const nlohmann::json& script = nlohmann::json::object(),
                         OutputTo output = OutputTo::File) const;

    // The calls of the latest run in order, or those of one function.
    std::vector<nlohmann::json> Calls(const std::string& function = "") const;

    // The product that the program described to the library in the latest run; null if it did not.
    nlohmann::json ReportedProduct() const;

private:
    Outcome Run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                const std::string& script, OutputTo output) const;

    TemporaryFolder temporary;
    std::filesystem::path bin;
};
