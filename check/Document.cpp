#include <check/Document.h>

#include <algorithm>

using nlohmann::json;

namespace Corvane
{

namespace
{

std::string TextOrEmpty(const json& value)
{
    return value.is_null() ? "" : value.get<std::string>();
}

DocumentKey ReadKey(const json& source, const std::vector<std::string>& parameters)
{
    DocumentKey key;
    key.name = source.at("key");
    key.place = TextOrEmpty(source.at("place"));
    key.type = source.at("type");
    key.kind = source.at("kind");
    key.format = TextOrEmpty(source.at("format"));
    key.writtenByLibrary = source.at("written_by_library");
    const std::string from = TextOrEmpty(source.at("from"));
    const auto parameter = std::find(parameters.begin(), parameters.end(), from);
    if (key.kind == "fixed")
        key.fixed = source.at("example");
    else if (key.kind == "product")
        key.level = from;
    else if (parameter != parameters.end())
        key.parameter = static_cast<std::size_t>(parameter - parameters.begin());
    if (const json& unless = source.at("unless"); !unless.is_null())
        key.leftOut = LeftOut{TextOrEmpty(unless.at("place")), unless.at("key"), unless.at("value")};
    return key;
}

DocumentEvent ReadEvent(const json& source, const json& commonKeys)
{
    DocumentEvent event;
    event.method = source.at("method");
    event.names = source.at("names");
    event.parameters = source.at("parameters");
    event.type = source.at("type");
    for (const json& common : commonKeys)
    {
        event.keys.push_back(ReadKey(common, {}));
        event.keys.back().isOfTheProduct = true;
    }
    for (const json& key : source.at("keys"))
        event.keys.push_back(ReadKey(key, event.parameters));
    const DocumentKey* const name = FindKey(event, "", "component_name");
    if (name == nullptr)
        return event;
    event.nameFrom = name->parameter;
    if (!event.nameFrom)
        event.name = name->fixed;
    return event;
}

} // namespace

Document ReadDocument(std::string_view text)
{
    const json source = json::parse(text);
    Document document{source.at("version"), {}};
    for (const json& group : source.at("groups"))
    {
        for (const json& event : group.at("events"))
            document.events.push_back(ReadEvent(event, source.at("common")));
    }
    return document;
}

const DocumentEvent* FindEvent(const Document& document, const std::string& method)
{
    const auto found = std::find_if(document.events.begin(), document.events.end(),
                                    [&method](const DocumentEvent& event) { return event.method == method; });
    return found != document.events.end() ? &*found : nullptr;
}

const DocumentKey* FindKey(const DocumentEvent& event, const std::string& place, const std::string& name)
{
    const auto found = std::find_if(event.keys.begin(), event.keys.end(),
                                    [&](const DocumentKey& key) { return key.place == place && key.name == name; });
    return found != event.keys.end() ? &*found : nullptr;
}

} // namespace Corvane
