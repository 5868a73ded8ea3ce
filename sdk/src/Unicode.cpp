#include "Unicode.h"

#include <cstdint>
#include <limits>

namespace Veltrane::TaviDesktopSDK
{

namespace
{

constexpr char32_t ReplacementCharacter = 0xFFFD;
constexpr char32_t LargestCharacter = 0x10FFFF;
constexpr bool WideIsUtf16 = sizeof(wchar_t) == 2;

using WideUnit = std::make_unsigned_t<wchar_t>;

bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& text, char32_t character)
{
    const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    const auto appendTrail = [&](int shift) { append(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80)
    {
        append(character);
    }
    else if (character < 0x800)
    {
        append(0xC0 | (character >> 6));
        appendTrail(0);
    }
    else if (character < 0x10000)
    {
        append(0xE0 | (character >> 12));
        appendTrail(6);
        appendTrail(0);
    }
    else
    {
        append(0xF0 | (character >> 18));
        appendTrail(12);
        appendTrail(6);
        appendTrail(0);
    }
}

void AppendWide(std::wstring& text, char32_t character)
{
    if (WideIsUtf16 && character >= 0x10000)
    {
        text.push_back(static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10)));
        text.push_back(static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF)));
    }
    else
    {
        text.push_back(static_cast<wchar_t>(character));
    }
}

} // namespace

std::string Utf8FromWide(std::wstring_view wide)
{
    std::string utf8;
    utf8.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i)
    {
        char32_t character = static_cast<WideUnit>(wide[i]);
        if (IsHighSurrogate(character) && i + 1 < wide.size() && IsLowSurrogate(static_cast<WideUnit>(wide[i + 1])))
        {
            ++i;
            character = 0x10000 + ((character - 0xD800) << 10) + (static_cast<WideUnit>(wide[i]) - 0xDC00U);
        }
        else if (IsHighSurrogate(character) || IsLowSurrogate(character) || character > LargestCharacter)
        {
            character = ReplacementCharacter;
        }
        AppendUtf8(utf8, character);
    }
    return utf8;
}

std::wstring WideFromUtf8(std::string_view utf8)
{
    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty())
    {
        const DecodedCharacter decoded = DecodeUtf8(utf8);
        AppendWide(wide, decoded.character);
        utf8.remove_prefix(decoded.length);
    }
    return wide;
}

DecodedCharacter DecodeUtf8(std::string_view utf8)
{
    const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(utf8[index]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80)
        return {lead, 1, true};

    // The second byte's range is narrower after some leads, which keeps out overlong forms, surrogates and values
    // beyond U+10FFFF (Unicode Standard, table 3-7).
    std::size_t trailCount = 0;
    unsigned char smallestSecond = 0x80;
    unsigned char largestSecond = 0xBF;
    char32_t character = 0;
    if (lead >= 0xC2 && lead <= 0xDF)
    {
        trailCount = 1;
        character = lead & 0x1FU;
    }
    else if (lead >= 0xE0 && lead <= 0xEF)
    {
        trailCount = 2;
        character = lead & 0x0FU;
        smallestSecond = lead == 0xE0 ? 0xA0 : 0x80;
        largestSecond = lead == 0xED ? 0x9F : 0xBF;
    }
    else if (lead >= 0xF0 && lead <= 0xF4)
    {
        trailCount = 3;
        character = lead & 0x07U;
        smallestSecond = lead == 0xF0 ? 0x90 : 0x80;
        largestSecond = lead == 0xF4 ? 0x8F : 0xBF;
    }
    else
    {
        return {ReplacementCharacter, 1, false};
    }

    for (std::size_t i = 1; i <= trailCount; ++i)
    {
        if (i >= utf8.size())
            return {ReplacementCharacter, i, false};
        const unsigned char smallest = i == 1 ? smallestSecond : 0x80;
        const unsigned char largest = i == 1 ? largestSecond : 0xBF;
        if (byteAt(i) < smallest || byteAt(i) > largest)
            return {ReplacementCharacter, i, false};
        character = (character << 6) | (byteAt(i) & 0x3FU);
    }
    return {character, trailCount + 1, true};
}

} // namespace Veltrane::TaviDesktopSDK
