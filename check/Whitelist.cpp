#include <check/Whitelist.h>

#include <vector>

#include <nlohmann/json.hpp>

#include <check/Text.h>

namespace Corvane
{

namespace
{

using OrderedJson = nlohmann::ordered_json;

OrderedJson Whitelist(const Document& document)
{
    OrderedJson list = OrderedJson::array();
    for (const DocumentEvent& event : document.events)
    {
        OrderedJson attributes = OrderedJson::array();
        for (const DocumentKey& key : event.keys)
        {
            if (!key.place.empty())
                attributes.push_back({{"object", key.place}, {"key", key.name}});
        }
        const std::string from = event.nameFrom ? event.parameters.at(*event.nameFrom) : "";
        for (const std::string& name : event.nameFrom ? event.names : std::vector<std::string>{event.name.value_or("")})
            list.push_back({{"method", event.method},
                            {"waypoint", TextOrNull(name)},
                            {"name_from", TextOrNull(from)},
                            {"type", event.type},
                            {"attributes", attributes}});
    }
    return list;
}

} // namespace

std::string WhitelistAsJson(const Document& document)
{
    return Whitelist(document).dump(2) + "\n";
}

std::string WhitelistAsCsv(const Document& document)
{
    const auto text = [](const OrderedJson& value) { return value.is_null() ? "" : value.get<std::string>(); };
    std::string csv = "method,waypoint,name_from,type,object,attribute\r\n";
    for (const OrderedJson& event : Whitelist(document))
    {
        const std::string common = text(event["method"]) + "," + text(event["waypoint"]) + "," +
                                   text(event["name_from"]) + "," + text(event["type"]) + ",";
        for (const OrderedJson& attribute : event["attributes"])
            csv += common + text(attribute["object"]) + "," + text(attribute["key"]) + "\r\n";
        if (event["attributes"].empty())
            csv += common + ",\r\n";
    }
    return csv;
}

} // namespace Corvane
