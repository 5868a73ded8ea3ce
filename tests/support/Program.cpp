#include "Program.h"
#include "Utf8Path.h"

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

ProgramCopy::ProgramCopy(Library library, const std::filesystem::path& folder)
{
    // The macros are the built files, and where the library lies from the program's folder.
    const std::filesystem::path program = PathOf(PROGRAM_FILE);
    const std::filesystem::path sdk = PathOf(library == Library::StandIn ? STAND_IN_FILE : FAULTY_LIBRARY_FILE);
    const std::filesystem::path bin = temporary.Path() / folder / "bin";
    const std::filesystem::path libraryFolder = (bin / LIBRARY_FOLDER).lexically_normal();
    std::filesystem::create_directories(bin / "UPI");
    std::filesystem::create_directories(libraryFolder);
    executable = bin / program.filename();
    std::filesystem::copy_file(program, executable);
    std::filesystem::copy_file(program.parent_path() / "UPI" / "upiconfig.xml", ProductFile());
    std::filesystem::copy_file(sdk, libraryFolder / sdk.filename());
    // Where other libraries are shared, on Windows, they lie beside the program.
    for (const std::filesystem::path& file : std::filesystem::directory_iterator(program.parent_path()))
        if (file.extension() == ".dll")
            std::filesystem::copy_file(file, bin / file.filename(), std::filesystem::copy_options::skip_existing);
}

Outcome ProgramCopy::Run(const std::string& script, OutputTo output) const
{
    return Run(executable, {}, script, output);
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

TaviCheckCopy::TaviCheckCopy(Library library, const std::filesystem::path& folder) : ProgramCopy(library, folder)
{
    const std::filesystem::path program = PathOf(TAVI_CHECK_FILE);
    taviCheck = Executable().parent_path() / program.filename();
    std::filesystem::copy_file(program, taviCheck);
}

Outcome TaviCheckCopy::RunTaviCheck(const std::vector<std::string>& arguments, const nlohmann::json& script,
                                    OutputTo output) const
{
    return Run(taviCheck, arguments, script.dump(), output);
}
