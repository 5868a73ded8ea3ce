#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <locale>
#include <map>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

constexpr const char* NoText = nullptr;
constexpr wchar_t HighSurrogate = 0xD83D;
constexpr wchar_t LowSurrogate = 0xDE00;

static_assert(sizeof(TaviString) == sizeof(void*));
static_assert(!std::is_constructible_v<TaviString, const char*> &&
              !std::is_constructible_v<TaviString, const wchar_t*>);
static_assert(std::is_nothrow_move_constructible_v<TaviString> && std::is_nothrow_move_assignable_v<TaviString>);

TaviString FromWide(const std::wstring& text)
{
    TaviString converted;
    converted.SetStringW(text.c_str());
    return converted;
}

void ExpectNoText(const TaviString& text)
{
    EXPECT_EQ(text.c_str(), nullptr);
    EXPECT_EQ(text.c_strw(), nullptr);
    EXPECT_EQ(text.size(), 0U);
}

// Unlike a string without text, which c_str() tells from it.
void ExpectEmptyText(const TaviString& text)
{
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_STREQ(text.c_strw(), L"");
    EXPECT_EQ(text.size(), 0U);
}

class NumbersWithCommas : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

struct NumberText
{
    double number;
    std::string text;
};

void ExpectTextsOfNumbers()
{
    using Limits = std::numeric_limits<double>;
    // 2^1024 - 2^971
    const std::string largest = "17976931348623157081452742373170435679807056752584499659891747680315726078002853876058"
                                "95586327668781715404589535143824642343213268894641827684675467035375169860499105765512"
                                "82076245490090389328944075868508455133942304583236903222948165808559332123348274797826"
                                "204144723168738177180919299881250404026184124858368";
    ASSERT_EQ(largest.size(), 309U);
    const NumberText rows[] = {
        {0.45, "0.45"},
        {0.39, "0.39"},
        {1.12, "1.12"},
        {0.0, "0"},
        {-0.0, "-0"},
        {0.044F, "0.044"},
        {0.66F, "0.66"},
        {0.1 + 0.2, "0.3"},
        {-1.5, "-1.5"},
        {100, "100"},
        {1e6, "1000000"},
        {1234567.25, "1234567.25"},
        {999999.9999999, "1000000"},
        {1e22, "10000000000000000000000"},
        {0.000001, "0.000001"},
        {0.00000051, "0.000001"},
        {0.0000005, "0"}, // the nearest double lies below the half
        {0.0000015, "0.000002"},
        {-0.0000015, "-0.000002"},
        {1e-7, "0"},
        {Limits::denorm_min(), "0"},
        {Limits::max(), largest},
        {Limits::lowest(), "-" + largest},
        {Limits::infinity(), "inf"},
        {-Limits::infinity(), "-inf"},
        {Limits::quiet_NaN(), "nan"},
        {-Limits::quiet_NaN(), "nan"},
    };
    for (const NumberText& row : rows)
        EXPECT_EQ(Text(TaviString(row.number)), row.text) << row.number;
}

// Several million bytes, with characters of one, two, three and four bytes.
template <typename String>
String Repeated(const String& part)
{
    constexpr std::size_t count = 500'000;
    String text;
    text.reserve(count * part.size());
    for (std::size_t i = 0; i < count; ++i)
        text += part;
    return text;
}

} // namespace

TEST(TaviString, HasNoTextUntilItIsGivenSome)
{
    ExpectNoText(TaviString());
    ExpectNoText(Key(NoText));
}

TEST(TaviString, NullPointerReleasesTheContent)
{
    TaviString narrow = Key("text");
    narrow.SetString(nullptr);
    ExpectNoText(narrow);
    narrow.SetString(nullptr);
    ExpectNoText(narrow);

    TaviString wide = Key("text");
    wide.SetStringW(nullptr);
    ExpectNoText(wide);
    wide.SetStringW(nullptr);
    ExpectNoText(wide);
}

