#include <TaviDesktopSDK/TaviString.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cwchar>
#include <iterator>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Blocks.h"
#include "TextView.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

// The header of a block that holds the text and its terminator after it.
struct TaviString::Content
{
    std::size_t size;
    std::wstring* wide; // made on the first c_strw()

    char* Text() { return reinterpret_cast<char*>(this + 1); }

    // The caller fills in the text.
    static Content* Make(std::size_t size)
    {
        auto* const content = new (AllocateBlock(BlockSize(size))) Content{size, nullptr};
        content->Text()[size] = '\0';
        return content;
    }

    static Content* Make(std::string_view text)
    {
        Content* const content = Make(text.size());
        text.copy(content->Text(), text.size());
        return content;
    }

    static void Release(Content* content) noexcept
    {
        if (content == nullptr)
            return;
        delete content->wide;
        FreeBlock(content, BlockSize(content->size));
    }

private:
    static std::size_t BlockSize(std::size_t textSize) { return sizeof(Content) + textSize + 1; }
};

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
    char* end = std::to_chars(begin, begin + buffer.size(), value, std::chars_format::fixed, 6).ptr;
    if (std::isfinite(value))
    {
        end = std::find_if(std::reverse_iterator(end), std::reverse_iterator(begin), [](char c) { return c != '0'; })
                  .base();
        if (end[-1] == '.')
            --end;
    }
    content = Content::Make(std::string_view(begin, static_cast<std::size_t>(end - begin)));
}

TaviString::TaviString(const TaviString& other)
    : content(other.content != nullptr ? Content::Make(ViewOf(other)) : nullptr)
{
}

TaviString& TaviString::operator=(const TaviString& other)
{
    return *this = TaviString(other);
}

void TaviString::SetString(const char* text)
{
    // The new content is complete before the old one goes: `text` may point into it.
    Content* const made = text != nullptr ? Content::Make(std::string_view(text)) : nullptr;
    Content::Release(std::exchange(content, made));
}

void TaviString::SetStringW(const wchar_t* text)
{
    if (text == nullptr)
    {
        SetString(nullptr);
        return;
    }
    // Nearly all text is ASCII, which is copied character by character. Other text is then converted.
    const std::size_t length = std::wcslen(text);
    Content* made = Content::Make(length);
    char* const narrow = made->Text();
    std::make_unsigned_t<wchar_t> allBits = 0;
    for (std::size_t i = 0; i < length; ++i)
    {
        allBits |= static_cast<std::make_unsigned_t<wchar_t>>(text[i]);
        narrow[i] = static_cast<char>(text[i]);
    }
    if (allBits >= 0x80)
    {
        Content::Release(made);
        made = Content::Make(Utf8FromWide({text, length}));
    }
    Content::Release(std::exchange(content, made));
}

const char* TaviString::c_str() const
{
    return content != nullptr ? content->Text() : nullptr;
}

const wchar_t* TaviString::c_strw() const
{
    if (content == nullptr)
        return nullptr;
    if (content->wide == nullptr)
        content->wide = new std::wstring(WideFromUtf8(ViewOf(*this)));
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
    std::string text(ViewOf(left));
    text += ViewOf(right);
    TaviString sum;
    sum.SetString(text.c_str());
    return sum;
}

bool operator<(const TaviString& left, const TaviString& right)
{
    return ViewOf(left) < ViewOf(right);
}

} // namespace Veltrane::TaviDesktopSDK
