// Strings and JSON values. Needed: the program cannot work on a library that does otherwise. Assumed: it works, but
// what it sends, or how it judges a payload, would be different.

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Values.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

std::wstring Wide(const TaviString& text)
{
    return text.c_strw() != nullptr ? text.c_strw() : L"";
}

// The code units as numbers, in which a message can show any wide text.
std::string CodeUnits(const std::wstring& wide)
{
    std::string shown;
    for (const wchar_t unit : wide)
        shown += std::to_string(static_cast<unsigned long>(unit)) + ' ';
    return shown;
}

std::vector<std::string> SortedKeys(const JsonValue& value)
{
    std::vector<std::string> sorted;
    const JsonValue keys = value.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
        sorted.push_back(TextIn(keys[i]));
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

JsonValue Tree()
{
    return Object({{"text", String("a")},
                   {"number", JsonValue(14LL)},
                   {"object", Object({{"inner", String("b")}, {"flag", JsonValue(true)}})}});
}

// An equal tree, whose members were added in reverse order.
JsonValue SameTreeInReverse()
{
    return Object({{"object", Object({{"flag", JsonValue(true)}, {"inner", String("b")}})},
                   {"number", JsonValue(14LL)},
                   {"text", String("a")}});
}

// The same text as UTF-8 and as wide text. The characters take one to four bytes, and one or two units in UTF-16.
struct Translation
{
    const char* narrow;
    const wchar_t* wide;
};
constexpr Translation BeyondAscii[] = {
    {"\xc3\xa4", L"\u00e4"},
    {"\xe2\x82\xac", L"\u20ac"},
    {"\xf0\x9f\x98\x80", L"\U0001F600"},
    {"M\xc3\xbcller \xe2\x82\xac \xf0\x9f\x98\x80.cvs", L"M\u00fcller \u20ac \U0001F600.cvs"},
};

} // namespace

// Strings

TEST(Needed, TextThatWasSetIsReadBack)
{
    for (const std::string& text : {std::string("a"), std::string("COMMON.FILE.NAME"), std::string(5000, 'x'),
                                    std::string("M\xc3\xbcller \xf0\x9f\x98\x80")})
    {
        TaviString string = Text("the earlier text");
        string.SetString(text.c_str());
        EXPECT_EQ(Narrow(string), text) << "SetString() followed by c_str() does not give the same text.";
        EXPECT_NE(string.size(), 0U) << "size() is 0 for the text \"" << text << "\"; 0 is taken for no text.";
    }
}

TEST(Needed, AStringKeepsItsTextWhenTheSourceOfItChanges)
{
    std::array<char, 6> source = {'f', 'i', 'r', 's', 't', '\0'};
    const TaviString string = Text(source.data());
    source.fill('x');
    EXPECT_EQ(Narrow(string), "first") << "SetString() keeps a pointer to the caller's text and no copy of it.";
}

TEST(Needed, AStringNeverGivenTextHasNone)
{
    const TaviString string;
    EXPECT_EQ(Narrow(string), "") << "c_str() of a new string is neither null nor \"\".";
    EXPECT_EQ(Wide(string), L"") << "c_strw() of a new string is neither null nor \"\".";
    EXPECT_EQ(string.size(), 0U) << "size() of a new string is not 0.";
}

TEST(Needed, ANullPointerRemovesTheText)
{
    TaviString string = Text("a text");
    string.SetString(nullptr);
    EXPECT_EQ(Narrow(string), "") << "After SetString(nullptr) there is still text.";
    EXPECT_EQ(string.size(), 0U) << "After SetString(nullptr) size() is not 0.";
}

TEST(Needed, CopiesOfAStringAreIndependent)
{
    TaviString source = Text("source");
    TaviString constructed(source);
    TaviString assigned = Text("earlier");
    assigned = source;
    EXPECT_EQ(Narrow(constructed), "source") << "A string made as a copy has another text than its source.";
    EXPECT_EQ(Narrow(assigned), "source") << "A string that was assigned to has another text than its source.";

    constructed.SetString("changed copy");
    EXPECT_EQ(Narrow(source), "source") << "Changing a copy of a string changes its source.";
    source.SetString("changed source");
    EXPECT_EQ(Narrow(assigned), "source") << "Changing a string changes the copies of it.";
    assigned = TaviString();
    EXPECT_EQ(Narrow(assigned), "") << "A string keeps its text when one without text is assigned to it.";
}