TEST(TaviString, EmptyTextIsText)
{
    ExpectEmptyText(Key(""));

    TaviString narrow = Key("text");
    narrow.SetString("");
    ExpectEmptyText(narrow);

    TaviString wide = Key("text");
    wide.SetStringW(L"");
    ExpectEmptyText(wide);
}

TEST(TaviString, TextEndsAtTheFirstNullCharacter)
{
    EXPECT_EQ(Text(Key("ab\0cd")), "ab");

    TaviString wide;
    wide.SetStringW(L"ab\0cd");
    EXPECT_EQ(Text(wide), "ab");
    EXPECT_EQ(wide.size(), 2U);
}

TEST(TaviString, SizeCountsBytes)
{
    const struct
    {
        const char* text;
        unsigned long long size;
    } rows[] = {{"a", 1}, {"\xC3\xA4", 2}, {"\xE4\xB8\xAD", 3}, {"\xF0\x9F\x98\x80", 4}, {"a\xFFz", 3}};
    for (const auto& row : rows)
        EXPECT_EQ(Key(row.text).size(), row.size) << row.text;
}

TEST(TaviString, KeepsACopyOfTheTextItIsGiven)
{
    char narrow[] = "text";
    wchar_t wide[] = L"text";
    const TaviString fromNarrow = Key(narrow);
    const TaviString fromWide = FromWide(wide);
    narrow[0] = 'n';
    wide[0] = L'n';
    EXPECT_EQ(Text(fromNarrow), "text");
    EXPECT_EQ(Text(fromWide), "text");
}

TEST(TaviString, CopyIsIndependentOfItsSource)
{
    TaviString source = Key("first");
    const TaviString constructed(source);
    TaviString assigned = Key("old");
    assigned = source;
    source.SetString("second");
    EXPECT_EQ(Text(constructed), "first");
    EXPECT_EQ(Text(assigned), "first");

    assigned.SetString("third");
    EXPECT_EQ(Text(source), "second");
}

TEST(TaviString, CopyTellsNoTextFromEmptyText)
{
    TaviString none;
    TaviString empty = Key("");
    const TaviString copyOfNone(none);
    const TaviString copyOfEmpty(empty);
    TaviString assigned = Key("old");
    assigned = empty;
    ExpectEmptyText(assigned);
    assigned = none;
    ExpectNoText(assigned);

    none.SetString("text");
    empty.SetString("text");
    ExpectNoText(copyOfNone);
    ExpectEmptyText(copyOfEmpty);
}

TEST(TaviString, MoveTakesTheContentOver)
{
    TaviString source = Key("text");
    const char* const content = source.c_str();

    TaviString constructed(std::move(source));
    EXPECT_EQ(static_cast<const void*>(constructed.c_str()), content);
    ExpectNoText(source); // NOLINT(bugprone-use-after-move): moved-from is without text

    TaviString assigned = Key("old");
    assigned = std::move(constructed);
    EXPECT_EQ(static_cast<const void*>(assigned.c_str()), content);
    ExpectNoText(constructed); // NOLINT(bugprone-use-after-move): moved-from is without text

    assigned = TaviString();
    ExpectNoText(assigned);

    source.SetString("again");
    EXPECT_EQ(Text(source), "again");
}

TEST(TaviString, SelfAssignmentKeepsTheText)
{
    TaviString text = Key("text");
    TaviString& same = text;
    text = same;
    EXPECT_EQ(Text(text), "text");
    text = std::move(same);
    EXPECT_EQ(Text(text), "text");
}

TEST(TaviString, TakesTextFromItsOwnContent)
{
    // Long enough to be on the heap in any string class.
    const std::string whole(100, 'x');
    for (const std::size_t start : {std::size_t{0}, std::size_t{1}, whole.size() / 2, whole.size()})
    {
        SCOPED_TRACE(start);
        TaviString narrow = Key(whole.c_str());
        narrow.SetString(narrow.c_str() + start);
        EXPECT_EQ(Text(narrow), whole.substr(start));

        TaviString wide = Key(whole.c_str());
        wide.SetStringW(wide.c_strw() + start);
        EXPECT_EQ(Text(wide), whole.substr(start));
    }
}

