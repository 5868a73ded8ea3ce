#include <check/Report.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include <nlohmann/json.hpp>

#include <check/Text.h>

using nlohmann::json;

namespace Corvane
{

namespace
{

using OrderedJson = nlohmann::ordered_json;

// Text for an attribute or an element. Tabs and line ends are escaped, because a parser reads them as blanks in an
// attribute. U+FFFD replaces characters that XML does not allow.
std::string XmlText(const std::string& text)
{
    static const std::map<char, std::string> escaped = {{'&', "&amp;"},  {'<', "&lt;"},  {'>', "&gt;"},
                                                        {'"', "&quot;"}, {'\t', "&#9;"}, {'\n', "&#10;"},
                                                        {'\r', "&#13;"}};
    const std::string wellFormed = WellFormed(text);
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string xml;
    for (std::string_view rest = wellFormed; !rest.empty(); rest.remove_prefix(1))
    {
        const char character = rest.front();
        if (const auto found = escaped.find(character); found != escaped.end())
            xml += found->second;
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

std::string XmlAttribute(const std::string& name, const std::string& value)
{
    return " " + name + "=\"" + XmlText(value) + "\"";
}

// Three decimals, with a point in any locale.
std::string Seconds(double seconds)
{
    const auto milliseconds = static_cast<long long>(seconds * 1000);
    return std::to_string(milliseconds / 1000) + "." + std::to_string(1000 + milliseconds % 1000).substr(1);
}

// `element` is "failure" or "error"; without messages the case has none.
std::string JUnitCase(const std::string& name, double seconds, const std::string& element,
                      const std::vector<std::string>& messages)
{
    std::string xml = "  <testcase" + XmlAttribute("name", name) + " classname=\"TaviCheck\"" +
                      XmlAttribute("time", Seconds(seconds));
    if (messages.empty())
        return xml + " />\n";
    return xml + ">\n    <" + element + " type=\"Failed\"" + XmlAttribute("message", messages.front()) + ">" +
           XmlText(JoinedBy("\n", messages)) + "</" + element + ">\n  </testcase>\n";
}

// The call of the fault, and the number of further ones.
std::string CallsOf(const CallFault& fault)
{
    if (fault.call.empty())
        return "";
    return "by " + fault.call + (fault.calls > 1 ? ", and in " + CountOf(fault.calls - 1, "further call") : "");
}

std::vector<std::string> MessagesOf(const TestOutcome& test)
{
    std::vector<std::string> messages;
    for (const CallFault& fault : test.faults)
        messages.push_back(fault.fault.message + (fault.call.empty() ? "" : " (" + CallsOf(fault) + ")"));
    return messages;
}

std::string RemarkHead(bool isStrict)
{
    return isStrict ? "ERROR   " : "REMARK  ";
}

OrderedJson TestAsJson(const TestOutcome& test)
{
    OrderedJson faults = OrderedJson::array();
    for (const CallFault& fault : test.faults)
        faults.push_back({{"call", TextOrNull(fault.call)},
                          {"key", TextOrNull(fault.fault.key)},
                          {"expected", fault.fault.expected},
                          {"sent", fault.fault.sent},
                          {"message", fault.fault.message},
                          {"calls", fault.calls}});
    return {
        {"name", test.name},        {"method", test.method},     {"verdict", test.faults.empty() ? "passed" : "failed"},
        {"faults", faults},         {"messages", test.messages}, {"calls", test.calls},
        {"payloads", test.payloads}};
}

} // namespace

std::string ProductRemarkText(const RunOutcome& outcome, bool isStrict)
{
    return outcome.productRemark.empty() ? "" : WellFormed(RemarkHead(isStrict) + outcome.productRemark + "\n");
}

std::string VerdictText(const TestOutcome& test, std::set<std::string>& reported)
{
    if (test.faults.empty())
        return "PASSED\n";
    std::string text = "FAILED";
    std::vector<std::string> reportedKeys;
    std::string unreported;
    for (const CallFault& fault : test.faults)
    {
        if (!reported.insert(fault.fault.message).second)
        {
            reportedKeys.push_back(fault.fault.key.empty() ? fault.fault.message : fault.fault.key);
            continue;
        }
        unreported += "    " + fault.fault.message + "\n";
        if (!fault.call.empty())
            unreported += "        " + CallsOf(fault) + "\n";
    }
    if (!reportedKeys.empty())
        text += ", as above: " + JoinedBy(", ", reportedKeys);
    return WellFormed(text + "\n" + unreported);
}

std::string ClosingText(const RunOutcome& outcome, bool isStrict)
{
    std::string text;
    for (const auto& [message, count] : outcome.remarks)
        text += RemarkHead(isStrict) + message + ": " + CountOf(count, "test") + "\n";
    for (const std::string& error : outcome.Errors(false))
        text += "ERROR   " + error + "\n";
    const std::vector<std::string> failed = outcome.FailedTests();
    text += "\n";
    if (!failed.empty())
        text += "Failed: " + JoinedBy(", ", failed) + "\n";
    text +=
        std::to_string(outcome.tests.size() - failed.size()) + " passed, " + std::to_string(failed.size()) + " failed";
    if (const std::size_t errors = outcome.Errors(isStrict).size(); errors != 0)
        text += ", " + CountOf(errors, "error");
    return WellFormed(text + "\n");
}

std::string JsonReport(const RunOutcome& outcome, const Document& document, bool isStrict)
{
    OrderedJson tests = OrderedJson::array();
    std::transform(outcome.tests.begin(), outcome.tests.end(), std::back_inserter(tests), TestAsJson);
    OrderedJson remarks = OrderedJson::array();
    if (!outcome.productRemark.empty())
        remarks.push_back({{"message", outcome.productRemark}, {"tests", nullptr}});
    for (const auto& [message, count] : outcome.remarks)
        remarks.push_back({{"message", message}, {"tests", count}});
    const std::vector<std::string> errors = outcome.Errors(isStrict);
    const std::size_t failed = outcome.FailedTests().size();
    const OrderedJson report = {
        {"document", {{"version", document.version}}},
        {"strict", isStrict},
        {"tests", tests},
        {"errors", errors},
        {"remarks", remarks},
        {"summary", {{"passed", outcome.tests.size() - failed}, {"failed", failed}, {"errors", errors.size()}}}};
    return report.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

std::string JUnitReport(const RunOutcome& outcome, bool isStrict, const std::string& begunTest)
{
    std::string cases;
    double seconds = 0;
    for (const TestOutcome& test : outcome.tests)
    {
        cases += JUnitCase(test.name, test.seconds, "failure", MessagesOf(test));
        seconds += test.seconds;
    }
    std::size_t errorCases = 0;
    const auto addErrors = [&cases, &errorCases](const std::string& name, const std::vector<std::string>& messages)
    {
        if (messages.empty())
            return;
        cases += JUnitCase(name, 0, "error", messages);
        ++errorCases;
    };
    addErrors("OutsideTheTests", outcome.Errors(isStrict));
    if (!begunTest.empty())
        addErrors(begunTest, {"not finished"});
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"tavi_check\"" +
           XmlAttribute("tests", std::to_string(outcome.tests.size() + errorCases)) +
           XmlAttribute("failures", std::to_string(outcome.FailedTests().size())) +
           XmlAttribute("errors", std::to_string(errorCases)) + " skipped=\"0\"" +
           XmlAttribute("time", Seconds(seconds)) + ">\n" + cases + "</testsuite>\n";
}

std::string PayloadsAsJson(const RunOutcome& outcome)
{
    std::string text;
    for (const ReceivedPayload& payload : outcome.payloads)
        text += (text.empty() ? "\n" : ",\n") + ("{\"call\": " + json(payload.call).dump()) + ", \"payload\": " +
                (json::accept(payload.text) ? payload.text : json(WellFormed(payload.text)).dump()) + "}";
    return "[" + text + (text.empty() ? "]\n" : "\n]\n");
}

} // namespace Corvane
