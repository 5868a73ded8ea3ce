#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <telemetry/Attribute.h>

#include "Text.h"

using namespace Corvane;

namespace
{

template <typename Name, typename... Values>
constexpr bool IsTakenWithAll = (std::is_constructible_v<Attribute, Name, Values> && ...);
template <typename Name, typename... Values>
constexpr bool IsTakenWithAny = (std::is_constructible_v<Attribute, Name, Values> || ...);

// Whether an Attribute can be made of a key of this type and a value of each of its types, or of any of them.
template <typename Name>
constexpr bool IsAKey = IsTakenWithAll<Name, const std::wstring&, std::wstring, const wchar_t (&)[4], bool,
                                       std::int32_t, std::int64_t, std::uint64_t, float, double>;
template <typename Name>
constexpr bool MayBeAKey = IsTakenWithAny<Name, const std::wstring&, std::wstring, const wchar_t (&)[4], bool,
                                          std::int32_t, std::int64_t, std::uint64_t, float, double>;

static_assert(IsAKey<const std::wstring&>);
static_assert(!MayBeAKey<const wchar_t (&)[4]> && !MayBeAKey<const wchar_t*>);
static_assert(!MayBeAKey<std::wstring> && !MayBeAKey<const std::wstring>);

// A pointer does not convert to a flag, and 8-bit text is no type of an attribute's value.
static_assert(!IsTakenWithAny<const std::wstring&, const void*, const char*, const char (&)[4]>);

// "key=text;" for each in the order of the map, with "none" for no text.
std::string Listed(const AttributeMap& attributes)
{
    std::string list;
    for (const auto& [key, text] : attributes)
        list += Text(key) + "=" + (text.c_str() != nullptr ? Text(text) : "none") + ";";
    return list;
}

} // namespace

// What the prober's calls leave open: they are plain text and decimals of few places.
TEST(Attribute, AnyTextIsUtf8UpToItsFirstNullCharacter)
{
    using namespace std::string_literals;
    constexpr wchar_t High = 0xD83D;
    constexpr wchar_t Low = 0xDE00;
    std::string longText;
    for (int i = 0; i < 1'000'000; ++i)
        longText += "\xC3\xBC";
    const struct
    {
        std::wstring text;
        std::string utf8;
    } rows[] = {
        {{L'a', High, L'b'}, "a\xEF\xBF\xBD"s + "b"},
        {{Low, High}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {{High, Low}, "\xF0\x9F\x98\x80"},
        {L"before\0after"s, "before"},
        {L"\0after"s, ""},
        {L"\"'\\/\b\f\n\r\t\x01\x1F\x7F<&>{}[]:,%s", "\"'\\/\b\f\n\r\t\x01\x1F\x7F<&>{}[]:,%s"},
        {std::wstring(1'000'000, L'\u00FC'), longText},
    };
    const std::wstring key = L"k";
    for (const auto& [text, utf8] : rows)
        EXPECT_TRUE(Listed(Attributes({{key, text}})) == "k=" + utf8 + ";") << utf8.substr(0, 20);
}

TEST(Attribute, AnyDecimalHasSixPlacesAtMost)
{
    using Limits = std::numeric_limits<double>;
    const std::pair<double, std::string> rows[] = {
        {-0.0, "-0"},
        {2.0 / 3.0, "0.666667"},
        {1e-7, "0"},
        {1e22, "10000000000000000000000"},
        {Limits::infinity(), "inf"},
        {Limits::quiet_NaN(), "nan"},
    };
    const std::wstring key = L"k";
    for (const auto& [number, text] : rows)
        EXPECT_EQ(Listed(Attributes({{key, number}})), "k=" + text + ";");
}

// No conversion of a key is kept by its address.
TEST(Attribute, KeyIsConvertedAtEachUse)
{
    std::wstring key = L"before";
    EXPECT_EQ(Listed(Attributes({{key, true}})), "before=True;");
    key = L"behind";
    EXPECT_EQ(Listed(Attributes({{key, true}})), "behind=True;");
}
