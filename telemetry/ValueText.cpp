#include <telemetry/ValueText.h>

#include <array>
#include <charconv>
#include <type_traits>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

// Short ASCII, which is most of what is reported, stands for itself: converted here, it needs no string of the
// library's.
bool SetShortAscii(JsonValue& member, const std::wstring& text)
{
    std::array<char, 64> narrow;
    if (text.size() >= narrow.size())
        return false;
    char* end = narrow.data();
    std::make_unsigned_t<wchar_t> all = 0;
    for (const wchar_t unit : text)
    {
        all |= static_cast<std::make_unsigned_t<wchar_t>>(unit);
        *end++ = static_cast<char>(unit);
    }
    if (all >= 0x80)
        return false;
    *end = '\0';
    member.SetString(narrow.data());
    return true;
}

template <typename Integer>
void SetDecimal(JsonValue& member, Integer value)
{
    std::array<char, 21> text; // twenty digits, or a sign and nineteen, and a terminator
    *std::to_chars(text.data(), text.data() + text.size(), value).ptr = '\0';
    member.SetString(text.data());
}

} // namespace

TaviString TextOf(const std::wstring& value)
{
    TaviString text;
    text.SetStringW(value.c_str());
    return text;
}

TaviString TextOf(const std::string& value)
{
    return TaviString(value.c_str());
}

TaviString TextOf(std::int64_t value)
{
    return TextOf(std::to_string(value));
}

TaviString TextOf(std::uint64_t value)
{
    return TextOf(std::to_string(value));
}

void SetText(JsonValue& member, const std::wstring& value)
{
    if (!SetShortAscii(member, value))
        member.SetString(TextOf(value).c_str());
}

void SetText(JsonValue& member, std::int64_t value)
{
    SetDecimal(member, value);
}

void SetText(JsonValue& member, std::uint64_t value)
{
    SetDecimal(member, value);
}

void SetText(JsonValue& member, double value)
{
    member.SetString(TaviString(value).c_str());
}
