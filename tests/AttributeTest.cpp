#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

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

TEST(Attribute, EachTypeOfValueHasItsText)
{
    const std::wstring key = L"k";
    const std::wstring text = L"M\u00FCnchen";
    EXPECT_EQ(Listed(Attributes({{key, text}})), "k=M\xC3\xBCnchen;");
    EXPECT_EQ(Listed(Attributes({{key, true}})), "k=True;");
    EXPECT_EQ(Listed(Attributes({{key, false}})), "k=False;");
    EXPECT_EQ(Listed(Attributes({{key, std::numeric_limits<std::int32_t>::min()}})), "k=-2147483648;");
    EXPECT_EQ(Listed(Attributes({{key, std::numeric_limits<std::int64_t>::min()}})), "k=-9223372036854775808;");
    EXPECT_EQ(Listed(Attributes({{key, std::numeric_limits<std::uint64_t>::max()}})), "k=18446744073709551615;");
    EXPECT_EQ(Listed(Attributes({{key, 0.45}})), "k=0.45;");
    EXPECT_EQ(Listed(Attributes({{key, 0.044F}})), "k=0.044;");
}

TEST(Attribute, WithAnEmptyTextIsKept)
{
    const std::wstring key = L"k";
    EXPECT_EQ(Listed(Attributes({{key, L""}})), "k=;");
}

TEST(Attribute, OfTwoWithEqualKeysTheLaterStands)
{
    const std::wstring key = L"k";
    const std::wstring equalKey = L"k";
    const std::wstring otherKey = L"l";
    EXPECT_EQ(Listed(Attributes({{key, 1}, {otherKey, 2}, {key, L"three"}})), "k=three;l=2;");
    EXPECT_EQ(Listed(Attributes({{key, 1}, {otherKey, 2}, {equalKey, L""}})), "k=;l=2;");

    AttributeMap attributes = Attributes({{key, 1}, {otherKey, 2}});
    Attribute(equalKey, false).StoreIn(attributes);
    EXPECT_EQ(Listed(attributes), "k=False;l=2;");
}

// No conversion of a key is kept by its address.
TEST(Attribute, KeyIsConvertedAtEachUse)
{
    std::wstring key = L"before";
    EXPECT_EQ(Listed(Attributes({{key, true}})), "before=True;");
    key = L"behind";
    EXPECT_EQ(Listed(Attributes({{key, true}})), "behind=True;");
}

TEST(Attribute, NoneMakeAnEmptyMap)
{
    EXPECT_TRUE(Attributes({}).empty());
}
