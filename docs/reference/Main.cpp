// event_reference SOURCES FOLDER: writes events.md and events.html, of the headers and the template in the project's
// sources, into the folder.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "Reference.h"
#include "Writers.h"

namespace
{

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

} // namespace

int main(int count, char** arguments)
{
    if (count != 3)
    {
        std::cerr << "event_reference SOURCES FOLDER" << std::endl;
        return 1;
    }
    try
    {
        const std::filesystem::path sources = arguments[1];
        const std::filesystem::path folder = arguments[2];
        const Reference reference =
            MakeReference(Read(sources / "telemetry/CorvaneTavi.h"), Read(sources / "telemetry/Vocabulary.h"));
        Write(folder / "events.md", AsMarkdown(reference));
        Write(folder / "events.html", AsPage(reference, Read(sources / "docs/reference/page.html")));
    }
    catch (const std::exception& error)
    {
        std::cerr << "event_reference: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
