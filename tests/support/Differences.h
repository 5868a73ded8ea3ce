// What differs between an expected and an actual text or value, in a few lines.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json_fwd.hpp>

// The first place where two texts of many lines differ: its number, the line above it, and up to three lines of either
// text. Long lines are cut. Empty if the texts are equal.
std::string TextDifference(const std::string& expected, const std::string& actual);

// For EXPECT_PRED_FORMAT2(IsText, actual, expected): fails with the difference and without the whole texts.
testing::AssertionResult IsText(const char* actualExpression, const char* expectedExpression, const std::string& actual,
                                const std::string& expected);

// The members in which two values differ, by their JSON pointers, a line each: the first three, and how many more there
// are. Empty if the values are equal.
std::string JsonDifferences(const nlohmann::json& expected, const nlohmann::json& sent);

// For EXPECT_PRED_FORMAT2(IsJson, sent, expected): fails with the differences and without the whole values.
testing::AssertionResult IsJson(const char* sentExpression, const char* expectedExpression, const nlohmann::json& sent,
                                const nlohmann::json& expected);

// The first three, a line each, and how many more there are.
std::string FirstFew(const std::vector<std::string>& items);

// The first lines of a text.
std::string FirstLines(const std::string& text, std::size_t count);
