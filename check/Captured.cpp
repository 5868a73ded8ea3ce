#include <check/Captured.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>

#include <check/Text.h>

using nlohmann::json;

namespace Corvane
{

namespace
{

using OrderedJson = nlohmann::ordered_json;

// Throws std::runtime_error when the text has a key twice in one object or more levels than any payload, otherwise
// nlohmann's exceptions.
json ParseLine(const std::string& text)
{
    constexpr int mostLevels = 100;
    std::vector<std::set<std::string>> keys; // of the objects that are open
    const auto inspect = [&keys](int depth, json::parse_event_t event, json& parsed)
    {
        if (depth > mostLevels)
            throw std::runtime_error("has more than " + std::to_string(mostLevels) + " levels");
        if (event == json::parse_event_t::object_start)
            keys.emplace_back();
        else if (event == json::parse_event_t::object_end)
            keys.pop_back();
        else if (event == json::parse_event_t::key && !keys.back().insert(parsed.get<std::string>()).second)
            throw std::runtime_error("has the key " + JsonTextOf(parsed) + " twice in one object");
        return true;
    };
    return json::parse(text, inspect);
}

// Whether the payload has the event's type, component type and name, except a name that the caller gives.
bool HasMarksOf(const DocumentEvent& event, const json& payload)
{
    const auto marks = {"type", "component_type", "component_name"};
    const auto isAsInTheEvent = [&event, &payload](const char* mark)
    {
        const DocumentKey* const key = FindKey(event, "", mark);
        if (key == nullptr)
            return !payload.contains(mark);
        return key->kind != "fixed" || payload.value(mark, json()) == key->fixed;
    };
    return std::all_of(marks.begin(), marks.end(), isAsInTheEvent);
}

// How many of the event's keys the payload has, or only of the attributes among them.
std::size_t KeysOf(const DocumentEvent& event, const json& payload, bool onlyAttributes)
{
    const auto isThere = [&payload, onlyAttributes](const DocumentKey& key)
    {
        if (key.place.empty())
            return !onlyAttributes && payload.contains(key.name);
        return payload.contains(key.place) && payload[key.place].contains(key.name);
    };
    return static_cast<std::size_t>(std::count_if(event.keys.begin(), event.keys.end(), isThere));
}

std::string UnknownEvent(const json& payload)
{
    const auto textOf = [&payload](const char* key)
    { return payload.contains(key) ? JsonTextOf(payload[key]) : "none"; };
    if (payload.value("component_type", json()) == "waypoint" && payload.contains("component_name"))
        return "is a waypoint whose name no event has, " + textOf("component_name");
    return "is of no event: its type is " + textOf("type") + ", its component type " + textOf("component_type") +
           " and its name " + textOf("component_name");
}

// Judges the payload as the event that it fits best, or as each of several.
CapturedPayload JudgePayload(const Document& document, const Judge& judge, const json& payload)
{
    using Candidate = std::pair<std::string, Findings>; // an event's method, and the payload judged as that event
    // A name of the event's own counts more than the absence of faults, and that more than the number of its keys.
    std::map<std::tuple<bool, bool, std::size_t>, std::vector<Candidate>> candidates;
    for (const DocumentEvent& event : document.events)
    {
        if (!HasMarksOf(event, payload) || (event.nameFrom && KeysOf(event, payload, true) == 0))
            continue;
        const Findings findings = judge.OfCaptured(event, payload);
        candidates[{!event.nameFrom, findings.Messages().empty(), KeysOf(event, payload, false)}].push_back(
            {event.method, findings});
    }
    CapturedPayload judged;
    if (candidates.empty())
    {
        judged.faults = {UnknownEvent(payload)};
        return judged;
    }
    const std::vector<Candidate>& best = candidates.rbegin()->second;
    for (const auto& [method, findings] : best)
    {
        judged.methods.push_back(method);
        judged.remarks = findings.remarks;
        const std::string head = best.size() > 1 ? "as " + method + ", " : "";
        for (const std::string& fault : findings.Messages())
            judged.faults.push_back(head + fault);
    }
    return judged;
}

CapturedPayload JudgeLine(const Document& document, const Judge& judge, const std::string& line)
{
    try
    {
        const json payload = ParseLine(line);
        if (payload.is_object())
            return JudgePayload(document, judge, payload);
        return {0, {}, {"is no object: " + JsonTextOf(payload)}, {}};
    }
    catch (const json::parse_error& error)
    {
        const std::string where =
            error.byte > line.size() ? "it ends within it" : "it is wrong at byte " + std::to_string(error.byte);
        return {0, {}, {"is no JSON text: " + where}, {}};
    }
    catch (const json::out_of_range&)
    {
        return {0, {}, {"has a number that is too large"}, {}};
    }
    catch (const std::runtime_error& refusal)
    {
        return {0, {}, {refusal.what()}, {}};
    }
}

} // namespace

CapturedOutcome JudgeCapturedLines(const Document& document, const Judge& judge, bool isStrict, std::istream& input,
                                   const std::function<void(const CapturedPayload&)>& onPayload)
{
    CapturedOutcome outcome;
    for (const DocumentEvent& event : document.events)
        outcome.events[event.method] = 0;
    std::size_t number = 0;
    for (std::string line; std::getline(input, line);)
    {
        ++number;
        if (line.find_first_not_of(" \t\r") == std::string::npos)
            continue;
        CapturedPayload payload = JudgeLine(document, judge, line);
        payload.line = number;
        if (isStrict)
            payload.faults.insert(payload.faults.end(), payload.remarks.begin(), payload.remarks.end());
        ++(payload.faults.empty() ? outcome.good : outcome.bad);
        for (const std::string& method : payload.methods)
            ++outcome.events[method];
        for (const std::string& remark : payload.remarks)
            ++outcome.remarks[remark];
        onPayload(payload);
    }
    return outcome;
}

std::string CapturedText(const CapturedPayload& payload)
{
    std::string text = "line " + std::to_string(payload.line) + (payload.faults.empty() ? ": good" : ": bad");
    if (!payload.methods.empty())
        text += ", " + JoinedBy(" or ", payload.methods);
    text += "\n";
    for (const std::string& fault : payload.faults)
        text += "    " + fault + "\n";
    return text;
}

std::string CapturedClosingText(const CapturedOutcome& outcome)
{
    std::string came;
    std::string never;
    for (const auto& [method, count] : outcome.events)
    {
        if (count != 0)
            came += "    " + method + ": " + std::to_string(count) + "\n";
        else
            never += "    " + method + "\n";
    }
    std::string text =
        (came.empty() ? "" : "\nCame:\n" + came) + (never.empty() ? "" : "\nNever came:\n" + never) + "\n";
    for (const auto& [message, count] : outcome.remarks)
        text += "REMARK  " + message + ": " + CountOf(count, "payload") + "\n";
    return text + std::to_string(outcome.good) + " good, " + std::to_string(outcome.bad) + " bad\n";
}

std::string CapturedJson(const CapturedOutcome& outcome, const std::vector<CapturedPayload>& payloads,
                         const Document& document, bool isStrict)
{
    OrderedJson list = OrderedJson::array();
    for (const CapturedPayload& payload : payloads)
        list.push_back({{"line", payload.line},
                        {"methods", payload.methods},
                        {"verdict", payload.faults.empty() ? "good" : "bad"},
                        {"faults", payload.faults},
                        {"remarks", payload.remarks}});
    const OrderedJson report = {{"document", {{"version", document.version}}},
                                {"strict", isStrict},
                                {"payloads", list},
                                {"events", outcome.events},
                                {"summary", {{"good", outcome.good}, {"bad", outcome.bad}}}};
    return report.dump(2) + "\n";
}

} // namespace Corvane
