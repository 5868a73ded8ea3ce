#include <algorithm>
#include <string>
#include <string_view>

#include "Node.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

// Whether JSON text contains the byte unchanged.
bool IsPlain(char byte)
{
    return static_cast<unsigned char>(byte) >= 0x20 && static_cast<unsigned char>(byte) < 0x80 && byte != '"' &&
           byte != '\\';
}

void AppendEscaped(std::string& json, char control)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    constexpr std::string_view escaped = "\b\f\n\r\t\"\\";
    constexpr std::string_view letters = "bfnrt\"\\";
    const std::size_t found = escaped.find(control);
    json += '\\';
    if (found != std::string_view::npos)
    {
        json += letters[found];
        return;
    }
    json += "u00";
    json += hexDigits[static_cast<unsigned char>(control) >> 4];
    json += hexDigits[static_cast<unsigned char>(control) & 0xF];
}

void AppendQuoted(std::string& json, std::string_view text)
{
    constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
    json += '"';
    while (!text.empty())
    {
        const auto plain = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsPlain) - text.begin());
        json += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty())
            break;
        const DecodedCharacter decoded = DecodeUtf8(text);
        if (decoded.character < 0x80)
            AppendEscaped(json, text.front());
        else
            json += decoded.wellFormed ? text.substr(0, decoded.length) : replacementCharacter;
        text.remove_prefix(decoded.length);
    }
    json += '"';
}

} // namespace

void TaviString::Node::AppendJson(std::string& json, const JsonValue& value)
{
    const Node* const node = value.node;
    if (node == nullptr)
    {
        json += "null";
        return;
    }
    switch (node->kind)
    {
    case Kind::Boolean:
        json += static_cast<const Number*>(node)->value != 0 ? "true" : "false";
        break;
    case Kind::Integer:
        json += std::to_string(static_cast<const Number*>(node)->value);
        break;
    case Kind::Text:
        AppendQuoted(json, static_cast<const Text*>(node)->View());
        break;
    case Kind::Array:
        json += '[';
        for (const JsonValue& element : static_cast<const Array*>(node)->elements)
        {
            if (json.back() != '[')
                json += ',';
            AppendJson(json, element);
        }
        json += ']';
        break;
    case Kind::Object:
        json += '{';
        for (const Member* member = static_cast<const Object*>(node)->first; member != nullptr; member = member->next)
        {
            AppendQuoted(json, member->key->View());
            json += ':';
            AppendJson(json, member->value);
            if (member->next != nullptr)
                json += ',';
        }
        json += '}';
        break;
    }
}

} // namespace Veltrane::TaviDesktopSDK
