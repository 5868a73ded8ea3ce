// Strings and values of the stand-in: its choices, and what its headers promise beyond what the program needs of any
// library (contract/) and beyond random operations on values (ModelTest.cpp).
#include <iterator>
#include <limits>
#include <locale>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

// What the library's own interface does not offer.
template <typename Value>
concept TellsNull = (requires(const Value& value) { value.IsNull(); });

static_assert(!TellsNull<JsonValue>);
static_assert(!std::is_constructible_v<TaviString, const char*> &&
              !std::is_constructible_v<TaviString, const wchar_t*>);
static_assert(std::is_nothrow_move_constructible_v<TaviString> && std::is_nothrow_move_assignable_v<TaviString>);
static_assert(std::is_nothrow_move_constructible_v<JsonValue> && std::is_nothrow_move_assignable_v<JsonValue>);

class NumbersWithCommas : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

std::string Utf8Of(const std::wstring& wide)
{
    TaviString text;
    text.SetStringW(wide.c_str());
    return Text(text);
}

TaviString NumberedKey(int number)
{
    return Key(std::to_string(number).c_str());
}

JsonValue Integer(long long value)
{
    return JsonValue(value);
}

} // namespace

// Strings

TEST(TaviString, NumbersHaveAtMostSixDecimalsInEveryLocale)
{
    using Limits = std::numeric_limits<double>;
    const struct
    {
        double number;
        const char* text;
    } rows[] = {
        {-0.0, "-0"},
        {0.1 + 0.2, "0.3"},
        {1234567.25, "1234567.25"},
        {999999.9999999, "1000000"},
        {0.0000005, "0"}, // the nearest double lies below the half
        {0.0000015, "0.000002"},
        {-0.0000015, "-0.000002"},
        {Limits::denorm_min(), "0"},
        {Limits::infinity(), "inf"},
        {-Limits::infinity(), "-inf"},
        {Limits::quiet_NaN(), "nan"},
        {-Limits::quiet_NaN(), "nan"},
    };
    const std::locale previous;
    for (const std::locale& locale : {previous, std::locale(std::locale::classic(), new NumbersWithCommas)})
    {
        std::locale::global(locale);
        for (const auto& row : rows)
            EXPECT_EQ(Text(TaviString(row.number)), row.text);
        EXPECT_EQ(Text(TaviString(Limits::lowest())).size(), 310U) << "sign and digits";
        EXPECT_EQ(Text(TaviString(true)), "1");
        EXPECT_EQ(Json(Integer(-1234567)), "-1234567");
    }
    std::locale::global(previous);
}

