#include "CatalogueSource.h"

#include <algorithm>
#include <regex>

#include "Program.h"
#include "Utf8Path.h"

std::vector<CatalogueCall> ReadCatalogueSource()
{
    const std::string source = ReadFile(PathOf(SOURCE_DIR "/harness/Catalogue.cpp"));
    const std::regex titleOrCall(R"re(\btest\(\s*"(\w+)"|\b(?:tavi|Instance\(\))\.(\w+)\()re");
    std::vector<CatalogueCall> tests;
    for (std::sregex_iterator match(source.begin(), source.end(), titleOrCall), end; match != end; ++match)
    {
        const auto& title = (*match)[1];
        const auto& method = (*match)[2];
        if (title.matched)
        {
            const auto lineEnds = std::count(source.begin(), title.first, '\n');
            tests.push_back({"Testing " + title.str(), "", 1 + static_cast<int>(lineEnds), {}});
        }
        else if (!tests.empty()) // what stands above the first test belongs to none
        {
            tests.back().method = method;
            tests.back().calls.push_back(method);
        }
    }
    return tests;
}
