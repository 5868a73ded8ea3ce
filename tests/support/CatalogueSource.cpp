#include "CatalogueSource.h"

#include <algorithm>
#include <cstddef>
#include <regex>

#include "Program.h"
#include "Utf8Path.h"

// A test is a block of lines; an empty line ends it.
std::vector<CatalogueCall> ReadCatalogueSource()
{
    const std::string source = ReadFile(PathOf(SOURCE_DIR "/harness/Catalogue.cpp"));
    const std::regex titlePattern(R"re((?:RunTest\(results, |PrintTitle\()"(\w+)")re");
    const std::regex callPattern(R"re(\b(?:tavi|Instance\(\))\.(\w+)\()re");
    std::vector<CatalogueCall> tests;
    for (std::size_t begin = 0, end = 0; begin < source.size(); begin = end + 2)
    {
        end = std::min(source.find("\n\n", begin), source.size());
        const std::string block = source.substr(begin, end - begin);
        std::smatch title;
        if (!std::regex_search(block, title, titlePattern))
            continue;
        const auto titleBegins = source.begin() + static_cast<std::ptrdiff_t>(begin) + title.position();
        CatalogueCall test{"Testing " + title[1].str(), "", 1, {}};
        test.line += static_cast<int>(std::count(source.begin(), titleBegins, '\n'));
        for (std::sregex_iterator call(block.begin(), block.end(), callPattern), none; call != none; ++call)
            test.calls.push_back(test.method = (*call)[1]);
        tests.push_back(test);
    }
    return tests;
}
