#include "Mutants.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <set>
#include <utility>

#include "CatalogueModel.h"

using nlohmann::json;
using Path = json::json_pointer;

namespace
{

// One text at `leaf`, which stands in an object beside others.
void AddLeafMutants(std::vector<Mutant>& mutants, std::size_t test, const json& payload, const Path& leaf)
{
    const Path parent = leaf.parent_pointer();
    const std::string& key = leaf.back();
    const std::string text = payload.at(leaf);
    const auto add = [&](const std::string& what, const json& value)
    {
        json changed = payload;
        changed[leaf] = value;
        mutants.push_back({test, leaf.to_string() + " " + what, std::move(changed), false});
    };
    add("changed at its end", text + "x");
    add("changed at its start", "x" + text);
    if (!text.empty())
    {
        std::string otherCase = text;
        const auto letter =
            std::find_if(otherCase.begin(), otherCase.end(), [](unsigned char c) { return std::isalpha(c); });
        if (letter != otherCase.end())
        {
            *letter = static_cast<char>(*letter ^ 0x20);
            add("in other case", otherCase);
        }
        add("emptied", "");
    }
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    add("as integer", isNumber && !text.empty() ? json::parse(text) : json(0));
    add("as boolean", text == "True");
    add("as null", nullptr);
    add("as empty object", json::object());
    add("as object", {{key, text}});
    add("as array", json::array({text}));
    add("as empty array", json::array());

    json removed = payload;
    removed.at(parent).erase(key);
    mutants.push_back({test, leaf.to_string() + " removed", removed, false});
    json moved = removed;
    moved[parent / (key + ".MOVED")] = text;
    mutants.push_back({test, leaf.to_string() + " moved to a new sibling", std::move(moved), false});
    for (const auto& [sibling, value] : payload.at(parent).items())
    {
        if (sibling == key || !value.is_string() || value == text)
            continue;
        json swapped = payload;
        swapped[leaf] = value;
        swapped[parent / sibling] = text;
        mutants.push_back({test, leaf.to_string() + " swapped with " + sibling, std::move(swapped), false});
    }
}

void AddObjectMutants(std::vector<Mutant>& mutants, std::size_t test, const CatalogueTest& catalogueTest,
                      const std::string& key)
{
    const Path path = Path() / key;
    const json& payload = catalogueTest.payload;
    const auto add = [&](const std::string& what, const json& value, bool mustPass = false)
    {
        json changed = payload;
        changed[path] = value;
        mutants.push_back({test, path.to_string() + " " + what, std::move(changed), mustPass});
    };
    for (const json& scalar : {json("text"), json(""), json(1), json(true), json(false), json()})
        add("replaced by " + scalar.dump(), scalar);
    add("replaced by its text", payload.at(path).dump());
    add("replaced by an empty object", json::object());
    add("replaced by an array", json::array({"text"}));

    json more = payload.at(path);
    more["COMMON.NOT_EXPECTED"] = "more";
    // Of a document only four members are compared.
    add("with one more member", more, catalogueTest.isDocument);

    json removed = payload;
    removed.erase(key);
    mutants.push_back({test, path.to_string() + " removed", std::move(removed), false});
}

// Changes of what no expectation compares: they must pass.
void AddHarmlessMutants(std::vector<Mutant>& mutants, std::size_t test, const CatalogueTest& catalogueTest)
{
    const json& payload = catalogueTest.payload;
    json more = payload;
    more["a_further_key"] = {{"of", "any"}, {"kind", 1}};
    mutants.push_back({test, "a further key", std::move(more), true});
    for (const auto& [key, value] : payload.items())
    {
        if (catalogueTest.expected.contains(key))
            continue;
        json changed = payload;
        changed[key] = {{"changed", true}};
        mutants.push_back({test, "/" + key + ", not expected, changed", std::move(changed), true});
        json removed = payload;
        removed.erase(key);
        mutants.push_back({test, "/" + key + ", not expected, removed", std::move(removed), true});
    }
}

// One integer at the top level of the payload.
void AddIntegerMutants(std::vector<Mutant>& mutants, std::size_t test, const json& payload, const std::string& key)
{
    const std::int64_t value = payload.at(key);
    const auto add = [&](const std::string& what, const json& changedValue)
    {
        json changed = payload;
        changed[key] = changedValue;
        mutants.push_back({test, "/" + key + " " + what, std::move(changed), false});
    };
    add("greater by one", value + 1);
    add("negative", -1 - value);
    add("as text", std::to_string(value));
    add("with decimals", static_cast<double>(value) + 0.5);
    add("as boolean", value != 0);
    add("as null", nullptr);
    add("as array", json::array({value}));
    add("as object", {{key, value}});
    json removed = payload;
    removed.erase(key);
    mutants.push_back({test, "/" + key + " removed", std::move(removed), false});
}

// Other spellings of the number or flag that the text at `leaf` may be.
void AddSpellingMutants(std::vector<Mutant>& mutants, std::size_t test, const json& payload, const Path& leaf)
{
    const std::string text = payload.at(leaf);
    for (const std::string& other :
         {"0" + text, "-" + text, "+" + text, text + ".5", text + "\n", " " + text, std::string("0"), std::string("-0"),
          std::string("True"), std::string("False"), std::string("true")})
    {
        json changed = payload;
        changed[leaf] = other;
        mutants.push_back({test, leaf.to_string() + " as " + json(other).dump(), std::move(changed), false});
    }
}

// Some mutants are equal (two members swapped from either side), and some are the right payload.
void DropUseless(std::vector<Mutant>& mutants)
{
    std::set<std::pair<std::size_t, std::string>> seen;
    const auto isOfNoUse = [&seen](const Mutant& mutant)
    {
        const bool isRight = mutant.payload == TheCatalogue()[mutant.test].payload;
        return isRight || !seen.insert({mutant.test, mutant.payload.dump()}).second;
    };
    std::erase_if(mutants, isOfNoUse);
}

} // namespace

