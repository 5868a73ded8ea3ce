#include <TaviDesktopSDK/TaviString.h>

#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "TextView.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

struct TaviString::Content
{
    std::string text;
    std::optional<std::wstring> wide; // made on the first c_strw()
};

TaviString::TaviString(double value) : TaviString()
{
    // Sign, integral digits of the largest double, point, six decimals, terminator.
    std::array<char, 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 6 + 1> buffer{};
    const char* const begin = buffer.data();
    const char* end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size() - 1, value, std::chars_format::fixed, 6).ptr;
    std::string text(begin, end);
    if (text.find('.') != std::string::npos)
    {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    SetString(text.c_str());
}

TaviString::TaviString(const TaviString& other) : TaviString()
{
    if (other.content != nullptr)
        content = new Content{other.content->text, std::nullopt};
}

TaviString& TaviString::operator=(const TaviString& other)
{
    return *this = TaviString(other);
}

void TaviString::SetString(const char* text)
{
    // The new content is complete before the old one goes: `text` may point into it.
    Content* const previous = content;
    content = text != nullptr ? new Content{text, std::nullopt} : nullptr;
    delete previous;
}

void TaviString::SetStringW(const wchar_t* text)
{
    SetString(text != nullptr ? Utf8FromWide(text).c_str() : nullptr);
}

const char* TaviString::c_str() const
{
    return content != nullptr ? content->text.c_str() : nullptr;
}

const wchar_t* TaviString::c_strw() const
{
    if (content == nullptr)
        return nullptr;
    if (!content->wide)
        content->wide = WideFromUtf8(content->text);
    return content->wide->c_str();
}

unsigned long long TaviString::size() const
{
    return content != nullptr ? content->text.size() : 0;
}

TaviString operator+(const TaviString& left, const TaviString& right)
{
    if (left.c_str() == nullptr)
        return right;
    std::string text(ViewOf(left));
    text += ViewOf(right);
    return TaviString(text.c_str());
}

bool operator<(const TaviString& left, const TaviString& right)
{
    return ViewOf(left) < ViewOf(right);
}

} // namespace Veltrane::TaviDesktopSDK
