#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

#include "JsonNode.h"
#include "JsonObject.h"
#include "StringContent.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

constexpr std::size_t WordSize = sizeof(std::uint64_t);

// Of eight bytes, a high bit for the first that does not stand for itself in JSON text: a control character, a quote, a
// backslash, or part of a character beyond ASCII. No bit is set below it; 0 when there is none.
std::uint64_t NotPlain(std::uint64_t bytes)
{
    constexpr std::uint64_t Ones = 0x0101010101010101;
    constexpr std::uint64_t HighBits = 0x80 * Ones;
    const auto below = [](std::uint64_t word, std::uint64_t limit) { return (word - limit * Ones) & ~word; };
    return (below(bytes, 0x20) | below(bytes ^ ('"' * Ones), 1) | below(bytes ^ ('\\' * Ones), 1) | bytes) & HighBits;
}

std::uint64_t WordAt(const char* text)
{
    std::uint64_t word = 0;
    std::memcpy(&word, text, WordSize);
    return word;
}

bool IsPlain(char byte)
{
    return static_cast<unsigned char>(byte) >= 0x20 && static_cast<unsigned char>(byte) < 0x80 && byte != '"' &&
           byte != '\\';
}

// Copies what stands for itself at the beginning of `text` and returns its size. There is room for all of `text`.
std::size_t CopyPlainPrefix(std::string_view text, char* out)
{
    std::size_t at = 0;
    for (; at + WordSize <= text.size(); at += WordSize)
    {
        const std::uint64_t word = WordAt(text.data() + at);
        std::memcpy(out + at, &word, WordSize);
        if (const std::uint64_t notPlain = NotPlain(word))
            return at + static_cast<std::size_t>(std::countr_zero(notPlain)) / 8;
    }
    for (; at < text.size() && IsPlain(text[at]); ++at)
        out[at] = text[at];
    return at;
}

} // namespace

class JsonValue::Node::Writer
{
public:
    Writer() = default;
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void Write(const JsonValue& value);

    std::string_view Text() const { return {begin, static_cast<std::size_t>(end - begin)}; }

private:
    void Append(std::string_view text)
    {
        MakeRoom(text.size());
        end = std::copy(text.begin(), text.end(), end);
    }

    void Append(char character) { Append(std::string_view(&character, 1)); }

    void AppendQuoted(std::string_view text);
    void AppendCharacter(std::string_view bytes, const DecodedCharacter& decoded);

    void MakeRoom(std::size_t size)
    {
        if (static_cast<std::size_t>(roomEnd - end) < size)
            Grow(size);
    }

    void Grow(std::size_t size)
    {
        const std::size_t capacity = 2 * Text().size() + size;
        auto larger = std::make_unique_for_overwrite<char[]>(capacity);
        end = std::copy(begin, end, larger.get());
        allocated = std::move(larger);
        begin = allocated.get();
        roomEnd = begin + capacity;
    }

    std::array<char, 2048> first; // more than a payload takes
    std::unique_ptr<char[]> allocated;
    char* begin = first.data();
    char* end = begin;
    const char* roomEnd = begin + first.size();
};

void JsonValue::Node::Writer::AppendCharacter(std::string_view bytes, const DecodedCharacter& decoded)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
    switch (decoded.character)
    {
    case U'"':
    case U'\\':
        Append('\\');
        Append(bytes);
        break;
    case U'\b':
        Append("\\b");
        break;
    case U'\f':
        Append("\\f");
        break;
    case U'\n':
        Append("\\n");
        break;
    case U'\r':
        Append("\\r");
        break;
    case U'\t':
        Append("\\t");
        break;
    default:
        if (decoded.character < 0x20)
        {
            Append("\\u00");
            Append(hexDigits[decoded.character >> 4]);
            Append(hexDigits[decoded.character & 0xF]);
        }
        else
        {
            Append(decoded.wellFormed ? bytes : replacementCharacter);
        }
    }
}

void JsonValue::Node::Writer::AppendQuoted(std::string_view text)
{
    Append('"');
    for (;;)
    {
        MakeRoom(text.size() + 1);
        const std::size_t plain = CopyPlainPrefix(text, end);
        end += plain;
        text.remove_prefix(plain);
        if (text.empty())
            break;
        const DecodedCharacter decoded = DecodeUtf8(text);
        AppendCharacter(text.substr(0, decoded.length), decoded);
        text.remove_prefix(decoded.length);
    }
    *end++ = '"';
}

void JsonValue::Node::Writer::Write(const JsonValue& value)
{
    switch (KindOf(value))
    {
    case Kind::Null:
        Append("null");
        break;
    case Kind::Boolean:
        Append(BooleanIn(value) ? "true" : "false");
        break;
    case Kind::Integer:
    {
        constexpr std::size_t Longest = std::numeric_limits<long long>::digits10 + 2;
        MakeRoom(Longest);
        end = std::to_chars(end, end + Longest, IntegerIn(value)).ptr;
        break;
    }
    case Kind::Text:
        AppendQuoted(TextIn(value));
        break;
    case Kind::Object:
        Append('{');
        ObjectIn(value)->ForEach(
            [this, separator = false](const Member& member) mutable
            {
                if (std::exchange(separator, true))
                    Append(',');
                AppendQuoted(member.key->View());
                Append(':');
                Write(member.value);
            });
        Append('}');
        break;
    case Kind::Array:
        Append('[');
        for (bool separator = false; const JsonValue& element : *ArrayIn(value))
        {
            if (std::exchange(separator, true))
                Append(',');
            Write(element);
        }
        Append(']');
        break;
    }
}

TaviString JsonValue::Node::JsonText(const JsonValue& value)
{
    Writer writer;
    writer.Write(value);
    return Contents::Of(writer.Text());
}

} // namespace Veltrane::TaviDesktopSDK
