#include <check/Report.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include <nlohmann/json.hpp>

#include <check/PayloadCheck.h>

using nlohmann::json;

namespace Corvane
{

namespace
{

using OrderedJson = nlohmann::ordered_json;

std::string JoinLines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

std::string CountOf(std::size_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

using KeyCounts = std::map<std::string, std::size_t>; // the number of tests with each key

// Nothing without keys.
std::string KeyLines(const std::string& heading, const KeyCounts& counts)
{
    std::string text;
    for (const auto& [key, count] : counts)
        text.append("    ").append(key).append(": ").append(CountOf(count, "test")).append("\n");
    return counts.empty() ? "" : "\n" + heading + "\n" + text;
}

// Well-formed UTF-8, with U+FFFD for what is not.
std::string WellFormed(const std::string& text)
{
    return json::parse(JsonTextOf(text)).get<std::string>();
}

// Text for an attribute or an element. A line end and a tab would be read as blanks in an attribute; what XML cannot
// hold becomes U+FFFD.
std::string XmlText(const std::string& text)
{
    const std::string wellFormed = WellFormed(text);
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string xml;
    for (std::string_view rest = wellFormed; !rest.empty(); rest.remove_prefix(1))
    {
        const char character = rest.front();
        if (character == '&')
            xml += "&amp;";
        else if (character == '<')
            xml += "&lt;";
        else if (character == '>')
            xml += "&gt;";
        else if (character == '"')
            xml += "&quot;";
        else if (character == '\t' || character == '\n' || character == '\r')
            xml += "&#" + std::to_string(static_cast<int>(character)) + ";";
        else if (static_cast<unsigned char>(character) < 0x20)
            xml += replacement;
        else if (rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF")) // U+FFFE and U+FFFF
        {
            xml += replacement;
            rest.remove_prefix(2);
        }
        else
            xml += character;
    }
    return xml;
}

std::string Attribute(const std::string& name, const std::string& value)
{
    return " " + name + "=\"" + XmlText(value) + "\"";
}

// With a point in any locale.
std::string Seconds(double seconds)
{
    const auto milliseconds = static_cast<long long>(seconds * 1000);
    return std::to_string(milliseconds / 1000) + "." + std::to_string(1000 + milliseconds % 1000).substr(1);
}

// `element` is "failure" or "error"; there is none without sentences.
std::string JUnitCase(const std::string& name, double seconds, const std::string& element,
                      const std::vector<std::string>& sentences)
{
    std::string xml =
        "  <testcase" + Attribute("name", name) + " classname=\"TaviCheck\"" + Attribute("time", Seconds(seconds));
    if (sentences.empty())
        return xml + " />\n";
    return xml + ">\n    <" + element + " type=\"Failed\"" + Attribute("message", sentences.front()) + ">" +
           XmlText(JoinLines(sentences)) + "</" + element + ">\n  </testcase>\n";
}

OrderedJson TestAsJson(const TestOutcome& test)
{
    return {{"name", test.name},
            {"method", test.method.empty() ? OrderedJson() : OrderedJson(test.method)},
            {"verdict", test.faults.empty() ? "passed" : "failed"},
            {"faults", test.faults},
            {"further_keys", test.furtherKeys},
            {"unsent_keys", test.unsentKeys},
            {"messages", test.messages},
            {"payloads", test.payloads}};
}

} // namespace

std::string TextReport(const RunOutcome& outcome)
{
    std::string text;
    KeyCounts furtherKeys;
    KeyCounts unsentKeys;
    for (const TestOutcome& test : outcome.tests)
    {
        text += (test.faults.empty() ? "PASSED  " : "FAILED  ") + test.name + "\n";
        for (const std::string& fault : test.faults)
            text += "    " + fault + "\n";
        for (const std::string& key : test.furtherKeys)
            ++furtherKeys[key];
        for (const std::string& key : test.unsentKeys)
            ++unsentKeys[key];
    }
    for (const std::string& error : outcome.errors)
        text += "ERROR   " + error + "\n";
    text += KeyLines("Top-level keys that docs/events.json does not name:", furtherKeys);
    text += KeyLines("Keys of the library's own that did not come:", unsentKeys);
    const std::size_t failed = outcome.FailedTests();
    text.append("\n").append(std::to_string(outcome.tests.size() - failed)).append(" passed, ");
    text.append(std::to_string(failed)).append(" failed");
    if (!outcome.errors.empty())
        text.append(", ").append(CountOf(outcome.errors.size(), "error"));
    return WellFormed(text + "\n");
}

std::string JsonReport(const RunOutcome& outcome, const Document& document, bool isStrict)
{
    OrderedJson tests = OrderedJson::array();
    std::transform(outcome.tests.begin(), outcome.tests.end(), std::back_inserter(tests), TestAsJson);
    const std::size_t failed = outcome.FailedTests();
    const OrderedJson report = {
        {"document", {{"version", document.version}}},
        {"strict", isStrict},
        {"tests", tests},
        {"errors", outcome.errors},
        {"summary",
         {{"passed", outcome.tests.size() - failed}, {"failed", failed}, {"errors", outcome.errors.size()}}}};
    return report.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

std::string JUnitReport(const RunOutcome& outcome)
{
    std::string cases;
    double seconds = 0;
    for (const TestOutcome& test : outcome.tests)
    {
        cases += JUnitCase(test.name, test.seconds, "failure", test.faults);
        seconds += test.seconds;
    }
    const std::size_t errors = outcome.errors.empty() ? 0 : 1;
    if (errors != 0)
        cases += JUnitCase("OutsideTheTests", 0, "error", outcome.errors);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"tavi_check\"" +
           Attribute("tests", std::to_string(outcome.tests.size() + errors)) +
           Attribute("failures", std::to_string(outcome.FailedTests())) + Attribute("errors", std::to_string(errors)) +
           " skipped=\"0\"" + Attribute("time", Seconds(seconds)) + ">\n" + cases + "</testsuite>\n";
}

std::string PayloadsAsJson(const RunOutcome& outcome)
{
    std::string text;
    for (const std::string& payload : outcome.payloads)
        text += (text.empty() ? "\n" : ",\n") + (json::accept(payload) ? payload : JsonTextOf(payload));
    return "[" + text + (text.empty() ? "]\n" : "\n]\n");
}

} // namespace Corvane
