// Wrong payloads, made from the payloads and the expectations of the catalogue, so that a new test brings its own.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

struct Mutant
{
    std::size_t test; // index in the catalogue
    std::string what;
    nlohmann::json payload;
    bool mustPass; // whether the program must let it pass, by the rules for this kind of change
};

// Of each test: changes of every text that it expects, and changes of what it does not compare.
std::vector<Mutant> MutantsOfExpectations();

// More of them, for whoever compares whole payloads: changes of what no test expects, other spellings of numbers and
// flags, and each payload in another's place. They are not meant for the program, and `mustPass` is false.
std::vector<Mutant> FurtherMutants();
