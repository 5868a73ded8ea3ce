#include "Program.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

std::string ReadFile(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + Utf8Of(file));
    return {std::istreambuf_iterator<char>(stream), {}};
}

const std::string& GoodRun()
{
    static const std::string text = ReadFile(PathOf(TEST_DATA_DIR "/good_run.txt"));
    return text;
}

// The macros are the built files, and where the library lies from the program's folder.
ProgramCopy::ProgramCopy(Library library, const std::filesystem::path& folder) : bin(temporary.Path() / folder / "bin")
{
    const std::filesystem::path built = PathOf(PROGRAM_FILE).parent_path();
    const std::filesystem::path sdk = PathOf(library == Library::StandIn ? STAND_IN_FILE : FAULTY_LIBRARY_FILE);
    const std::filesystem::path libraryFolder = (bin / LIBRARY_FOLDER).lexically_normal();
    std::filesystem::create_directories(bin / "UPI");
    std::filesystem::create_directories(libraryFolder);
    std::filesystem::copy_file(PathOf(PROGRAM_FILE), Executable());
    std::filesystem::copy_file(PathOf(TAVI_CHECK_FILE), TaviCheck());
    std::filesystem::copy_file(built / "UPI" / "upiconfig.xml", ProductFile());
    std::filesystem::copy_file(sdk, libraryFolder / sdk.filename());
    // Where other libraries are shared, on Windows, they are beside the program.
    for (const std::filesystem::path& file : std::filesystem::directory_iterator(built))
        if (file.extension() == ".dll")
            std::filesystem::copy_file(file, bin / file.filename(), std::filesystem::copy_options::skip_existing);
}

Outcome ProgramCopy::Run(const std::string& script, OutputTo output) const
{
    return Run(Executable(), {}, script, output);
}

Outcome ProgramCopy::RunTaviCheck(const std::vector<std::string>& arguments, const nlohmann::json& script,
                                  OutputTo output) const
{
    return Run(TaviCheck(), arguments, script.dump(), output);
}

Outcome ProgramCopy::Run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::string& script, OutputTo output) const
{
    const std::filesystem::path scriptFile = temporary.Write("script.json", script);
    std::filesystem::remove(LogFile());
    return RunProgram(
        {.program = program,
         .arguments = arguments,
         .environment = {{"TAVI_FAULT_SCRIPT", Utf8Of(scriptFile)}, {"TAVI_FAULT_LOG", Utf8Of(LogFile())}},
         .workingFolder = temporary.Path(),
         .output = output});
}

std::vector<nlohmann::json> ProgramCopy::Calls(const std::string& function) const
{
    std::vector<nlohmann::json> calls;
    std::ifstream log(LogFile());
    for (std::string line; std::getline(log, line);)
    {
        nlohmann::json call = nlohmann::json::parse(line);
        if (function.empty() || call["function"] == function)
            calls.push_back(std::move(call));
    }
    return calls;
}

nlohmann::json ProgramCopy::ReportedProduct() const
{
    const std::vector<nlohmann::json> calls = Calls("Initialize");
    return calls.empty() ? nlohmann::json() : calls.front()["product"];
}
