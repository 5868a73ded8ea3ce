// Which parameter of a reporting method each value of its event comes from, and of which kind it is: found by changing
// one argument at a time, with arguments that the compiler makes from the method's declaration.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Recording.h"

enum class Kind
{
    Text,
    Flag,
    Integer,
    Decimal
};

struct Origin
{
    Leaf leaf;
    std::size_t parameter; // counted from 0
    Kind kind;
};

struct ProbedMethod
{
    std::string name;
    std::string takesParametersOf; // the method that is given the values: this one, or one that prepares the event
    std::vector<Leaf> leaves;
    std::vector<Origin> origins;
};

// Every public reporting method of the wrapper.
std::vector<ProbedMethod> ProbeMethods();
