// Wrong payloads, made from those of the catalogue, so that a new test brings its own.
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
    bool mustPass; // whether the program must let it pass: nothing that the test compares is changed
};

// One change each: of every member, of every member of an object, and of their number.
std::vector<Mutant> Mutants();