std::vector<Mutant> MutantsOfExpectations()
{
    std::vector<Mutant> mutants;
    const std::vector<CatalogueTest>& tests = TheCatalogue();
    for (std::size_t test = 0; test < tests.size(); ++test)
    {
        for (const auto& [key, expected] : tests[test].expected.items())
        {
            const Path path = Path() / key;
            if (!expected.is_object())
            {
                AddLeafMutants(mutants, test, tests[test].payload, path);
                continue;
            }
            for (const auto& [member, value] : expected.items())
                AddLeafMutants(mutants, test, tests[test].payload, path / member);
            AddObjectMutants(mutants, test, tests[test], key);
        }
        AddHarmlessMutants(mutants, test, tests[test]);
    }
    DropUseless(mutants);
    return mutants;
}

std::vector<Mutant> FurtherMutants()
{
    std::vector<Mutant> mutants;
    const std::vector<CatalogueTest>& tests = TheCatalogue();
    for (std::size_t test = 0; test < tests.size(); ++test)
    {
        const json& payload = tests[test].payload;
        for (const auto& [key, value] : payload.items())
        {
            if (value.is_number_integer())
                AddIntegerMutants(mutants, test, payload, key);
            else if (!value.is_object() && !tests[test].expected.contains(key))
                AddLeafMutants(mutants, test, payload, Path() / key);
        }
        const json leaves = payload.flatten();
        for (const auto& [leaf, value] : leaves.items())
        {
            if (value.is_string())
                AddSpellingMutants(mutants, test, payload, Path(leaf));
        }
        for (const CatalogueTest& other : tests)
            mutants.push_back({test, "replaced by that of \"" + other.title + "\"", other.payload, false});
    }
    DropUseless(mutants);
    return mutants;
}
