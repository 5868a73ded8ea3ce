#include "Differences.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include <nlohmann/json.hpp>

using nlohmann::json;

namespace
{

constexpr std::size_t MostItems = 3; // lines of a text, members of a value
constexpr std::size_t MostBytes = 120;

using Lines = std::vector<std::string>;

// What follows the last line end counts as a line too; it is usually empty.
Lines LinesOf(const std::string& text)
{
    Lines lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin))
    {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    lines.push_back(text.substr(begin));
    return lines;
}

bool IsInsideACharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// At most MostBytes of the text, cut at the boundaries of characters, with carriage returns made visible.
std::string Cut(const std::string& text, std::size_t begin = 0)
{
    std::size_t end = std::min(text.size(), begin + MostBytes);
    while (begin > 0 && begin < end && IsInsideACharacter(text[begin]))
        ++begin;
    while (end > begin && end < text.size() && IsInsideACharacter(text[end]))
        --end;
    std::string shown = begin > 0 ? "..." : "";
    for (const char byte : text.substr(begin, end - begin))
        shown += byte == '\r' ? std::string("\\r") : std::string(1, byte);
    return shown + (end < text.size() ? "..." : "");
}

// Where to begin showing two lines: at 0, or shortly before their first difference when that is far to the right.
std::size_t StartOfTheCut(const std::string& expected, const std::string& actual)
{
    const auto [in, other] = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    const auto column = static_cast<std::size_t>(in - expected.begin());
    return column > MostBytes / 2 ? column - MostBytes / 4 : 0;
}

std::string MarkedLines(const std::string& mark, Lines::const_iterator begin, Lines::const_iterator end,
                        std::size_t startOfTheFirst)
{
    std::string text;
    std::size_t start = startOfTheFirst;
    for (std::size_t shown = 0; begin != end && shown < MostItems; ++begin, ++shown, start = 0)
        text += "\n" + mark + " " + Cut(*begin, start);
    return text;
}

std::string ShownValue(const json* value)
{
    return value != nullptr ? Cut(value->dump(-1, ' ', false, json::error_handler_t::replace)) : "nothing";
}

// A null pointer: there is no such member.
void AddDifferences(std::vector<std::string>& differences, const json::json_pointer& place, const json* expected,
                    const json* sent)
{
    if (expected == nullptr || sent == nullptr || !expected->is_object() || !sent->is_object())
    {
        if (expected == nullptr || sent == nullptr || *expected != *sent)
            differences.push_back(place.to_string() + ": expected " + ShownValue(expected) + ", sent " +
                                  ShownValue(sent));
        return;
    }
    json members = *expected;
    members.update(*sent);
    for (const auto& [key, value] : members.items())
        AddDifferences(differences, place / key, expected->contains(key) ? &expected->at(key) : nullptr,
                       sent->contains(key) ? &sent->at(key) : nullptr);
}

} // namespace

std::string TextDifference(const std::string& expected, const std::string& actual)
{
    if (expected == actual)
        return "";
    const Lines expectedLines = LinesOf(expected);
    const Lines actualLines = LinesOf(actual);
    const auto [begin, actualBegin] =
        std::mismatch(expectedLines.begin(), expectedLines.end(), actualLines.begin(), actualLines.end());

    // Ends where the texts are equal again: before their common last lines, or earlier when no line was added or
    // removed.
    auto end = expectedLines.end();
    auto actualEnd = actualLines.end();
    while (end != begin && actualEnd != actualBegin && *std::prev(end) == *std::prev(actualEnd))
    {
        --end;
        --actualEnd;
    }
    if (end - begin == actualEnd - actualBegin)
    {
        const auto [equal, actualEqual] = std::mismatch(begin, end, actualBegin, std::not_equal_to<>());
        end = equal;
        actualEnd = actualEqual;
    }

    const bool bothHaveLines = begin != end && actualBegin != actualEnd;
    const std::size_t start = bothHaveLines ? StartOfTheCut(*begin, *actualBegin) : 0;
    std::string text =
        "line " + std::to_string(begin - expectedLines.begin() + 1) + R"(, "-" is expected and "+" is there:)";
    const auto above = std::find_if(std::make_reverse_iterator(begin), expectedLines.rend(),
                                    [](const std::string& line) { return !line.empty(); });
    if (above != expectedLines.rend())
        text += "\n  " + Cut(*above);
    return text + MarkedLines("-", begin, end, start) + MarkedLines("+", actualBegin, actualEnd, start);
}

testing::AssertionResult IsText(const char* actualExpression, const char*, const std::string& actual,
                                const std::string& expected)
{
    if (actual == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << actualExpression << ": " << TextDifference(expected, actual);
}

std::string JsonDifferences(const json& expected, const json& sent)
{
    std::vector<std::string> differences;
    AddDifferences(differences, json::json_pointer(), &expected, &sent);
    return FirstFew(differences);
}

testing::AssertionResult IsJson(const char* sentExpression, const char*, const json& sent, const json& expected)
{
    if (sent == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << sentExpression << ":\n" << JsonDifferences(expected, sent);
}

std::string FirstFew(const std::vector<std::string>& items)
{
    std::string text;
    for (std::size_t i = 0; i < items.size() && i < MostItems; ++i)
        text += (i > 0 ? "\n" : "") + items[i];
    if (items.size() > MostItems)
        text += "\nand " + std::to_string(items.size() - MostItems) + " more";
    return text;
}

std::string FirstLines(const std::string& text, std::size_t count)
{
    std::string first;
    std::istringstream lines(text);
    for (std::string line; count > 0 && std::getline(lines, line); --count)
        first += Cut(line) + "\n";
    return first;
}
