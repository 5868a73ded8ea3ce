#include "VocabularySource.h"

#include <regex>

std::vector<VocabularyConstant> ReadVocabulary(const std::string& header)
{
    std::vector<VocabularyConstant> constants;
    const std::regex definition(R"re(inline const std::wstring (\w+) =\s*L"([^"]*)";)re");
    for (std::sregex_iterator found(header.begin(), header.end(), definition), end; found != end; ++found)
        constants.push_back({(*found)[1], (*found)[2]});
    return constants;
}
