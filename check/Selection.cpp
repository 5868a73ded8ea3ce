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
    std::vector<std::string> names = {TestName(method.name), method.name};
    if (!method.preparedBy.empty())
        names.push_back(method.preparedBy);
    return names;
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
    // By n: whether the part of the pattern before `wanted` matches the first n characters of the name.
    std::vector<bool> matches(name.size() + 1);
    matches[0] = true;
    for (const char wanted : pattern)
    {
        if (wanted == '*')
        {
            std::fill(std::find(matches.begin(), matches.end(), true), matches.end(), true);
            continue;
        }
        for (std::size_t n = name.size(); n > 0; --n)
            matches[n] = matches[n - 1] && (wanted == '?' || LowerCase(wanted) == LowerCase(name[n - 1]));
        matches[0] = false;
    }
    return matches.back();
}

Selection Select(const std::vector<ReportingMethod>& methods, const std::vector<std::string>& patterns)
{
    Selection selection{{}, patterns};
    for (const ReportingMethod& method : methods)
    {
        const auto isOfMethod = [names = NamesOf(method)](const std::string& pattern)
        {
            return std::any_of(names.begin(), names.end(),
                               [&pattern](const std::string& name) { return Matches(pattern, name); });
        };
        if (patterns.empty() || std::any_of(patterns.begin(), patterns.end(), isOfMethod))
            selection.methods.push_back(method.name);
        std::erase_if(selection.unmatched, isOfMethod);
    }
    return selection;
}

std::vector<std::string> NamesNear(const std::vector<ReportingMethod>& methods, std::string_view name)
{
    std::vector<std::string> nearest;
    std::size_t least =
        1 + std::min<std::size_t>(3, name.size() / 3); // a name that differs in more letters is another one
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
