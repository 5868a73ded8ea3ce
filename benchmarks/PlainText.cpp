#include "PlainText.h"

#include <charconv>

namespace
{

constexpr char32_t ReplacementCharacter = 0xFFFD;

bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The character at `at`, for which a pair of surrogates counts as one; moves `at` beyond it.
char32_t TakeCharacter(const wchar_t*& at, const wchar_t* end)
{
    const auto unit = static_cast<char32_t>(*at++);
    if (IsHighSurrogate(unit) && at != end && IsLowSurrogate(static_cast<char32_t>(*at)))
        return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(*at++) - 0xDC00);
    return IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit > 0x10FFFF ? ReplacementCharacter : unit;
}

// Writes at most four bytes for each unit of `wide`. Returns the end of what it wrote.
char* WriteUtf8(char* out, const std::wstring& wide)
{
    const wchar_t* at = wide.data();
    const wchar_t* const end = at + wide.size();
    while (at != end)
    {
        const char32_t character = TakeCharacter(at, end);
        if (character < 0x80)
        {
            *out++ = static_cast<char>(character);
            continue;
        }
        if (character < 0x800)
        {
            *out++ = static_cast<char>(0xC0 | (character >> 6));
        }
        else
        {
            if (character < 0x10000)
            {
                *out++ = static_cast<char>(0xE0 | (character >> 12));
            }
            else
            {
                *out++ = static_cast<char>(0xF0 | (character >> 18));
                *out++ = static_cast<char>(0x80 | ((character >> 12) & 0x3F));
            }
            *out++ = static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        }
        *out++ = static_cast<char>(0x80 | (character & 0x3F));
    }
    return out;
}

} // namespace

PlainText::PlainText(const std::wstring& value)
{
    char* out = buffer.data();
    if (4 * value.size() > buffer.size())
    {
        longText.resize(4 * value.size());
        out = longText.data();
    }
    text = {out, static_cast<std::size_t>(WriteUtf8(out, value) - out)};
}

PlainText::PlainText(std::int32_t value)
{
    Assign(value);
}

PlainText::PlainText(std::uint32_t value)
{
    Assign(value);
}

PlainText::PlainText(std::int64_t value)
{
    Assign(value);
}

PlainText::PlainText(std::uint64_t value)
{
    Assign(value);
}

PlainText::PlainText(double value)
{
    // The measured values are small: their text fits into the buffer.
    const char* const begin = buffer.data();
    const char* end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 6).ptr;
    while (end[-1] == '0')
        --end;
    if (end[-1] == '.')
        --end;
    text = {begin, static_cast<std::size_t>(end - begin)};
}

void PlainText::Assign(auto number)
{
    const char* const begin = buffer.data();
    const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    text = {begin, static_cast<std::size_t>(end - begin)};
}
