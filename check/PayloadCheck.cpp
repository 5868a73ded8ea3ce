#include <check/PayloadCheck.h>

#include <algorithm>
#include <set>

using nlohmann::json;

namespace Corvane
{

namespace
{

bool HasType(const json& value, const std::string& type)
{
    return type == "integer" ? value.is_number_integer() : value.is_string();
}

std::string WithArticle(const std::string& type)
{
    return (type == "integer" ? "an " : "a ") + type;
}

class Comparison
{
public:
    Comparison(const json& comparedPayload, const DocumentEvent& comparedEvent)
        : payload(comparedPayload), event(comparedEvent)
    {
    }

    PayloadFindings Findings()
    {
        for (const DocumentKey& key : event.keys)
        {
            if (key.place.empty())
                Compare(key, payload, "");
            else if (seenPlaces.insert(key.place).second)
                CompareObject(key.place);
        }
        for (const auto& [key, value] : payload.items())
        {
            if (!seenPlaces.contains(key) && !Has(key, ""))
                findings.furtherKeys.push_back(key);
        }
        return findings;
    }

private:
    // Whether the call sends such a key.
    bool Has(const std::string& name, const std::string& place) const
    {
        return std::any_of(event.keys.begin(), event.keys.end(),
                           [&](const DocumentKey& key)
                           { return key.name == name && key.place == place && !key.expected.is_null(); });
    }

    void CompareObject(const std::string& place)
    {
        const auto object = payload.find(place);
        if (object == payload.end() || !object->is_object())
        {
            AddFault(place, "an object", object != payload.end() ? &*object : nullptr);
            return;
        }
        const std::string where = place + ": ";
        for (const DocumentKey& key : event.keys)
        {
            if (key.place == place)
                Compare(key, *object, where);
        }
        for (const auto& [member, value] : object->items())
        {
            if (!Has(member, place))
                findings.faults.push_back(where + member + " is not expected");
        }
    }

    void Compare(const DocumentKey& key, const json& object, const std::string& where)
    {
        if (key.expected.is_null())
            return;
        const auto sent = object.find(key.name);
        if (sent == object.end() && key.isTheLibrarys)
        {
            findings.unsentKeys.push_back(key.name);
            return;
        }
        const bool isRight =
            sent != object.end() && HasType(*sent, key.type) && (key.isByTypeAlone || *sent == key.expected);
        if (!isRight)
            AddFault(where + key.name, key.isByTypeAlone ? WithArticle(key.type) : JsonTextOf(key.expected),
                     sent != object.end() ? &*sent : nullptr);
    }

    void AddFault(const std::string& where, const std::string& expected, const json* sent)
    {
        findings.faults.push_back(where + ": expected " + expected + ", " +
                                  (sent != nullptr ? "sent " + JsonTextOf(*sent) : "not sent"));
    }

    const json& payload;
    const DocumentEvent& event;
    std::set<std::string> seenPlaces;
    PayloadFindings findings;
};

} // namespace

PayloadFindings CheckPayload(const json& payload, const DocumentEvent& event)
{
    if (payload.is_null())
    {
        return {{"the payload is null: the whitelist may not have been downloaded, may have expired, or may lack the "
                 "waypoint or an attribute"},
                {},
                {}};
    }
    if (!payload.is_object())
        return {{"the payload is no object: " + JsonTextOf(payload)}, {}, {}};
    return Comparison(payload, event).Findings();
}

std::string JsonTextOf(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace Corvane
