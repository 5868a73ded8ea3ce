// event_reference SOURCES FOLDER: writes events.md and events.html, of the headers and the template in the project's
// sources, into the folder.
// event_reference --check SOURCES: says what differs between them and those in docs/, and fails when anything does.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Differences.h"
#include "Reference.h"
#include "Writers.h"

namespace
{

using Files = std::vector<std::pair<std::string, std::string>>; // names and texts

std::string Read(const std::filesystem::path& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

void Write(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    if (!(file << text << std::flush))
        throw std::runtime_error("cannot write " + path.string());
}

// Says of each file that is out of date what differs. Returns whether none is.
bool AreUpToDate(const Files& files, const std::filesystem::path& folder)
{
    bool upToDate = true;
    for (const auto& [name, text] : files)
    {
        const std::string difference = TextDifference(text, Read(folder / name));
        if (difference.empty())
            continue;
        upToDate = false;
        std::cerr << "docs/" << name << " is out of date. Where the change is meant, run scripts/reference.sh.\n"
                  << difference << std::endl;
    }
    return upToDate;
}

} // namespace

int main(int count, char** arguments)
{
    const bool check = count == 3 && std::string(arguments[1]) == "--check";
    if (count != 3)
    {
        std::cerr << "event_reference SOURCES FOLDER | --check SOURCES" << std::endl;
        return 1;
    }
    try
    {
        const std::filesystem::path sources = arguments[check ? 2 : 1];
        const Reference reference =
            MakeReference(Read(sources / "telemetry/CorvaneTavi.h"), Read(sources / "telemetry/Vocabulary.h"));
        const Files files = {{"events.md", AsMarkdown(reference)},
                             {"events.html", AsPage(reference, Read(sources / "docs/reference/page.html"))}};
        if (check)
            return AreUpToDate(files, sources / "docs") ? 0 : 1;
        for (const auto& [name, text] : files)
            Write(std::filesystem::path(arguments[2]) / name, text);
    }
    catch (const std::exception& error)
    {
        std::cerr << "event_reference: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
