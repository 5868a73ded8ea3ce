#include <check/Selection.h>

#include <algorithm>
#include <numeric>

namespace Corvane
{

namespace
{

char LowerCase(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::vector<std::string> NamesOf(const ReportingMethod& method)
{
    return {TestName(method.name), method.name, method.preparedBy};
}

// How many letters must be put in, left out or replaced to make one text of the other.
std::size_t Distance(std::string_view one, std::string_view other)
{
    std::vector<std::size_t> distances(other.size() + 1);
    std::iota(distances.begin(), distances.end(), std::size_t{0});
    for (const char letter : one)
    {
        std::size_t diagonal = distances[0]++;
        for (std::size_t i = 1; i <= other.size(); ++i)
        {
            const std::size_t replaced = diagonal + (LowerCase(letter) == LowerCase(other[i - 1]) ? 0 : 1);
            diagonal = distances[i];
            distances[i] = std::min({distances[i] + 1, distances[i - 1] + 1, replaced});
        }
    }
    return distances.back();
}

} // namespace

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
        else if (!pattern.empty() && (pattern.front() == '?' || LowerCase(pattern.front()) == LowerCase(name.front())))
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

Selection Select(const std::vector<ReportingMethod>& methods, const std::vector<std::string>& patterns)
{
    const auto isLike = [](const ReportingMethod& method, const std::string& pattern)
    {
        const std::vector<std::string> names = NamesOf(method);
        return std::any_of(names.begin(), names.end(),
                           [&pattern](const std::string& name) { return !name.empty() && Matches(pattern, name); });
    };
    Selection selection;
    for (const ReportingMethod& method : methods)
    {
        if (patterns.empty() || std::any_of(patterns.begin(), patterns.end(),
                                            [&](const std::string& pattern) { return isLike(method, pattern); }))
            selection.methods.push_back(method.name);
    }
    for (const std::string& pattern : patterns)
    {
        if (std::none_of(methods.begin(), methods.end(),
                         [&](const ReportingMethod& method) { return isLike(method, pattern); }))
            selection.unmatched.push_back(pattern);
    }
    return selection;
}

std::vector<std::string> NamesNear(const std::vector<ReportingMethod>& methods, std::string_view name)
{
    std::vector<std::string> nearest;
    std::size_t least = 1 + std::min<std::size_t>(3, name.size() / 3); // beyond it a name is another one
    for (const ReportingMethod& method : methods)
    {
        for (const std::string& candidate : NamesOf(method))
        {
            const std::size_t distance = Distance(name, candidate);
            if (distance < least)
                nearest.clear();
            least = std::min(least, distance);
            if (distance == least && std::find(nearest.begin(), nearest.end(), candidate) == nearest.end())
                nearest.push_back(candidate);
        }
    }
    return nearest;
}

} // namespace Corvane