TEST(Needed, AMovedStringTakesItsTextAlong)
{
    TaviString source = Text("a text");
    TaviString constructed(std::move(source));
    EXPECT_EQ(Narrow(constructed), "a text") << "A string made by moving another has not taken over its text.";
    TaviString assigned = Text("earlier");
    assigned = std::move(constructed);
    EXPECT_EQ(Narrow(assigned), "a text") << "Assigning by a move has not taken over the other string's text.";
}

TEST(Needed, ConcatenationJoinsTexts)
{
    EXPECT_EQ(Narrow(Text("line") + Text("&") + Text("release")), "line&release")
        << "operator+ does not put the right text behind the left one.";
}

TEST(Needed, StringsAreKeysOfOrderedMaps)
{
    std::vector<const char*> texts = {"",           "A",           "B", "CV.MESH", "CV.MESH_SIZE",
                                      "CV.MESH.OF", "COMMON.FILE", "a", "\xc3\xa4"};
    for (std::size_t turn = 0; turn < texts.size(); ++turn)
    {
        std::map<TaviString, std::string> map;
        for (const char* const text : texts)
            map[Text(text)] = text;
        EXPECT_EQ(map.size(), texts.size()) << "operator< takes different texts for the same key.";
        for (const char* const text : texts)
            EXPECT_EQ(map[Text(text)], text)
                << "By operator< the key \"" << text << "\" is not found again: an event would lose attributes.";
        std::rotate(texts.begin(), texts.begin() + 1, texts.end());
    }
}

TEST(Assumed, TheEmptyKeyComesFirst)
{
    for (const char* const text : {" ", "0", "A", "CV.MESH_SIZE_COUNT", "a", "\xc3\xa4"})
    {
        EXPECT_TRUE(TaviString() < Text(text))
            << "A string without text does not come before \"" << text
            << "\". An attribute without a key is taken first, so that it removes none of the others.";
        EXPECT_FALSE(Text(text) < TaviString()) << '"' << text << "\" comes before a string without text.";
    }
}

