#include "CatalogueSource.h"

#include <algorithm>
#include <regex>

#include "Program.h"
#include "Utf8Path.h"

std::vector<CatalogueCall> ReadCatalogueSource()
{
    const std::string source = ReadFile(PathOf(SOURCE_DIR "/harness/Catalogue.cpp"));
    const std::regex call(R"(\b(?:tavi|Instance\(\))\.(\w+)\()");
    std::vector<CatalogueCall> calls;
    // The documents' test prints its title itself. It is the last one to run, although not the last one in the source.
    for (const char* const opening : {R"re(RunTest\(results, "(\w+)")re", R"re(PrintTitle\("(\w+)"\))re"})
    {
        const std::regex title(opening);
        for (std::sregex_iterator match(source.begin(), source.end(), title), end; match != end; ++match)
        {
            std::smatch called;
            std::regex_search((*match)[0].second, source.end(), called, call);
            const auto lineEnds = std::count(source.begin(), (*match)[0].first, '\n');
            calls.push_back({"Testing " + (*match)[1].str(), called[1], 1 + static_cast<int>(lineEnds)});
        }
    }
    return calls;
}
