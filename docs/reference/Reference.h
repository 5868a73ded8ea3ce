// The event reference as data: what each reporting method sends, from payloads that the wrapper really sent.
#pragma once

#include <string>
#include <vector>

struct Field
{
    std::string object; // the key of the object that holds it; empty for the payload itself
    std::string key;
    std::string type; // "text", "integer", "flag as text", "integer as text" or "decimal as text"
    std::string from; // the parameter; empty for what is the same in every such event
    bool measured;    // by the telemetry library
    std::string example;
};

struct Event
{
    std::string method;
    std::vector<std::string> signatures; // its own, after that of the method that prepares it
    std::string name;                    // empty for an event that is told by its type and keys
    std::string nameFrom;                // the parameter; empty for a fixed name
    std::string type;
    std::string scope;
    std::vector<Field> fields; // all but the name, the letters and what every event has
    std::string payload;       // as indented JSON
};

struct Group
{
    std::string heading;
    std::vector<std::string> notes;
    std::vector<Event> events;
};

struct UnsentText
{
    std::string text;
    std::string namedInExampleOf; // a method whose caller gives the name; mostly empty
};

struct Reference
{
    std::vector<Field> common; // the host product's description, the same in every event
    std::vector<Group> groups;
    std::vector<UnsentText> unsent; // what the vocabulary defines and no method sends of itself
};

// Of the sources of CorvaneTavi.h and Vocabulary.h. Throws std::runtime_error when the catalogue and the wrapper's
// methods do not match.
Reference MakeReference(const std::string& wrapperHeader, const std::string& vocabularyHeader);