TEST(TaviString, WideUnitsBecomeUtf8)
{
    constexpr wchar_t high = 0xD83D;
    constexpr wchar_t low = 0xDE00;
    const struct
    {
        std::wstring units;
        const char* utf8;
    } rows[] = {
        {L"\x80", "\xC2\x80"},
        {L"\x7F\x7FF\x800", "\x7F\xDF\xBF\xE0\xA0\x80"},
        {L"\xD7FF\xE000\xFFFF", "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
        {L"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        // A pair is one character where wchar_t has 32 bits, too.
        {{0xD800, 0xDC00, 0xDBFF, 0xDFFF}, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {{L'a', high, low, L'z'}, "a\xF0\x9F\x98\x80z"},
        {{high, L'a'}, "\xEF\xBF\xBD\x61"},
        {{L'a', high}, "a\xEF\xBF\xBD"},
        {{low, L'a'}, "\xEF\xBF\xBD\x61"},
        {{low, high}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {{high, high, low}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {{high, low, low}, "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
        {{0xD800, L' ', 0xDBFF, L' ', 0xDC00, L' ', 0xDFFF}, "\xEF\xBF\xBD \xEF\xBF\xBD \xEF\xBF\xBD \xEF\xBF\xBD"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Utf8Of(row.units), row.utf8);
    if constexpr (sizeof(wchar_t) == 4)
    {
        for (const unsigned long value : {0x110000UL, 0x80000000UL, 0xFFFFFFFFUL})
            EXPECT_EQ(Utf8Of({L'a', static_cast<wchar_t>(value), L'z'}), "a\xEF\xBF\xBDz") << value;
    }
    EXPECT_EQ(Key("\xF4\x8F\xBF\xBF\xF0\x90\x80\x80").c_strw(), std::wstring(L"\U0010FFFF\U00010000"));
}

TEST(TaviString, EachMaximalIllFormedSequenceBecomesOneReplacementCharacter)
{
    const struct
    {
        const char* what;
        const char* bytes;
        std::wstring wide;
    } rows[] = {
        {"trails without a lead", "\x80\xBFz", L"\uFFFD\uFFFDz"},
        {"overlong of two", "\xC0\xAF\xC1\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"overlong of three", "\xE0\x9F\xBF", L"\uFFFD\uFFFD\uFFFD"},
        {"overlong of four", "\xF0\x8F\xBF\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"two truncated", "a\xC3", L"a\uFFFD"},
        {"three truncated after one", "\xE4z", L"\uFFFDz"},
        {"three truncated after two", "a\xE4\xB8", L"a\uFFFD"},
        {"four truncated after two", "\xF0\x9Fz", L"\uFFFDz"},
        {"four truncated after three", "a\xF0\x9F\x98", L"a\uFFFD"},
        {"truncated before truncated", "\xF0\x9F\xE4\xB8", L"\uFFFD\uFFFD"},
        {"surrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
        {"beyond U+10FFFF", "\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"lead beyond U+10FFFF", "\xF5\x80\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"never in UTF-8", "\xFE\xFFz", L"\uFFFD\uFFFDz"},
    };
    for (const auto& row : rows)
    {
        const TaviString text = Key(row.bytes);
        EXPECT_EQ(text.c_strw(), row.wide) << row.what;
        EXPECT_EQ(text.size(), std::string(row.bytes).size()) << row.what;
        EXPECT_STREQ(text.c_str(), row.bytes) << row.what;
    }
}

TEST(TaviString, NoTextIsNotEmptyText)
{
    TaviString text;
    for (const wchar_t* const wide : {L"text", static_cast<const wchar_t*>(nullptr), L""})
    {
        text.SetStringW(wide);
        const TaviString copy(text);
        EXPECT_EQ(copy.c_str() == nullptr, wide == nullptr);
        EXPECT_EQ(copy.c_strw() == nullptr, wide == nullptr);
        const TaviString moved(std::move(text));
        EXPECT_EQ(text.c_str(), nullptr); // NOLINT(bugprone-use-after-move): moved-from is without text
        EXPECT_EQ((TaviString() + moved).c_str() == nullptr, wide == nullptr);
        EXPECT_EQ((moved + TaviString()).c_str() == nullptr, wide == nullptr);
        text.SetString(moved.c_str());
        EXPECT_EQ(text.c_str() == nullptr, wide == nullptr);
    }
    EXPECT_FALSE(TaviString() < Key("") || Key("") < TaviString());
}

TEST(TaviString, TakesTextFromItsOwnContentAndFromItself)
{
    TaviString text = Key("0123456789");
    text.SetString(text.c_str() + 2);
    text.SetStringW(text.c_strw() + 2);
    EXPECT_STREQ(text.c_strw(), L"456789");
    TaviString& same = text;
    text = same;
    text = std::move(same);
    text = text + text;
    EXPECT_EQ(Text(text), "456789456789");
}

TEST(TaviString, OrdersBytewiseWithAPrefixFirst)
{
    const char* const ascending[] = {"",      "\x01",  "A",     "AB",    "B",        "a",
                                     "a\x01", "a\x7F", "a\x80", "a\xFF", "\x80\x01", "\xFF"};
    for (std::size_t i = 0; i < std::size(ascending); ++i)
    {
        for (std::size_t j = 0; j < std::size(ascending); ++j)
            EXPECT_EQ(Key(ascending[i]) < Key(ascending[j]), i < j) << "rows " << i << " and " << j;
    }
}

TEST(TaviString, PointersStayValidUntilTheStringItselfChanges)
{
    const TaviString text = Key("text");
    const char* const narrow = text.c_str();
    const wchar_t* const wide = text.c_strw();
    {
        TaviString copy(text);
        JsonValue value;
        value[copy] = String(copy.c_str());
        copy.SetString("changed");
        EXPECT_EQ(Text(text + text), "texttext");
    }
    EXPECT_EQ(static_cast<const void*>(text.c_str()), narrow);
    EXPECT_EQ(static_cast<const void*>(text.c_strw()), wide);
    EXPECT_STREQ(narrow, "text");
    EXPECT_STREQ(wide, L"text");
}

// Values

TEST(JsonValue, SelfAssignmentKeepsReferencesToMembersValid)
{
    const auto copy = [](JsonValue& value, JsonValue& same) { value = same; };
    const auto move = [](JsonValue& value, JsonValue& same) { value = std::move(same); };
    for (void (*const assign)(JsonValue&, JsonValue&) : {+copy, +move})
    {
        JsonValue object;
        JsonValue& outer = object[Key("x")];
        JsonValue& inner = outer[Key("z")];
        assign(object, object);
        assign(outer, object[Key("x")]);
        ASSERT_EQ(&object[Key("x")], &outer);
        ASSERT_EQ(&outer[Key("z")], &inner);
        inner = Integer(2);
        EXPECT_EQ(Json(object), R"({"x":{"z":2}})");
    }
}

// Few members are searched, and many have an index.
TEST(JsonValue, MembersAreFoundInAnyOrderOfAddingAndRemoving)
{
    for (const int count : {20, 300})
    {
        JsonValue object;
        JsonValue& first = object[NumberedKey(0)];
        for (int i = 0; i < count; ++i)
            object[NumberedKey(i)] = Integer(i);
        EXPECT_EQ(&std::as_const(object)[NumberedKey(0)], &first);
        EXPECT_EQ(object.Compare(JsonValue(object)), 0);
        for (int removed = 0; removed < count; ++removed)
        {
            ASSERT_TRUE(object.RemoveKey(NumberedKey(removed * 7 % count)));
            object[Key("last")] = Integer(removed);
            for (int i = 0; i < count; ++i)
                ASSERT_EQ(IsNull(std::as_const(object)[NumberedKey(i * 7 % count)]), i <= removed) << i;
            ASSERT_EQ(object.GetCount(), count - removed);
            ASSERT_TRUE(object.RemoveKey(Key("last")));
        }
    }
}

namespace
{

// Destroyed when the program ends, before the library is unloaded.
struct Last
{
    ~Last() { value[Key("another key of some length")] = String("another text of some length"); }

    JsonValue value;
};

Last& TheLast()
{
    static Last last;
    return last;
}

} // namespace

TEST(JsonValue, MayBeChangedAndDestroyedAtTheProgramsEnd)
{
    TheLast().value[Key("a key of some length")] = String("a text of some length");
    EXPECT_EQ(TheLast().value.GetCount(), 1);
}
