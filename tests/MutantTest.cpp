// Every wrong payload that the rules say must be caught: each is handed to the unmodified program in place of the right
// one, and what the program prints is compared with what the rules say, worked out independently.
//
// The mutants are made from the payloads and the expectations of the catalogue, so that a new test brings its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CatalogueModel.h"
#include "Differences.h"
#include "Program.h"

using nlohmann::json;
using Path = json::json_pointer;

namespace
{

struct Mutant
{
    std::size_t test; // index in the catalogue
    std::string what;
    json payload;
    bool mustPass; // what the rules say of this kind of change, stated where it is made
};

// One expected text at `leaf`, which stands in the object at `parent` beside others.
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

std::vector<Mutant> AllMutants()
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
    // Some mutants are equal (two members swapped from either side), and some are the right payload.
    std::set<std::pair<std::size_t, std::string>> seen;
    const auto isOfNoUse = [&](const Mutant& mutant)
    {
        const bool isRight = mutant.payload == tests[mutant.test].payload;
        return isRight || !seen.insert({mutant.test, mutant.payload.dump()}).second;
    };
    std::erase_if(mutants, isOfNoUse);
    return mutants;
}

// Mutants that are handed to one run of the program, each of another test and all of the same outcome.
using Batch = std::vector<const Mutant*>;

// The first of each test has a run of its own, as it alone decides the run's status. The others share runs.
std::vector<Batch> Batches(const std::vector<Mutant>& mutants)
{
    std::map<std::pair<std::size_t, bool>, std::size_t> ranks; // among those of one test and outcome
    std::map<std::pair<std::size_t, bool>, Batch> shared;      // by rank and outcome
    std::vector<Batch> batches;
    for (const Mutant& mutant : mutants)
    {
        const std::size_t rank = ranks[{mutant.test, mutant.mustPass}]++;
        if (rank == 0)
            batches.push_back({&mutant});
        else
            shared[{rank, mutant.mustPass}].push_back(&mutant);
    }
    for (auto& [rank, batch] : shared)
        batches.push_back(std::move(batch));
    return batches;
}

// Empty when the program judges each as the rules say; otherwise what is wrong.
std::string Fault(const ProgramCopy& copy, const Batch& batch)
{
    std::map<const CatalogueTest*, std::string> judgements;
    json script;
    bool passes = true;
    for (const Mutant* const mutant : batch)
    {
        const CatalogueTest& mutated = TheCatalogue()[mutant->test];
        const std::string judgement = ExpectedJudgement(mutated, mutant->payload);
        passes = judgement == "PASSED\n";
        if (passes != mutant->mustPass)
            return "the model lets " + mutant->what + (passes ? " pass" : " fail");
        judgements[&mutated] = judgement;
        script["TrackEvent"][std::to_string(mutant->test + 1)] = {{"payload", mutant->payload}};
    }

    const Outcome outcome = copy.Run(script.dump());
    const auto body = [&judgements](const CatalogueTest& test)
    {
        const auto found = judgements.find(&test);
        return found != judgements.end() ? found->second : std::string("PASSED\n");
    };
    const std::string expected = WholeRun(body, passes);
    if (outcome.output != expected)
        return TextDifference(expected, outcome.output);
    if (outcome.status != (passes ? 0 : 1))
        return "exit status " + std::to_string(outcome.status);
    return outcome.errors;
}

// What is wrong with those of the batch that are judged wrongly, each in a run of its own when they share one.
std::map<const Mutant*, std::string> Faults(const ProgramCopy& copy, const Batch& batch)
{
    std::map<const Mutant*, std::string> faults;
    const std::string fault = Fault(copy, batch);
    if (fault.empty())
        return faults;
    if (batch.size() > 1)
    {
        for (const Mutant* const mutant : batch)
        {
            const std::string own = Fault(copy, {mutant});
            if (!own.empty())
                faults[mutant] = own;
        }
    }
    if (faults.empty())
        faults[batch.front()] = fault;
    return faults;
}

} // namespace

TEST(Mutant, EveryMutantIsJudgedAsTheRulesSay)
{
    const std::vector<Mutant> mutants = AllMutants();
    const std::vector<Batch> batches = Batches(mutants);
    std::atomic<std::size_t> next = 0;
    std::map<const Mutant*, std::string> wrong;
    std::mutex collecting;
    // A program file that is still open for writing when another worker starts a process cannot be run: all copies are
    // made before the first run.
    const std::vector<ProgramCopy> copies(std::max(1U, std::thread::hardware_concurrency()));
    const auto work = [&](const ProgramCopy& copy)
    {
        for (std::size_t i = next++; i < batches.size(); i = next++)
        {
            std::map<const Mutant*, std::string> faults;
            try
            {
                faults = Faults(copy, batches[i]);
            }
            catch (const std::exception& error) // the program cannot be started
            {
                for (const Mutant* const mutant : batches[i])
                    faults[mutant] = error.what();
            }
            const std::lock_guard<std::mutex> lock(collecting);
            wrong.merge(faults);
        }
    };
    {
        std::vector<std::jthread> workers;
        for (const ProgramCopy& copy : copies)
            workers.emplace_back(work, std::cref(copy));
    }
    std::cout << mutants.size() << " mutants, " << mutants.size() - wrong.size() << " judged as the rules say"
              << std::endl;
    std::vector<std::string> faults; // in the order of the mutants
    for (const auto& [mutant, fault] : wrong)
        faults.push_back(TheCatalogue()[mutant->test].title + ": " + mutant->what + ": " + fault);
    if (!faults.empty())
        ADD_FAILURE() << FirstFew(faults);
}

// The mutants must reach every expectation: a catalogue that was read wrongly would make none and pass.
TEST(Mutant, EveryExpectedTextHasMutantsThatMustFailAndEveryTestMutantsThatMustPass)
{
    const std::vector<Mutant> mutants = AllMutants();
    const auto isFoundFor = [&mutants](std::size_t test, bool mustPass, const Path& changed)
    {
        const json& payload = TheCatalogue()[test].payload;
        return std::any_of(mutants.begin(), mutants.end(),
                           [&](const Mutant& mutant)
                           {
                               return mutant.test == test && mutant.mustPass == mustPass &&
                                      (!mutant.payload.contains(changed) ||
                                       mutant.payload.at(changed) != payload.at(changed));
                           });
    };
    EXPECT_FALSE(TheCatalogue().empty());
    for (std::size_t test = 0; test < TheCatalogue().size(); ++test)
    {
        const std::string& title = TheCatalogue()[test].title;
        EXPECT_TRUE(isFoundFor(test, true, Path())) << title << " has none that must pass";
        const json texts = TheCatalogue()[test].expected.flatten();
        for (const auto& [place, text] : texts.items())
            EXPECT_TRUE(isFoundFor(test, false, Path(place))) << title << ": " << place << " is left as it is";
    }
}
