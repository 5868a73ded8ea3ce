#include "Differences.h"

#include <algorithm>
#include <sstream>

#include <nlohmann/json.hpp>

using nlohmann::json;

namespace
{

constexpr std::size_t MostItems = 3; // lines of a text, members of a value
constexpr std::size_t MostBytes = 120;

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    if (!text.empty() && !text.ends_with('\n'))
        lines.back() += " (without a line end)";
    return lines;
}

// At most MostBytes of the text from `begin` on, with carriage returns made visible.
std::string Cut(const std::string& text, std::size_t begin = 0)
{
    std::string shown = begin > 0 ? "..." : "";
    for (const char byte : text.substr(begin, MostBytes))
        shown += byte == '\r' ? std::string("\\r") : std::string(1, byte);
    return shown + (begin + MostBytes < text.size() ? "..." : "");
}

// Shortly before the first difference if that is far to the right.
std::size_t StartOfTheCut(const std::string& expected, const std::string& actual)
{
    const auto [in, other] = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    const auto column = static_cast<std::size_t>(in - expected.begin());
    return column > MostBytes / 2 ? column - MostBytes / 4 : 0;
}

std::string Member(const json& value, const json::json_pointer& place)
{
    return value.contains(place) ? Cut(value.at(place).dump(-1, ' ', false, json::error_handler_t::replace))
                                 : "nothing";
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
    std::string text =
        "line " + std::to_string(begin - expectedLines.begin() + 1) + R"(, "-" is expected and "+" is there:)";
    if (begin != expectedLines.begin())
        text += "\n  " + Cut(*std::prev(begin));

    const bool bothGoOn = begin != expectedLines.end() && actualBegin != actualLines.end();
    const std::size_t start = bothGoOn ? StartOfTheCut(*begin, *actualBegin) : 0;
    const auto show = [&text, start](const char* mark, auto line, auto end)
    {
        for (std::size_t shown = 0; line != end && shown < MostItems; ++line, ++shown)
            text += mark + Cut(*line, shown == 0 ? start : 0);
    };
    show("\n- ", begin, expectedLines.end());
    show("\n+ ", actualBegin, actualLines.end());
    return text;
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
    Lines differences;
    for (const json& change : json::diff(expected, sent))
    {
        const json::json_pointer place(change["path"].get<std::string>());
        differences.push_back(place.to_string() + ": expected " + Member(expected, place) + ", sent " +
                              Member(sent, place));
    }
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
