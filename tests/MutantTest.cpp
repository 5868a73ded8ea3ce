// Every wrong payload that the rules say must be caught: each is handed to the unmodified program in place of the right
// one, and what the program prints is compared with what the rules say, worked out independently.
//
// The mutants are made from the payloads and the expectations of the catalogue, so that a new test brings its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CatalogueModel.h"
#include "Differences.h"
#include "Mutants.h"
#include "Program.h"

using nlohmann::json;
using Path = json::json_pointer;

namespace
{

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
    const std::vector<Mutant> mutants = MutantsOfExpectations();
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
    const std::vector<Mutant> mutants = MutantsOfExpectations();
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