TEST(Assumed, DecimalsAreInFixedNotationWithoutTrailingZeros)
{
    const struct
    {
        double number;
        const char* text;
    } rows[] = {
        {0.45, "0.45"},
        {0.39, "0.39"},
        {1.12, "1.12"},
        {0.0, "0"},
        {1.0, "1"},
        {100.0, "100"},
        {double{0.044F}, "0.044"},
        {double{0.66F}, "0.66"},
        {-2.5, "-2.5"},
        {-1234567.0, "-1234567"},
        {123456789.125, "123456789.125"},
        {1e20, "100000000000000000000"},
        {0.1234567, "0.123457"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Narrow(TaviString(row.number)), row.text)
            << "TaviString(double) gives another text than \"%f\" of printf with its trailing zeros and point taken "
               "off. The program's tests expect that text.";
}

TEST(Needed, WideTextOfAsciiIsSetAndReadBack)
{
    TaviString string;
    string.SetStringW(L"CV.MESH_SIZE_COUNT");
    EXPECT_EQ(Narrow(string), "CV.MESH_SIZE_COUNT") << "SetStringW() followed by c_str() does not give the same text.";
    EXPECT_NE(string.size(), 0U) << "size() is 0 after SetStringW().";
    EXPECT_EQ(Wide(string), L"CV.MESH_SIZE_COUNT") << "SetStringW() followed by c_strw() does not give the same text.";
    EXPECT_EQ(Wide(Text("component_name")), L"component_name")
        << "SetString() followed by c_strw() does not give the same text.";
}

TEST(Assumed, WideTextBecomesUtf8)
{
    for (const Translation& row : BeyondAscii)
    {
        TaviString string;
        string.SetStringW(row.wide);
        EXPECT_EQ(Narrow(string), row.narrow) << "SetStringW() does not make UTF-8 of a wide text beyond ASCII.";
    }
}

TEST(Assumed, Utf8BecomesWideText)
{
    for (const Translation& row : BeyondAscii)
        EXPECT_EQ(CodeUnits(Wide(Text(row.narrow))), CodeUnits(row.wide))
            << "c_strw() does not take the text \"" << row.narrow << "\" for UTF-8.";
}

// Single values

TEST(Needed, ANewValueIsNull)
{
    const JsonValue value;
    EXPECT_TRUE(AreEqual(value, JsonValue())) << "Compare() finds two new values different: null is not equal to null.";
    EXPECT_TRUE(IsNull(JsonValue(value))) << "The copy of a new value is not equal to a new value.";
}

TEST(Needed, NoOtherValueIsNull)
{
    const JsonValue values[] = {
        JsonValue(true),
        JsonValue(false),
        JsonValue(0LL),
        JsonValue(14LL),
        String("text"),
        Object({{"key", String("text")}}),
        Object({{"key", String("text")}}).GetKeyList(),
    };
    for (const JsonValue& value : values)
        EXPECT_TRUE(Differ(value, JsonValue()))
            << "Compare() finds a value equal to null that is not; it would be removed instead of stored.";
}

TEST(Needed, ATextIsReadBackFromAValue)
{
    for (const char* const text : {"a", "3000", "true", "a \"quoted\" \\ text\n", "M\xc3\xbcller \xf0\x9f\x98\x80"})
        EXPECT_EQ(TextIn(String(text)), text)
            << "JsonValue::SetString() followed by the conversion to TaviString does not give the same text.";
}

TEST(Needed, ATextReplacesWhateverTheValueWasAndANullPointerMakesItNull)
{
    JsonValue value = Tree();
    value.SetString("text");
    EXPECT_TRUE(AreEqual(value, String("text"))) << "JsonValue::SetString() does not replace the value that was there.";
    value.SetString(nullptr);
    EXPECT_TRUE(IsNull(value)) << "JsonValue::SetString(nullptr) does not leave null; by that, entries are removed.";
}

TEST(Assumed, NullHasNoText)
{
    EXPECT_EQ(TextIn(JsonValue()), "") << "Null converts to a text. An identifier that the product lacks would be sent "
                                          "as that text.";
}

TEST(Needed, IntegersHave64Bits)
{
    constexpr long long numbers[] = {0,
                                     1,
                                     -1,
                                     4294967296,
                                     9007199254740993, // no double has this value
                                     std::numeric_limits<long long>::max(),
                                     std::numeric_limits<long long>::min()};
    for (const long long number : numbers)
        EXPECT_EQ(IntegerIn(JsonValue(number)), number)
            << "JsonValue(long long) followed by the conversion to long long does not give the same number.";
    EXPECT_TRUE(Differ(JsonValue(9007199254740993LL), JsonValue(9007199254740992LL)))
        << "Compare() does not tell large integers apart: they are held with fewer than 64 bits.";
    EXPECT_TRUE(Differ(JsonValue(1LL), JsonValue(4294967297LL))) << "Compare() compares fewer than 64 bits.";
}

TEST(Assumed, ValuesOfDifferentTypesDiffer)
{
    const std::pair<JsonValue, JsonValue> rows[] = {
        {JsonValue(true), JsonValue(1LL)}, {JsonValue(false), JsonValue(0LL)}, {JsonValue(true), String("true")},
        {JsonValue(14LL), String("14")},   {JsonValue(0LL), String("0")},      {Tree(), String("text")},
        {Tree(), JsonValue(3LL)},          {Tree(), Tree().GetKeyList()},
    };
    for (const auto& [left, right] : rows)
        EXPECT_TRUE(Differ(left, right))
            << "Compare() finds values of different types equal. A payload of the wrong type would pass.";
}

TEST(Assumed, TheJsonTextOfAStringIsTheQuotedText)
{
    EXPECT_EQ(Json(String("fileName1")), "\"fileName1\"")
        << "GetJsonString() of a string is not its text in quotes; the program prints it in its reports so.";
}

TEST(Assumed, TheJsonTextOfAnObjectNamesKeysAndValues)
{
    const std::string text = Json(Object({{"first_key", String("first text")}, {"second_key", JsonValue(271828LL)}}));
    for (const char* const part : {"first_key", "first text", "second_key", "271828"})
        EXPECT_NE(text.find(part), std::string::npos)
            << "GetJsonString() of an object lacks \"" << part << "\": " << text;
}

// Objects and key lists

TEST(Needed, AMemberIsWrittenAndReadBack)
{
    JsonValue value;
    value[Text("number")] = JsonValue(14LL);
    value[Text("outer")][Text("inner")].SetString("text");
    EXPECT_EQ(IntegerIn(Member(value, "number")), 14)
        << "A member that was written by operator[] on a null value is not read back: " << Json(value);
    EXPECT_EQ(TextIn(Member(Member(value, "outer"), "inner")), "text")
        << "A member of a new member is not read back: " << Json(value);
}

TEST(Needed, AMemberWrittenAgainIsReplaced)
{
    JsonValue value = Tree();
    value[Text("object")] = String("later");
    EXPECT_EQ(TextIn(Member(value, "object")), "later")
        << "Writing a member again does not replace it: " << Json(value);
    EXPECT_EQ(value.GetCount(), 3) << "Writing a member again changes the number of members: " << Json(value);
}

TEST(Needed, MembersStayWhenOthersAreAdded)
{
    JsonValue value;
    for (long long i = 0; i < 100; ++i)
        value[Text(std::to_string(i).c_str())] = JsonValue(i);
    for (long long i = 0; i < 100; ++i)
        EXPECT_EQ(IntegerIn(Member(value, std::to_string(i).c_str())), i)
            << "The member \"" << i << "\" is another after 100 were added.";
}

TEST(Assumed, AMemberThatWasOnlyAskedForIsAddedAsNull)
{
    JsonValue value;
    EXPECT_TRUE(IsNull(value[Text("key")])) << "The member that operator[] adds is not null.";
    EXPECT_EQ(value.GetCount(), 1) << "operator[] of a value that may be changed adds no member: " << Json(value);
}

TEST(Needed, AnAbsentMemberIsNullAndReadingAddsNone)
{
    const JsonValue object = Tree();
    const JsonValue null;
    EXPECT_TRUE(IsNull(Member(object, "absent"))) << "Reading an absent member of an object does not give null.";
    EXPECT_TRUE(IsNull(Member(null, "absent"))) << "Reading a member of null does not give null.";
    EXPECT_EQ(object.GetCount(), 3) << "Reading an absent member of an object adds it: " << Json(object);
    EXPECT_TRUE(AreEqual(object, Tree())) << "Reading an absent member of an object changes the object.";
    EXPECT_TRUE(IsNull(null)) << "Reading a member of null makes it an object.";
}

TEST(Assumed, AMemberOfAScalarIsNull)
{
    for (const JsonValue& scalar : {String("text"), JsonValue(14LL), JsonValue(true)})
        EXPECT_TRUE(IsNull(Member(scalar, "key")))
            << "Reading a member of " << Json(scalar)
            << " does not give null. So a payload is read that has a scalar where an object is expected.";
}

TEST(Needed, CountsAreThoseOfMembersAndElements)
{
    EXPECT_EQ(Tree().GetCount(), 3) << "GetCount() of an object is not the number of its members: " << Json(Tree());
    EXPECT_EQ(JsonValue().GetKeyList().GetCount(), 0) << "GetKeyList() of null is not empty.";
    EXPECT_EQ(Tree().GetKeyList().GetCount(), 3)
        << "GetCount() of a key list is not the number of the object's keys: " << Json(Tree().GetKeyList());
    for (const JsonValue& value : {JsonValue(), String("text"), JsonValue(14LL), JsonValue(true)})
        EXPECT_EQ(value.GetCount(), 0) << "GetCount() is not 0 for " << Json(value)
                                       << ", which has no members; the program would take it for an object.";
}

TEST(Needed, TheKeyListHoldsEachKeyOnce)
{
    JsonValue value = Tree();
    value[Text("text")] = String("written again");
    value[Text("added")] = JsonValue(true);
    value[Text("removed")] = JsonValue(true);
    value.RemoveKey(Text("removed"));
    const std::vector<std::string> expected = {"added", "number", "object", "text"};
    EXPECT_EQ(SortedKeys(value), expected)
        << "GetKeyList() does not hold each key of the object once and as a string: " << Json(value.GetKeyList())
        << " for " << Json(value);
}

TEST(Needed, ARemovedMemberIsGone)
{
    JsonValue value = Tree();
    value.RemoveKey(Text("object"));
    EXPECT_TRUE(IsNull(Member(value, "object"))) << "A member is still there after RemoveKey(): " << Json(value);
    EXPECT_TRUE(AreEqual(value, Object({{"text", String("a")}, {"number", JsonValue(14LL)}})))
        << "RemoveKey() does more or less than take out the one member.";
    value.RemoveKey(Text("text"));
    value.RemoveKey(Text("number"));
    EXPECT_EQ(value.GetCount(), 0) << "GetCount() is not 0 after the last member was removed: " << Json(value);
}

TEST(Needed, RemovingAnAbsentMemberChangesNothing)
{
    JsonValue object = Tree();
    object.RemoveKey(Text("absent"));
    EXPECT_TRUE(AreEqual(object, Tree())) << "RemoveKey() of an absent member changes the object.";

    JsonValue null;
    null.RemoveKey(Text("absent"));
    EXPECT_EQ(null.GetCount(), 0) << "RemoveKey() gives null a member: " << Json(null);
}

// Whole trees

TEST(Needed, CopiesAreDeepAndIndependent)
{
    JsonValue source = Tree();
    const JsonValue kept(source);
    JsonValue constructed(source);
    JsonValue assigned = String("earlier");
    assigned = source;
    JsonValue outer;
    outer[Text("member")] = source;
    EXPECT_TRUE(AreEqual(constructed, source)) << "A value made as a copy is not equal to its source.";
    EXPECT_TRUE(AreEqual(assigned, source)) << "A value that was assigned to is not equal to its source.";

    constructed[Text("object")][Text("inner")].SetString("changed");
    assigned[Text("object")].RemoveKey(Text("flag"));
    EXPECT_TRUE(AreEqual(source, Tree())) << "Changing a copy, deep inside, changes its source: copies are not deep.";
    source[Text("object")][Text("inner")].SetString("changed");
    source.RemoveKey(Text("number"));
    EXPECT_TRUE(AreEqual(kept, Tree())) << "Changing a value changes a copy that was made of it.";
    EXPECT_TRUE(AreEqual(Member(outer, "member"), Tree())) << "Changing a value changes the member it was assigned to.";
}

TEST(Needed, AMovedValueTakesItsTreeAlong)
{
    JsonValue source = Tree();
    JsonValue constructed(std::move(source));
    EXPECT_TRUE(AreEqual(constructed, Tree())) << "A value made by moving another has not taken over its tree.";
    JsonValue assigned = String("earlier");
    assigned = std::move(constructed);
    EXPECT_TRUE(AreEqual(assigned, Tree())) << "Assigning by a move has not taken over the other value's tree.";
    JsonValue outer;
    outer[Text("member")] = std::move(assigned);
    EXPECT_TRUE(AreEqual(Member(outer, "member"), Tree()))
        << "Moving a value into a member has not taken over its tree.";
}

TEST(Needed, EqualTreesCompareAsEqual)
{
    EXPECT_TRUE(AreEqual(Tree(), Tree())) << "Compare() finds two values different that were made alike.";
    EXPECT_TRUE(AreEqual(Tree(), SameTreeInReverse()))
        << "Compare() finds objects different whose members were added in another order.";
    EXPECT_TRUE(AreEqual(JsonValue(false), JsonValue(false))) << "Compare() finds equal booleans different.";
    EXPECT_TRUE(AreEqual(String("text"), String("text"))) << "Compare() finds equal strings different.";
}

TEST(Needed, DifferentTreesCompareAsDifferent)
{
    const Members base = {{"a", String("1")}, {"b", Object({{"c", String("2")}})}};
    const struct
    {
        const char* kind;
        JsonValue left;
        JsonValue right;
    } rows[] = {
        {"another text", String("text"), String("texts")},
        {"a text that differs in case", String("text"), String("Text")},
        {"another integer", JsonValue(14LL), JsonValue(15LL)},
        {"another boolean", JsonValue(true), JsonValue(false)},
        {"another text of a member", Object(base), Object({{"a", String("9")}, base[1]})},
        {"another text deep inside", Object(base), Object({base[0], {"b", Object({{"c", String("9")}})}})},
        {"another key", Object(base), Object({{"x", String("1")}, base[1]})},
        {"another key deep inside", Object(base), Object({base[0], {"b", Object({{"x", String("2")}})}})},
        {"a member less", Object(base), Object({base[0]})},
        {"a member more deep inside", Object(base),
         Object({base[0], {"b", Object({{"c", String("2")}, {"d", String("3")}})}})},
        {"texts exchanged between two members", Object({{"a", String("1")}, {"b", String("2")}}),
         Object({{"a", String("2")}, {"b", String("1")}})},
        {"an object in place of a text", Object(base), Object({{"a", Object({{"c", String("1")}})}, base[1]})},
        {"a key list of other keys", Object({{"a", String("1")}}).GetKeyList(),
         Object({{"b", String("1")}}).GetKeyList()},
    };
    for (const auto& row : rows)
        EXPECT_TRUE(Differ(row.left, row.right))
            << "Compare() does not see this difference: " << row.kind << ". Wrong payloads would pass.";
}
