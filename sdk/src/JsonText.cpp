#include <algorithm>
#include <string>
#include <string_view>

#include "JsonNode.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

// Stands for itself in JSON text.
bool IsPlain(char byte)
{
    return static_cast<unsigned char>(byte) >= 0x20 && static_cast<unsigned char>(byte) < 0x80 && byte != '"' &&
           byte != '\\';
}

void AppendEscaped(std::string& text, char control)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    constexpr std::string_view escaped = "\b\f\n\r\t\"\\";
    constexpr std::string_view letters = "bfnrt\"\\";
    const std::size_t found = escaped.find(control);
    text += '\\';
    if (found != std::string_view::npos)
    {
        text += letters[found];
        return;
    }
    text += "u00";
    text += hexDigits[static_cast<unsigned char>(control) >> 4];
    text += hexDigits[static_cast<unsigned char>(control) & 0xF];
}

void AppendQuoted(std::string& text, std::string_view quoted)
{
    constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
    text += '"';
    while (!quoted.empty())
    {
        const auto plainEnd = std::find_if_not(quoted.begin(), quoted.end(), IsPlain);
        const auto plain = static_cast<std::size_t>(plainEnd - quoted.begin());
        text += quoted.substr(0, plain);
        quoted.remove_prefix(plain);
        if (quoted.empty())
            break;
        const DecodedCharacter decoded = DecodeUtf8(quoted);
        if (decoded.character < 0x80)
            AppendEscaped(text, quoted.front());
        else
            text += decoded.wellFormed ? quoted.substr(0, decoded.length) : replacementCharacter;
        quoted.remove_prefix(decoded.length);
    }
    text += '"';
}

// The members of an object, or the elements of an array, between brackets and commas.
template <typename List, typename Append>
void AppendList(std::string& text, std::string_view brackets, const List& list, const Append& append)
{
    text += brackets.front();
    for (bool isFirst = true; const auto& item : list)
    {
        if (!isFirst)
            text += ',';
        isFirst = false;
        append(item);
    }
    text += brackets.back();
}

} // namespace

void JsonValue::Node::AppendText(std::string& text, const JsonValue& value)
{
    if (value.node == nullptr)
        text += "null";
    else if (const auto* const flag = In<bool>(value))
        text += *flag ? "true" : "false";
    else if (const auto* const number = In<long long>(value))
        text += std::to_string(*number);
    else if (const auto* const string = In<TaviString>(value))
        AppendQuoted(text, ViewOf(*string));
    else if (const auto* const array = In<JsonArray>(value))
        AppendList(text, "[]", *array, [&text](const JsonValue& element) { AppendText(text, element); });
    else if (const auto* const object = In<JsonObject>(value))
        AppendList(text, "{}", object->All(),
                   [&text](const Member& member)
                   {
                       AppendQuoted(text, member.text);
                       text += ':';
                       AppendText(text, member.value);
                   });
}

} // namespace Veltrane::TaviDesktopSDK
