#include "Reference.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include <harness/Catalogue.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/FacetFields.h>

#include "Header.h"
#include "Probe.h"
#include "Recording.h"
#include "Text.h"
#include "VocabularySource.h"

using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

using Payloads = std::map<std::string, JsonValue>; // by method

const auto& Find(const auto& items, const std::string& name)
{
    const auto found =
        std::find_if(items.begin(), items.end(), [&name](const auto& item) { return item.name == name; });
    if (found == items.end())
        throw std::runtime_error("no reporting method is called " + name);
    return *found;
}

bool Has(const auto& items, const std::string& name)
{
    return std::any_of(items.begin(), items.end(), [&name](const auto& item) { return item.name == name; });
}

// What the test program sends, told apart by the titles that it prints.
Payloads CataloguePayloads(const std::vector<ProbedMethod>& methods)
{
    Recording recording = Record(
        []
        {
            TestResultList results;
            RunTests(results);
        });
    // The last test registers a callback of its own; its document can be sent once more.
    const Recording document = Record([] { CorvaneTavi::Instance().StartTrackFileChange(L"fileName1"); });
    recording.payloads.insert(recording.payloads.end(), document.payloads.begin(), document.payloads.end());

    Payloads payloads;
    std::istringstream lines(recording.output);
    for (std::string line; std::getline(lines, line);)
    {
        const std::string opening = "Testing ";
        if (!line.starts_with(opening))
            continue;
        const std::string title = line.substr(opening.size());
        const std::string method = Has(methods, title) ? title : "Track" + title;
        payloads[Find(methods, method).name] = recording.payloads.at(payloads.size());
    }
    return payloads;
}

std::string TypeOf(const std::string& json, Kind kind)
{
    if (!json.starts_with('"'))
        return "integer";
    switch (kind)
    {
    case Kind::Flag:
        return "flag as text";
    case Kind::Integer:
        return "integer as text";
    case Kind::Decimal:
        return "decimal as text";
    case Kind::Text:
        break;
    }
    return "text";
}

Field MakeField(const Leaf& leaf, const ProbedMethod& method, const Declaration& parametersOf)
{
    const auto sameLeaf = [&leaf](const auto& other) { return leaf.SamePlace(other); };
    if (std::none_of(method.leaves.begin(), method.leaves.end(), sameLeaf))
        throw std::runtime_error(method.name + " sends " + leaf.key + " for some arguments only");
    const auto origin = std::find_if(method.origins.begin(), method.origins.end(),
                                     [&sameLeaf](const Origin& candidate) { return sameLeaf(candidate.leaf); });
    const bool isFixed = origin == method.origins.end();
    return {leaf.object,
            leaf.key,
            TypeOf(leaf.json, isFixed ? Kind::Text : origin->kind),
            isFixed ? "" : parametersOf.parameters.at(origin->parameter),
            leaf.IsEditTimer(),
            leaf.json};
}

std::string WithoutQuotes(const std::string& json)
{
    return json.substr(1, json.size() - 2);
}

std::string Indented(const JsonValue& value, const std::string& indent)
{
    const JsonValue keys = value.GetKeyList();
    if (keys.GetCount() == 0)
        return Json(value);
    const std::string deeper = indent + "    ";
    std::string text;
    for (int i = 0; i < keys.GetCount(); ++i)
        text += (i == 0 ? "{\n" : ",\n") + deeper + Json(keys[i]) + ": " + Indented(value[TextValue(keys[i])], deeper);
    return text + "\n" + indent + "}";
}

Event MakeEvent(const ProbedMethod& method, const JsonValue& payload, const std::vector<Declaration>& declarations)
{
    const Declaration& parametersOf = Find(declarations, method.takesParametersOf);
    Event event;
    event.method = method.name;
    event.signatures = {Find(declarations, method.name).signature};
    if (parametersOf.name != method.name)
        event.signatures.insert(event.signatures.begin(), parametersOf.signature);
    for (const Leaf& leaf : LeavesOf(payload))
    {
        const Field field = MakeField(leaf, method, parametersOf);
        if (field.key == Corvane::FacetFields::type)
        {
            event.type = WithoutQuotes(field.example);
        }
        else if (field.key == Corvane::FacetFields::scope)
        {
            event.scope = WithoutQuotes(field.example);
        }
        else if (field.key == Corvane::FacetFields::component_name)
        {
            event.name = WithoutQuotes(field.example);
            event.nameFrom = field.from;
        }
        else
        {
            event.fields.push_back(field);
        }
    }
    event.payload = Indented(payload, "");
    return event;
}

// Whether `field` is among `fields`, with the same value and not from a parameter.
bool IsIn(const std::vector<Field>& fields, const Field& field)
{
    return std::any_of(fields.begin(), fields.end(),
                       [&field](const Field& other)
                       {
                           return other.object == field.object && other.key == field.key && other.from.empty() &&
                                  other.example == field.example;
                       });
}

// Moves the fields that are the same in all events out of the events.
std::vector<Field> TakeCommonFields(std::vector<Group>& groups)
{
    std::vector<Field> common = groups.at(0).events.at(0).fields;
    for (const Group& group : groups)
    {
        for (const Event& event : group.events)
            std::erase_if(common, [&event](const Field& field) { return !IsIn(event.fields, field); });
    }
    for (Group& group : groups)
    {
        for (Event& event : group.events)
            std::erase_if(event.fields, [&common](const Field& field) { return IsIn(common, field); });
    }
    return common;
}

std::vector<UnsentText> UnsentTexts(const std::vector<VocabularyConstant>& vocabulary, const std::vector<Group>& groups)
{
    std::set<std::string> sent;
    std::map<std::string, std::string> givenNames; // the method by the name in its example
    for (const Group& group : groups)
    {
        for (const Event& event : group.events)
        {
            if (event.nameFrom.empty())
                sent.insert(event.name);
            else
                givenNames[event.name] = event.method;
            for (const Field& field : event.fields)
                sent.insert(field.key);
        }
    }
    std::vector<UnsentText> unsent;
    for (const VocabularyConstant& constant : vocabulary)
    {
        if (!sent.contains(constant.text))
            unsent.push_back({constant.text, givenNames[constant.text]});
    }
    return unsent;
}

} // namespace

Reference MakeReference(const std::string& wrapperHeader, const std::string& vocabularyHeader)
{
    const std::vector<Declaration> declarations = ReadMethods(wrapperHeader);
    const std::vector<ProbedMethod> methods = ProbeMethods();
    const Payloads payloads = CataloguePayloads(methods);

    Reference reference;
    for (const Declaration& declaration : declarations)
    {
        const bool prepares =
            std::ranges::find(methods, declaration.name, &ProbedMethod::takesParametersOf) != methods.end();
        const bool reports = Has(methods, declaration.name);
        if (!prepares && !reports)
            continue;
        if (reference.groups.empty() || reference.groups.back().heading != declaration.heading)
            reference.groups.push_back({declaration.heading, {}, {}});
        Group& group = reference.groups.back();
        if (!declaration.note.empty() && (group.notes.empty() || group.notes.back() != declaration.note))
            group.notes.push_back(declaration.note);
        if (!reports)
            continue;
        if (!payloads.contains(declaration.name))
            throw std::runtime_error(declaration.name + " has no test in harness/Catalogue.cpp");
        group.events.push_back(MakeEvent(Find(methods, declaration.name), payloads.at(declaration.name), declarations));
    }
    reference.common = TakeCommonFields(reference.groups);
    reference.unsent = UnsentTexts(ReadVocabulary(vocabularyHeader), reference.groups);
    return reference;
}
