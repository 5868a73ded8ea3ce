// The payload of each event, as docs/events.json describes it. The document is compiled into the program.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace Corvane
{

// A key is left out while another one, a number that is sent as text, has this value.
struct LeftOut
{
    std::string place;
    std::string key;
    std::string value;
};

// A key of a payload.
// NOLINTNEXTLINE(bugprone-exception-escape): moving a JSON value does not throw
struct DocumentKey
{
    std::string name;
    std::string place;                    // the object that holds it; empty: it is at the payload's top level
    std::string type;                     // "string" or "integer"
    std::string kind;                     // "fixed", "text", "flag", "number" or "product"
    std::string format;                   // of a number: "signed", "unsigned" or "decimal"
    std::string level;                    // of the product file, when the value comes from a level
    nlohmann::json fixed;                 // the value of a fixed key
    std::optional<std::size_t> parameter; // counted from 0, when the value comes from a parameter
    std::optional<LeftOut> leftOut;
    bool writtenByLibrary = false; // the edit timer
    bool isOfTheProduct = false;   // part of the host product's description, in every payload
};

struct DocumentEvent
{
    std::string method;
    std::optional<std::string> name;     // the waypoint's; absent if the caller gives the name or there is none
    std::optional<std::size_t> nameFrom; // the parameter that gives the name, counted from 0
    std::vector<std::string> names;      // known names that a caller gives
    std::vector<std::string> parameters;
    std::string type;
    std::vector<DocumentKey> keys; // those of the product's description first
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

// Null when the document has no event of that method.
const DocumentEvent* FindEvent(const Document& document, const std::string& method);

// Null when the event has no such key. `place` is empty for the payload's top level.
const DocumentKey* FindKey(const DocumentEvent& event, const std::string& place, const std::string& name);

} // namespace Corvane
