// What docs/events.json says of each event's payload. The document is compiled into the program.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace Corvane
{

// A key of a payload.
struct DocumentKey
{
    std::string name;
    std::string place;          // the object that holds it; empty: it is at the payload's top level
    std::string type;           // "string" or "integer"
    std::string parameter;      // of the reporting method, where the value comes from one
    bool isByTypeAlone = false; // the product file's text or the edit timer's number: any value of the type will do
    bool isTheLibrarys = false; // the edit timer: not the wrapper but the library writes it, or not
    nlohmann::json expected;    // what the catalogue's call sends; null when it leaves the key out
};

struct DocumentEvent
{
    std::string test; // its name in the catalogue
    std::string method;
    std::optional<std::string> waypoint; // none where the caller gives the name, and where there is none
    std::optional<std::string> nameFrom; // the parameter that gives the name
    std::string type;
    std::vector<DocumentKey> keys; // those that are in every event first
};

struct Document
{
    std::string version;
    std::vector<DocumentEvent> events;
};

// Throws nlohmann::json::exception when the text is no such document.
Document ReadDocument(std::string_view text);

// The document's text, as it is in the sources.
std::string_view CompiledInDocument();

// Null when the document has no event of that test.
const DocumentEvent* FindEvent(const Document& document, const std::string& test);

// The event as it is sent with other arguments: `arguments` has a value for each parameter that changes. A number that
// is sent as text is made text.
DocumentEvent WithArguments(DocumentEvent event, const nlohmann::json& arguments);

} // namespace Corvane
