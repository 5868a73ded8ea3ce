#include <check/Whitelist.h>

#include <initializer_list>

namespace Corvane
{

namespace
{

using OrderedJson = nlohmann::ordered_json;

OrderedJson TextOrNull(const std::optional<std::string>& text)
{
    return text ? OrderedJson(*text) : OrderedJson();
}

std::string CsvLine(std::initializer_list<std::string> fields)
{
    std::string line;
    for (const std::string& field : fields)
    {
        line += line.empty() ? "" : ",";
        if (field.find_first_of("\",\r\n") == std::string::npos)
        {
            line += field;
            continue;
        }
        line += '"';
        for (const char character : field)
            line.append(character == '"' ? 2 : 1, character);
        line += '"';
    }
    return line + "\r\n";
}

} // namespace

std::string WhitelistAsJson(const Document& document)
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
        list.push_back({{"method", event.method},
                        {"waypoint", TextOrNull(event.waypoint)},
                        {"name_from", TextOrNull(event.nameFrom)},
                        {"type", event.type},
                        {"attributes", attributes}});
    }
    return list.dump(2) + "\n";
}

std::string WhitelistAsCsv(const Document& document)
{
    std::string text = CsvLine({"method", "waypoint", "name_from", "type", "object", "attribute"});
    for (const DocumentEvent& event : document.events)
    {
        const auto add = [&](const std::string& object, const std::string& attribute)
        {
            text += CsvLine({event.method, event.waypoint.value_or(""), event.nameFrom.value_or(""), event.type, object,
                             attribute});
        };
        bool hasAttributes = false;
        for (const DocumentKey& key : event.keys)
        {
            if (key.place.empty())
                continue;
            add(key.place, key.name);
            hasAttributes = true;
        }
        if (!hasAttributes)
            add("", "");
    }
    return text;
}

} // namespace Corvane
