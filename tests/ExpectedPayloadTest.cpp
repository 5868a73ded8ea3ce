#include <harness/ExpectedPayload.h>

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "Text.h"

using namespace Corvane;

TEST(ExpectedPayload, FlagsAreTrueAndFalse)
{
    EXPECT_EQ(ExpectedText(true), L"True");
    EXPECT_EQ(ExpectedText(false), L"False");
}

TEST(ExpectedPayload, IntegersArePlainDecimal)
{
    EXPECT_EQ(ExpectedText(0), L"0");
    EXPECT_EQ(ExpectedText(-1), L"-1");
    EXPECT_EQ(ExpectedText(std::numeric_limits<std::int32_t>::min()), L"-2147483648");
    EXPECT_EQ(ExpectedText(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
    EXPECT_EQ(ExpectedText(std::numeric_limits<std::uint64_t>::max()), L"18446744073709551615");
}

TEST(ExpectedPayload, FloatingPointNumbersLoseTrailingZerosAndPoint)
{
    const struct
    {
        double number;
        const wchar_t* text;
    } rows[] = {
        {0.45, L"0.45"},   {1.12, L"1.12"},          {0.0, L"0"},       {0.044F, L"0.044"},
        {0.66F, L"0.66"},  {100.0, L"100"},          {-1.5, L"-1.5"},   {-0.0, L"-0"},
        {0.0000004, L"0"}, {0.0000006, L"0.000001"}, {1e6, L"1000000"}, {123.456, L"123.456"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ExpectedText(row.number), row.text) << row.number;
    EXPECT_EQ(ExpectedText(std::numeric_limits<double>::max()).size(), 309U);
}

TEST(ExpectedPayload, AWaypointHoldsItsNameAndItsAttributes)
{
    EXPECT_EQ(
        Json(ExpectWaypoint(L"NAME", {{L"text", L"a"}, {L"number", 2}, {L"flag", false}, {L"real", 0.5F}})),
        R"({"component_name":"NAME","component_attributes":{"text":"a","number":"2","flag":"False","real":"0.5"}})");
}

TEST(ExpectedPayload, AWaypointWithoutAttributesHoldsItsNameOnly)
{
    EXPECT_EQ(Json(ExpectWaypoint(L"NAME", {})), R"({"component_name":"NAME"})");
}

TEST(ExpectedPayload, AContentEventHoldsItsMetaAndTypeLetter)
{
    EXPECT_EQ(Json(ExpectContent({{L"key", L"value"}})), R"({"content_meta":{"key":"value"},"type":"D"})");
}
