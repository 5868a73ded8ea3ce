#include "Differences.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

TEST(Differences, EqualTextsHaveNone)
{
    for (const std::string text : {"", "\n", "one line", "two\nlines\n"})
        EXPECT_EQ(TextDifference(text, text), "");
    EXPECT_TRUE(IsText("left", "right", "text", "text"));
}

TEST(Differences, OfTextsAreTheFirstLinesThatDifferBelowTheLineAbove)
{
    const struct
    {
        std::string expected;
        std::string actual;
        std::string difference;
    } rows[] = {
        {"a\nb\nc\n", "a\nB\nc\n", "2\n  a\n- b\n+ B"},
        {"title\n\nPASSED\nend", "title\n\nFAILED\nend", "3\n  title\n- PASSED\n+ FAILED"},
        {"a\nb\n", "a\nnew\nb\n", "2\n  a\n+ new"},
        {"a\ngone\nb\n", "a\nb\n", "2\n  a\n- gone"},
        {"a\nb\nc\nd\n", "A\nb\nc\nD\n", "1\n- a\n+ A"},
        {"1\n2\n3\n4\n5\n", "6\n7\n8\n9\n0\n", "1\n- 1\n- 2\n- 3\n+ 6\n+ 7\n+ 8"},
        {"a\nb", "a\nb\n", "3\n  b\n+ "},
        {"a\n", "a\r\n", "1\n- a\n+ a\\r"},
        {"", "a", "1\n- \n+ a"},
    };
    for (const auto& row : rows)
    {
        const std::string difference = TextDifference(row.expected, row.actual);
        const std::string place = row.difference.substr(0, row.difference.find('\n'));
        EXPECT_EQ(difference,
                  "line " + place + R"(, "-" is expected and "+" is there:)" + row.difference.substr(place.size()));
        EXPECT_EQ(std::string(IsText("left", "right", row.actual, row.expected).message()), "left: " + difference);
    }
}

TEST(Differences, LongLinesAreCutToWhereTheyDiffer)
{
    const std::string difference =
        TextDifference(std::string(10'000, 'a') + "left", std::string(10'000, 'a') + "right");
    EXPECT_LT(difference.size(), 200U);
    EXPECT_NE(difference.find("\n- ...a"), std::string::npos) << difference;
    EXPECT_NE(difference.find("aleft\n"), std::string::npos) << difference;
    EXPECT_TRUE(difference.ends_with("aright")) << difference;

    // No character is cut into halves.
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "\xC3\xBC";
    for (const char* const shift : {"", "x"})
    {
        const std::string shown = FirstLines(shift + text, 1);
        EXPECT_LT(shown.size(), 200U);
        EXPECT_TRUE(shown.ends_with("\xC3\xBC...\n")) << shown;
    }
}

TEST(Differences, OfValuesAreNamedByTheirPlaces)
{
    const struct
    {
        std::string expected;
        std::string sent;
        std::string differences;
    } rows[] = {
        {R"({"a":{"b":"1","c":"2"}})", R"({"a":{"b":"2","c":"1"}})",
         "/a/b: expected \"1\", sent \"2\"\n/a/c: expected \"2\", sent \"1\""},
        {R"({"a":1})", R"({"b":2})", "/a: expected 1, sent nothing\n/b: expected nothing, sent 2"},
        {R"({"a":{"b":1}})", R"({"a":"text"})", R"(/a: expected {"b":1}, sent "text")"},
        {R"({"a":1})", R"({"a":"1"})", R"(/a: expected 1, sent "1")"},
        {R"({"a":null})", "{}", "/a: expected null, sent nothing"},
        {R"({})", R"({"1":1,"2":1,"3":1,"4":1,"5":1})",
         "/1: expected nothing, sent 1\n/2: expected nothing, sent 1\n/3: expected nothing, sent 1\nand 2 more"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(JsonDifferences(nlohmann::json::parse(row.expected), nlohmann::json::parse(row.sent)),
                  row.differences);
    EXPECT_TRUE(IsJson("left", "right", nlohmann::json(1), nlohmann::json(1)));
    EXPECT_STREQ(IsJson("left", "right", nlohmann::json(1), nlohmann::json(2)).message(),
                 "left:\n: expected 2, sent 1");
}

TEST(Differences, OfManyTheFirstThreeAreSaid)
{
    EXPECT_EQ(FirstFew({}), "");
    EXPECT_EQ(FirstFew({"a", "b", "c"}), "a\nb\nc");
    EXPECT_EQ(FirstFew({"a", "b", "c", "d"}), "a\nb\nc\nand 1 more");
    EXPECT_EQ(FirstLines("a\nb\nc", 2), "a\nb\n");
    EXPECT_EQ(FirstLines("a", 2), "a\n");
}
