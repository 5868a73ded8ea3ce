// The text of a typed value, which both engines of Comparison copy. Wide text becomes UTF-8, with U+FFFD for what is
// ill-formed; integers are decimal; floating point has six decimals without trailing zeros; booleans are "True" and
// "False". The text has at most 256 bytes, four for each unit of wide text: the measured ones are shorter.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <stdexcept>
#include <string>
#include <string_view>

class PlainText
{
public:
    explicit PlainText(const std::wstring& value)
    {
        if (4 * value.size() > buffer.size())
            throw std::length_error("A measured text is too long");
        text = {buffer.data(), WriteUtf8(buffer.data(), value)};
    }

    explicit PlainText(bool value) : text(value ? "True" : "False") {}

    explicit PlainText(std::integral auto value)
    {
        text = {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
    }

    explicit PlainText(double value)
    {
        const char* end =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 6).ptr;
        while (end[-1] == '0')
            --end;
        if (end[-1] == '.')
            --end;
        text = {buffer.data(), end};
    }

    PlainText(const PlainText&) = delete;
    PlainText& operator=(const PlainText&) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): converts to its text in a call.
    operator std::string_view() const { return text; }

private:
    // Whether `unit` is one of the 1024 surrogates from `first` on.
    static bool IsSurrogate(char32_t unit, char32_t first) { return unit - first < 0x400; }

    // Returns the character at `at`, where a pair of surrogates is one character, and moves `at` beyond it.
    static char32_t TakeCharacter(const wchar_t*& at, const wchar_t* end)
    {
        const auto unit = static_cast<char32_t>(*at++);
        if (IsSurrogate(unit, 0xD800) && at != end && IsSurrogate(static_cast<char32_t>(*at), 0xDC00))
            return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(*at++) - 0xDC00);
        return IsSurrogate(unit, 0xD800) || IsSurrogate(unit, 0xDC00) || unit > 0x10FFFF ? 0xFFFD : unit;
    }

    // Returns the end of what it wrote.
    static char* WriteUtf8(char* out, const std::wstring& wide)
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
            const unsigned further = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
            *out++ = static_cast<char>((0xF00 >> further) | (character >> (6 * further)));
            for (unsigned left = further; left-- > 0;)
                *out++ = static_cast<char>(0x80 | ((character >> (6 * left)) & 0x3F));
        }
        return out;
    }

    std::array<char, 256> buffer; // initialized only where `text` refers to it
    std::string_view text;
};
