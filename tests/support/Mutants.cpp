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

// Of an expected object every member is compared; of a document's only those that are expected.
bool IsCompared(const CatalogueTest& test, const Path& place)
{
    const bool isMember = !place.parent_pointer().empty();
    const Path top = isMember ? place.parent_pointer() : place;
    return test.expected.contains(isMember && test.isDocument ? place : top);
}

// Other values for a member.
std::vector<json> OtherValues(const std::string& key, const json& value)
{
    std::vector<json> others = {nullptr,
                                true,
                                false,
                                0,
                                "",
                                "text",
                                value.dump(),
                                json::array(),
                                json::array({"text"}),
                                json::object(),
                                json::object({{key, value}})};
    if (value.is_number_integer())
    {
        const std::int64_t number = value;
        others.insert(others.end(), {number + 1, -1 - number});
    }
    if (value.is_string())
    {
        const std::string text = value;
        for (const std::string& other : {text + "x", "x" + text, "0" + text, "-" + text, "+" + text, text + ".5",
                                         text + "\n", " " + text, std::string("True"), std::string("False")})
            others.emplace_back(other);
        std::string otherCase = text;
        const auto letter =
            std::find_if(otherCase.begin(), otherCase.end(), [](unsigned char c) { return std::isalpha(c); });
        if (letter != otherCase.end())
        {
            *letter = static_cast<char>(*letter ^ 0x20);
            others.emplace_back(otherCase);
        }
        if (!text.empty() && text.find_first_not_of("0123456789") == std::string::npos)
            others.push_back(json::parse(text));
    }
    return others;
}

class Mutator
{
public:
    explicit Mutator(std::size_t testNumber) : number(testNumber), test(TheCatalogue()[testNumber]) {}

    std::vector<Mutant> All()
    {
        ChangeMembers(Path());
        for (const auto& [key, value] : test.payload.items())
        {
            if (value.is_object())
                ChangeMembers(Path() / key);
        }
        return std::move(mutants);
    }

private:
    // Some are equal, as two members that are swapped from either side, and some are the right payload.
    void Add(const Path& place, const std::string& what, const json& payload, bool isCompared)
    {
        if (payload != test.payload && payloads.insert(payload.dump()).second)
            mutants.push_back({number, place.to_string() + " " + what, payload, !isCompared});
    }

    void ChangeMembers(const Path& parent)
    {
        json more = test.payload;
        more[parent / "COMMON.NOT_EXPECTED"] = "more";
        Add(parent / "COMMON.NOT_EXPECTED", "added", more, IsCompared(test, parent / "COMMON.NOT_EXPECTED"));
        for (const auto& [key, value] : test.payload.at(parent).items())
        {
            const Path place = parent / key;
            const bool isCompared = IsCompared(test, place);
            for (const json& other : OtherValues(key, value))
            {
                json changed = test.payload;
                changed[place] = other;
                Add(place, "as " + other.dump(), changed, isCompared);
            }
            json moved = test.payload;
            moved.at(parent).erase(key);
            Add(place, "removed", moved, isCompared);
            moved[parent / (key + ".MOVED")] = value;
            Add(place, "moved to a new sibling", moved, isCompared);
            for (const auto& [sibling, siblingsValue] : test.payload.at(parent).items())
            {
                json swapped = test.payload;
                swapped[place] = siblingsValue;
                swapped[parent / sibling] = value;
                Add(place, "swapped with " + sibling, swapped, isCompared || IsCompared(test, parent / sibling));
            }
        }
    }

    std::size_t number;
    const CatalogueTest& test;
    std::set<std::string> payloads;
    std::vector<Mutant> mutants;
};

} // namespace

std::vector<Mutant> Mutants()
{
    std::vector<Mutant> mutants;
    for (std::size_t test = 0; test < TheCatalogue().size(); ++test)
    {
        for (Mutant& mutant : Mutator(test).All())
            mutants.push_back(std::move(mutant));
    }
    return mutants;
}
