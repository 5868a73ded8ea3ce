// The catalogue as data, and what the program must print of it: worked out from the rules, on the values of another
// JSON library, without the code that is under test.
#pragma once

#include <concepts>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

struct CatalogueTest
{
    std::string method;      // "TrackMeshSize"
    std::string title;       // "Testing MeshSize"
    nlohmann::json expected; // from the record that the catalogue makes
    nlohmann::json payload;  // as it leaves the wrapper; null unless every test sends one event
    bool isDocument = false; // judged by the documents' narrower rules
};

// All tests in order, which is the prober's. Throws std::runtime_error unless there is one for each method.
const std::vector<CatalogueTest>& TheCatalogue();

// The expected keys under which the wrapper sends something else, a line each: the first few.
std::string DifferencesOf(const CatalogueTest& test);

// What the program prints between the test's title and the next if the library hands over `payload`.
std::string ExpectedJudgement(const CatalogueTest& test, const nlohmann::json& payload);

// The output of a run in which each test prints what `body(test)` returns.
std::string WholeRun(const std::invocable<const CatalogueTest&> auto& body, bool passed)
{
    std::string output;
    for (const CatalogueTest& test : TheCatalogue())
        output += "\n" + test.title + "\n" + body(test);
    return output + (passed ? "\nAll tests passed\n" : "\nErrors occured during testing\n");
}
