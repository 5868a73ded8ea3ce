#include <check/Selection.h>

#include <algorithm>

namespace Corvane
{

bool Matches(std::string_view pattern, std::string_view name)
{
    // The text that the latest "*" stands for grows by a character whenever what follows it does not fit.
    std::string_view afterStar;
    std::string_view grown;
    bool hasStar = false;
    while (!name.empty())
    {
        if (!pattern.empty() && pattern.front() == '*')
        {
            pattern.remove_prefix(1);
            hasStar = true;
            afterStar = pattern;
            grown = name;
        }
        else if (!pattern.empty() && (pattern.front() == '?' || pattern.front() == name.front()))
        {
            pattern.remove_prefix(1);
            name.remove_prefix(1);
        }
        else if (hasStar)
        {
            grown.remove_prefix(1);
            name = grown;
            pattern = afterStar;
        }
        else
        {
            return false;
        }
    }
    return pattern.find_first_not_of('*') == std::string_view::npos;
}

Selection Select(const std::vector<std::string>& names, const std::vector<std::string>& patterns)
{
    Selection selection;
    for (const std::string& name : names)
    {
        const auto isLikeIt = [&name](const std::string& pattern) { return Matches(pattern, name); };
        if (patterns.empty() || std::any_of(patterns.begin(), patterns.end(), isLikeIt))
            selection.names.push_back(name);
    }
    for (const std::string& pattern : patterns)
    {
        if (std::none_of(names.begin(), names.end(),
                         [&pattern](const std::string& name) { return Matches(pattern, name); }))
            selection.unmatched.push_back(pattern);
    }
    return selection;
}

} // namespace Corvane