TEST(TaviString, ConvertsBetweenWideTextAndUtf8)
{
    const struct
    {
        std::wstring wide;
        const char* utf8;
    } rows[] = {
        {L"plain \x7F", "plain \x7F"},
        {L"\x80", "\xC2\x80"},
        {L"\u00E4\u00F6\u00DC\u00DF", "\xC3\xA4\xC3\xB6\xC3\x9C\xC3\x9F"},
        {L"\x7FF\x800", "\xDF\xBF\xE0\xA0\x80"},
        {L"\u4E2D\u6587", "\xE4\xB8\xAD\xE6\x96\x87"},
        {L"\xD7FF\xE000\xFFFD\xFFFF", "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xEF\xBF\xBF"},
        {L"\U00010000", "\xF0\x90\x80\x80"},
        {L"a\U0001F600z", "a\xF0\x9F\x98\x80z"},
        {L"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.utf8);
        EXPECT_EQ(Text(FromWide(row.wide)), row.utf8);
        EXPECT_EQ(Key(row.utf8).c_strw(), row.wide);
    }
}

TEST(TaviString, PairOfSurrogateUnitsIsOneCharacter)
{
    const struct
    {
        std::wstring units;
        const char* utf8;
        std::wstring wide;
    } rows[] = {
        {{0xD800, 0xDC00}, "\xF0\x90\x80\x80", L"\U00010000"},
        {{L'a', HighSurrogate, LowSurrogate, L'z'}, "a\xF0\x9F\x98\x80z", L"a\U0001F600z"},
        {{HighSurrogate, LowSurrogate, HighSurrogate, LowSurrogate},
         "\xF0\x9F\x98\x80\xF0\x9F\x98\x80",
         L"\U0001F600\U0001F600"},
        {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF", L"\U0010FFFF"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.utf8);
        const TaviString text = FromWide(row.units);
        EXPECT_EQ(Text(text), row.utf8);
        EXPECT_EQ(text.c_strw(), row.wide);
    }
}

TEST(TaviString, WideUnitThatIsNoCharacterBecomesTheReplacementCharacter)
{
    const struct
    {
        const char* what;
        std::wstring units;
        const char* utf8;
    } rows[] = {
        {"high before text", {HighSurrogate, L'a'}, "\xEF\xBF\xBD\x61"},
        {"high at the end", {L'a', HighSurrogate}, "a\xEF\xBF\xBD"},
        {"smallest high", {0xD800}, "\xEF\xBF\xBD"},
        {"largest high", {0xDBFF}, "\xEF\xBF\xBD"},
        {"low before text", {LowSurrogate, L'a'}, "\xEF\xBF\xBD\x61"},
        {"low at the end", {L'a', LowSurrogate}, "a\xEF\xBF\xBD"},
        {"smallest low", {0xDC00}, "\xEF\xBF\xBD"},
        {"largest low", {0xDFFF}, "\xEF\xBF\xBD"},
        {"reversed pair", {LowSurrogate, HighSurrogate}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"high before a pair", {HighSurrogate, HighSurrogate, LowSurrogate}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {"low after a pair", {HighSurrogate, LowSurrogate, LowSurrogate}, "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Text(FromWide(row.units)), row.utf8) << row.what;

    if constexpr (sizeof(wchar_t) == 4)
    {
        for (const unsigned long value : {0x110000UL, 0x7FFFFFFFUL, 0x80000000UL, 0xFFFFFFFFUL})
            EXPECT_EQ(Text(FromWide({L'a', static_cast<wchar_t>(value), L'z'})), "a\xEF\xBF\xBDz") << value;
    }
}

TEST(TaviString, WideTextHasOneReplacementCharacterForEachMaximalIllFormedSequence)
{
    const struct
    {
        const char* what;
        const char* bytes;
        std::wstring wide;
    } rows[] = {
        {"lone trail", "a\x80z", L"a\uFFFDz"},
        {"two lone trails", "\x80\xBF", L"\uFFFD\uFFFD"},
        {"overlong of two", "\xC0\xAF\xC1\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"overlong of three", "\xE0\x9F\xBF", L"\uFFFD\uFFFD\uFFFD"},
        {"overlong of four", "\xF0\x8F\xBF\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"two truncated at the end", "a\xC3", L"a\uFFFD"},
        {"three truncated after one", "\xE4z", L"\uFFFDz"},
        {"three truncated after two", "\xE4\xB8z", L"\uFFFDz"},
        {"three truncated at the end", "a\xE4\xB8", L"a\uFFFD"},
        {"four truncated after two", "\xF0\x9Fz", L"\uFFFDz"},
        {"four truncated after three", "\xF0\x9F\x98z", L"\uFFFDz"},
        {"four truncated at the end", "a\xF0\x9F\x98", L"a\uFFFD"},
        {"truncated before a character", "\xE4\xB8\xC3\xA4", L"\uFFFD\u00E4"},
        {"truncated before a truncated one", "\xF0\x9F\xE4\xB8", L"\uFFFD\uFFFD"},
        {"high surrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
        {"surrogate pair", "\xED\xA0\xBD\xED\xB8\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"beyond U+10FFFF", "\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"lead beyond U+10FFFF", "\xF5\x80\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"never in UTF-8", "\xFE\xFFz", L"\uFFFD\uFFFDz"},
    };
    for (const auto& row : rows)
    {
        const TaviString text = Key(row.bytes);
        EXPECT_EQ(text.c_strw(), row.wide) << row.what;
        EXPECT_STREQ(text.c_str(), row.bytes) << row.what;
    }
}

TEST(TaviString, KeepsEveryByteOfNarrowText)
{
    std::string bytes;
    for (int byte = 0xFF; byte > 0; --byte)
        bytes += static_cast<char>(byte);
    const TaviString text = Key(bytes.c_str());
    EXPECT_EQ(Text(text), bytes);
    EXPECT_EQ(Text(TaviString(text)), bytes);
    EXPECT_EQ(text.size(), bytes.size());
}

TEST(TaviString, WideTextFollowsAChange)
{
    TaviString text = Key("first");
    EXPECT_STREQ(text.c_strw(), L"first");
    text.SetString("second");
    EXPECT_STREQ(text.c_strw(), L"second");
    text.SetStringW(L"third");
    EXPECT_STREQ(text.c_strw(), L"third");
    text = Key("fourth");
    EXPECT_STREQ(text.c_strw(), L"fourth");
    text.SetString(nullptr);
    EXPECT_EQ(text.c_strw(), nullptr);
}

TEST(TaviString, PointersToTheTextStayValidWhileItIsOnlyRead)
{
    const TaviString text = Key("text");
    const void* const narrow = text.c_str();
    const void* const wide = text.c_strw();
    EXPECT_EQ(Text(TaviString(text) + text), "texttext");
    EXPECT_EQ(static_cast<const void*>(text.c_str()), narrow);
    EXPECT_EQ(static_cast<const void*>(text.c_strw()), wide);
}

// The texts are compared as booleans, so that a failure does not print megabytes.
TEST(TaviString, ConvertsVeryLongText)
{
    const auto utf8 = Repeated<std::string>("a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80");
    const auto wide = Repeated<std::wstring>(L"a\u00E4\u4E2D\U0001F600");
    const TaviString narrowText = Key(utf8.c_str());
    EXPECT_EQ(narrowText.size(), 5'000'000U);
    EXPECT_TRUE(Text(narrowText) == utf8);
    EXPECT_TRUE(narrowText.c_strw() == wide);
    EXPECT_TRUE(Text(FromWide(wide)) == utf8);
}

TEST(TaviString, NumberIsWrittenWithAtMostSixDecimals)
{
    ExpectTextsOfNumbers();
}

TEST(TaviString, IntegersAndBooleansAreNumbers)
{
    EXPECT_EQ(Text(TaviString(-42)), "-42");
    EXPECT_EQ(Text(TaviString(true)), "1");
    EXPECT_EQ(Text(TaviString(false)), "0");
}

TEST(TaviString, NumberDoesNotFollowTheCppLocale)
{
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new NumbersWithCommas));
    ExpectTextsOfNumbers();
    std::locale::global(previous);
}

// Numbers of all magnitudes, and numbers close to halfway between two texts, where rounding decides.
TEST(TaviString, NumberIsRoundedAsTheStandardLibraryRoundsIt)
{
    std::mt19937_64 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same numbers every time
    std::array<char, 400> buffer;
    const auto expect = [&buffer](double number)
    {
        char* const end =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, 6).ptr;
        std::string text(buffer.data(), end);
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
        ASSERT_EQ(Text(TaviString(number)), text);
    };
    for (int i = 0; i < 10'000; ++i)
    {
        const auto digits = static_cast<double>(random() >> 11);
        const double number = std::ldexp(digits, static_cast<int>(random() % 1100) - 600);
        const double half = static_cast<double>(random() % 4'000'000'000) / 2e6;
        for (const double one : {number, half, std::nextafter(half, 0.0), std::nextafter(half, 1e300)})
        {
            expect(one);
            expect(-one);
        }
        expect(static_cast<double>(i) / 128); // exactly halfway between two texts
    }
}

TEST(TaviString, SumHasTextWhenEitherOperandHas)
{
    const struct
    {
        const char* left;
        const char* right;
        const char* sum;
    } rows[] = {
        {NoText, NoText, NoText}, {NoText, "", ""},
        {"", NoText, ""},         {"", "", ""},
        {"a", NoText, "a"},       {NoText, "b", "b"},
        {"a", "", "a"},           {"", "b", "b"},
        {"a", "b", "ab"},         {"\xE4\xB8", "\xAD", "\xE4\xB8\xAD"},
    };
    for (const auto& row : rows)
    {
        const TaviString left = Key(row.left);
        const TaviString right = Key(row.right);
        const TaviString sum = left + right;
        const std::string what = Text(left) + "+" + Text(right);
        EXPECT_STREQ(sum.c_str(), row.sum) << what;
        EXPECT_STREQ(left.c_str(), row.left) << what;
        EXPECT_STREQ(right.c_str(), row.right) << what;
    }
}

TEST(TaviString, MayBecomeItsOwnSum)
{
    TaviString text = Key("ab");
    text = text + text;
    EXPECT_EQ(Text(text), "abab");
    text = TaviString() + text;
    EXPECT_EQ(Text(text), "abab");
}

TEST(TaviString, OrdersBytewiseWithAPrefixFirst)
{
    const char* const ascending[] = {"",      "\x01",  "A",     "AB", "Aa",       "B",        "a",   "a\x01",
                                     "a\x7F", "a\x80", "a\xFF", "b",  "\x7F\xFF", "\x80\x01", "\xFF"};
    for (std::size_t i = 0; i < std::size(ascending); ++i)
    {
        for (std::size_t j = 0; j < std::size(ascending); ++j)
        {
            const bool isLess = Key(ascending[i]) < Key(ascending[j]);
            EXPECT_EQ(isLess, i < j) << "rows " << i << " and " << j;
        }
    }
}

TEST(TaviString, WithoutTextOrdersAsEmptyText)
{
    const TaviString none;
    const TaviString empty = Key("");
    EXPECT_FALSE(none < empty);
    EXPECT_FALSE(empty < none);
    EXPECT_FALSE(none < none);
    EXPECT_TRUE(none < Key("\x01"));
    EXPECT_FALSE(Key("\x01") < none);
}

TEST(TaviString, IsAKeyOfAnOrderedMap)
{
    std::map<TaviString, int> map;
    map[Key("b")] = 1;
    map[Key("\xC3\xA4")] = 2;
    map[TaviString()] = 3;
    map[Key("a")] = 4;
    map[Key("")] = 5;
    map[Key("b")] = 6;
    std::string content;
    for (const auto& [key, value] : map)
        content += Text(key) + "=" + std::to_string(value) + ";";
    EXPECT_EQ(content, "=5;a=4;b=6;\xC3\xA4=2;");
    EXPECT_FALSE(map.contains(Key("c")));
}
