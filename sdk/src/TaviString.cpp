#include <TaviDesktopSDK/TaviString.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "KeyText.h"
#include "StringContent.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

// Sign, digits of the largest double, terminator.
using NumberText = std::array<char, 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1>;

// From here on, a double is a whole number.
constexpr double SmallestWhole = 9007199254740992; // 2 to the power of 53

// In fixed notation, correctly rounded to six decimals, ties to even, without zeros at the end. Takes up to 24 bytes.
char* WriteDecimals(char* out, double magnitude)
{
    auto whole = static_cast<std::uint64_t>(magnitude);
    const double part = magnitude - static_cast<double>(whole);
    // The product's rounding error is known exactly, by way of two halves whose products are exact, so that its
    // rounding to a whole number can be exact as well.
    const double product = part * 1e6;
    const double upperHalf = static_cast<float>(part);
    const double error = (upperHalf * 1e6 - product) + (part - upperHalf) * 1e6;
    auto millionths = static_cast<std::uint32_t>(product);
    const double beyondHalf = (product - millionths - 0.5) + error;
    if (beyondHalf > 0 || (beyondHalf == 0 && millionths % 2 == 1))
        ++millionths;
    if (millionths == 1'000'000)
    {
        millionths = 0;
        ++whole;
    }
    out = std::to_chars(out, out + 20, whole).ptr;
    if (millionths == 0)
        return out;
    *out++ = '.';
    for (; millionths != 0; millionths %= 1'000'000)
    {
        millionths *= 10;
        *out++ = static_cast<char>('0' + millionths / 1'000'000);
    }
    return out;
}

} // namespace

void TaviString::Content::ReleaseDerived(Content& content) noexcept
{
    delete content.wide;
    if (const KeyText* const key = content.key.load(std::memory_order_acquire))
        key->GiveUp();
}

TaviString::TaviString(double value) : TaviString()
{
    NumberText buffer;
    char* const begin = buffer.data();
    char* end = begin;
    if (std::abs(value) < SmallestWhole)
    {
        if (std::signbit(value))
            *end++ = '-';
        end = WriteDecimals(end, std::abs(value));
    }
    else if (std::isnan(value))
    {
        // Systems differ over the sign of what is no number, and it says nothing.
        end = std::copy_n("nan", 3, begin);
    }
    else
    {
        // Without decimals the locale has no say. std::to_chars would have the library load the mathematical one.
        end += std::snprintf(begin, buffer.size(), "%.0f", value);
    }
    content = Content::Make(std::string_view(begin, static_cast<std::size_t>(end - begin)));
}

TaviString::TaviString(const TaviString& other) : TaviString()
{
    if (other.content != nullptr)
        content = Content::Make(Contents::View(other));
}

TaviString& TaviString::operator=(const TaviString& other)
{
    return *this = TaviString(other);
}

void TaviString::SetString(const char* text)
{
    // The new content is complete before the old one goes: `text` may point into it.
    Content::Release(std::exchange(content, text != nullptr ? Content::Make(std::string_view(text)) : nullptr));
}

void TaviString::SetStringW(const wchar_t* text)
{
    if (text == nullptr)
    {
        SetString(nullptr);
        return;
    }
    const std::size_t length = std::wcslen(text);
    Content* made = Content::Make(length);
    char* const narrow = made->Text();
    std::make_unsigned_t<wchar_t> all = 0;
    for (std::size_t i = 0; i < length; ++i)
    {
        all |= static_cast<std::make_unsigned_t<wchar_t>>(text[i]);
        narrow[i] = static_cast<char>(text[i]);
    }
    if (all >= 0x80) // not ASCII
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
        content->wide = new std::wstring(WideFromUtf8(Contents::View(*this)));
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
    std::string text(Contents::View(left));
    text += Contents::View(right);
    return Contents::Of(text);
}

bool operator<(const TaviString& left, const TaviString& right)
{
    return Contents::View(left) < Contents::View(right);
}

} // namespace Veltrane::TaviDesktopSDK
