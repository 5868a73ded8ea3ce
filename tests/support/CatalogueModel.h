// The catalogue as data, and what the program must print of it: worked out from the rules, on the values of another
// JSON library, without the code that is under test.
#pragma once

#include <concepts>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/ReportingMethods.h>

struct CatalogueTest
{
    std::string method;      // "TrackMeshSize"
    std::string title;       // "Testing MeshSize"
    nlohmann::json expected; // from the record that the catalogue makes
    nlohmann::json payload;  // as it leaves the wrapper; null when not every test sends one event
    bool isDocument = false; // judged by the documents' narrower rules
};

// What the program prints above the test of a method.
std::string TitleOf(const Corvane::ReportingMethod& method);

// All tests, in order, which is that of the prober. Throws std::runtime_error when it has not one for each method.
const std::vector<CatalogueTest>& TheCatalogue();

// The expected members that differ in what the wrapper sends, a line each: the first few.
std::string DifferencesOf(const CatalogueTest& test);

// What the program prints between the test's title and the next, given that the library hands over `payload`.
std::string ExpectedJudgement(const CatalogueTest& test, const nlohmann::json& payload);

// A whole run in which each test prints what `body(test)` gives, and its closing line.
std::string WholeRun(const std::invocable<const CatalogueTest&> auto& body, bool passed)
{
    std::string output;
    for (const CatalogueTest& test : TheCatalogue())
        output += "\n" + test.title + "\n" + body(test);
    return output + (passed ? "\nAll tests passed\n" : "\nErrors occured during testing\n");
}
