// Covers what the prober's calls leave open: those prove each type of value.
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <telemetry/Attributes.h>

#include "Text.h"

using namespace Corvane;

namespace
{

// A literal, or any other temporary, is no key.
template <typename Name>
constexpr bool IsAKey = std::is_constructible_v<Attribute, Name, bool>;
static_assert(IsAKey<const std::wstring&> && IsAKey<std::wstring&>);
static_assert(!IsAKey<const wchar_t (&)[4]> && !IsAKey<std::wstring> && !IsAKey<const std::wstring>);

// A pointer does not convert to a flag, nor a character to a number.
template <typename Value>
concept HasText = (requires(Value value) { TextOf(value); });
static_assert(HasText<const char*> && HasText<bool> && !HasText<const void*>);
static_assert(!AttributeValue<const void*> && !AttributeValue<const wchar_t*> && !AttributeValue<wchar_t>);

} // namespace

TEST(Attribute, TextEndsAtItsFirstNullCharacter)
{
    using namespace std::string_literals;
    const std::wstring key = L"key\0end"s;
    const std::pair<std::wstring, std::string> rows[] = {
        {L"before\0after"s, "before"}, {L"\0after"s, ""}, {{wchar_t{0xD83D}, L'a'}, "\xEF\xBF\xBD"s + "a"}};
    for (const auto& [text, sent] : rows)
        EXPECT_STREQ(Attributes({{key, text}}).at(Key("key")).c_str(), sent.c_str());
    EXPECT_STREQ(TextOf("narrow\0text"s).c_str(), "narrow");
}

TEST(Attribute, OfSeveralWithOneKeyTheLastIsKept)
{
    const std::wstring key = L"key";
    const std::wstring other = L"other";
    const AttributeMap attributes = Attributes({{key, other}, {other, false}, {key, true}});
    EXPECT_EQ(attributes.size(), 2U);
    EXPECT_STREQ(attributes.at(Key("key")).c_str(), "True");
    EXPECT_STREQ(attributes.at(Key("other")).c_str(), "False");
}
