#include <check/Document.h>

#include <algorithm>
#include <utility>

using nlohmann::json;

namespace Corvane
{

namespace
{

// A text that may be null.
std::optional<std::string> TextOrNone(const json& value)
{
    return value.is_null() ? std::nullopt : std::optional(value.get<std::string>());
}

DocumentKey ReadKey(const json& source, const json& payload)
{
    DocumentKey key;
    key.name = source.at("key");
    key.place = TextOrNone(source.at("place")).value_or("");
    key.type = source.at("type");
    key.parameter = TextOrNone(source.at("from")).value_or("");
    key.isTheLibrarys = source.at("measured");
    key.isByTypeAlone = key.isTheLibrarys || source.at("kind") == "product";
    const json& object = key.place.empty() ? payload : payload.at(key.place);
    // In this call it may be one that is left out.
    key.expected = source.at("unless").is_null() ? object.at(key.name) : object.value(key.name, json());
    return key;
}

DocumentEvent ReadEvent(const json& source, const json& commonKeys)
{
    DocumentEvent event{source.at("test"), source.at("method"),
                        std::nullopt,      TextOrNone(source.at("name_from")),
                        source.at("type"), {}};
    if (!event.nameFrom)
        event.waypoint = TextOrNone(source.at("name"));
    for (const json* const keys : {&commonKeys, &source.at("keys")})
    {
        for (const json& key : *keys)
            event.keys.push_back(ReadKey(key, source.at("payload")));
    }
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

const DocumentEvent* FindEvent(const Document& document, const std::string& test)
{
    const auto found = std::find_if(document.events.begin(), document.events.end(),
                                    [&test](const DocumentEvent& event) { return event.test == test; });
    return found != document.events.end() ? &*found : nullptr;
}

DocumentEvent WithArguments(DocumentEvent event, const json& arguments)
{
    for (DocumentKey& key : event.keys)
    {
        const auto argument = arguments.find(key.parameter);
        if (argument == arguments.end() || key.isByTypeAlone)
            continue;
        const bool isSentAsText = key.type == "string" && !argument->is_string();
        key.expected = isSentAsText ? json(argument->dump()) : *argument;
    }
    return event;
}

} // namespace Corvane
