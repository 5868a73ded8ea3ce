#include <check/Whitelist.h>

#include <initializer_list>
#include <vector>

namespace Corvane
{

namespace
{

using OrderedJson = nlohmann::ordered_json;

OrderedJson TextOrNull(const std::string& text)
{
    return text.empty() ? OrderedJson() : OrderedJson(text);
}

// All that are known; an empty one for an event without a name.
std::vector<std::string> NamesOf(const DocumentEvent& event)
{
    return event.nameFrom ? event.names : std::vector<std::string>{event.name.value_or("")};
}

// The parameter that gives the name, if any.
std::string NameFrom(const DocumentEvent& event)
{
    return event.nameFrom ? event.parameters.at(*event.nameFrom) : "";
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
        for (const std::string& name : NamesOf(event))
            list.push_back({{"method", event.method},
                            {"waypoint", TextOrNull(name)},
                            {"name_from", TextOrNull(NameFrom(event))},
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
        for (const std::string& name : NamesOf(event))
        {
            const auto add = [&](const std::string& object, const std::string& attribute) {
                text += CsvLine({event.method, name, NameFrom(event), event.type, object, attribute});
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
    }
    return text;
}

} // namespace Corvane
