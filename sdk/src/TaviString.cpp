#include <TaviDesktopSDK/TaviString.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <cwchar>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Node.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

TaviString::TaviString(double value) : TaviString()
{
    if (std::isnan(value))
    {
        // The sign of a NaN has no meaning, and systems print it differently.
        SetString("nan");
        return;
    }
    // Sign, digits of the largest double, point, six decimals.
    std::array<char, 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 6> buffer;
    char* const begin = buffer.data();
    const char* const end = std::to_chars(begin, begin + buffer.size(), value, std::chars_format::fixed, 6).ptr;
    std::string_view digits(begin, static_cast<std::size_t>(end - begin));
    digits = digits.substr(0, digits.find_last_not_of('0') + 1); // "inf" has none
    if (digits.back() == '.')
        digits.remove_suffix(1);
    content = Text::Make(digits);
}

TaviString::TaviString(const TaviString& other) : content(Node::Share(other.content)) {}

TaviString& TaviString::operator=(const TaviString& other)
{
    return *this = TaviString(other);
}

void TaviString::SetString(const char* text)
{
    // The new text is complete before the old one goes: `text` may point into it.
    Text* const made = text != nullptr ? Text::Make(std::string_view(text)) : nullptr;
    Node::Release(std::exchange(content, made));
}

void TaviString::SetStringW(const wchar_t* text)
{
    if (text == nullptr)
        return SetString(nullptr);
    // Nearly all text is ASCII, which is copied character by character. Other text is then converted.
    const std::size_t length = std::wcslen(text);
    Text* made = Text::Make(length);
    char* const narrow = made->Bytes();
    std::make_unsigned_t<wchar_t> allBits = 0;
    for (std::size_t i = 0; i < length; ++i)
    {
        allBits |= static_cast<std::make_unsigned_t<wchar_t>>(text[i]);
        narrow[i] = static_cast<char>(text[i]);
    }
    if (allBits >= 0x80)
    {
        Node::Release(made);
        made = Text::Make(Utf8FromWide({text, length}));
    }
    Node::Release(std::exchange(content, made));
}

const char* TaviString::c_str() const
{
    return content != nullptr ? content->Bytes() : nullptr;
}

const wchar_t* TaviString::c_strw() const
{
    if (content == nullptr)
        return nullptr;
    if (content->wide == nullptr)
        content->wide = new std::wstring(WideFromUtf8(content->View()));
    return content->wide->c_str();
}

unsigned long long TaviString::size() const
{
    return content != nullptr ? content->size : 0;
}

TaviString operator+(const TaviString& left, const TaviString& right)
{
    if (left.c_str() == nullptr)
        return right;
    std::string joined(left.c_str());
    if (right.c_str() != nullptr)
        joined += right.c_str();
    TaviString sum;
    sum.SetString(joined.c_str());
    return sum;
}

bool operator<(const TaviString& left, const TaviString& right)
{
    const auto textOf = [](const TaviString& string) { return string.c_str() != nullptr ? string.c_str() : ""; };
    return std::strcmp(textOf(left), textOf(right)) < 0;
}

} // namespace Veltrane::TaviDesktopSDK
