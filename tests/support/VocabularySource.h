// The vocabulary as its header's source has it, so that no constant can be missed.
#pragma once

#include <string>
#include <vector>

struct VocabularyConstant
{
    std::string name;
    std::string text;
};

// In order.
std::vector<VocabularyConstant> ReadVocabulary(const std::string& header);
