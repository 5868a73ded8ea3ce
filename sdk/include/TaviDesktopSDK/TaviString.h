// The telemetry library's owning 8-bit string, one pointer-sized handle.
//
// Content is UTF-8 by convention; 8-bit input is kept byte for byte, well-formed or not. Text ends at the first null
// character. A string that was never given text, or was given a null pointer, has no text: c_str() is null. A string
// that was given "" has text: c_str() is "" and size() is 0.
//
// All strings and values share memory inside the library: while one thread uses any of them, no other thread may use
// another one.
#pragma once

#include <TaviDesktopSDK/Export.h>

namespace Veltrane::TaviDesktopSDK
{

class TaviString
{
public:
    TaviString() noexcept : content(nullptr) {}

    // The number's text: fixed notation rounded to six decimals as printf's "%f" has it, without trailing zeros and
    // without a trailing point (0.45, 1.12, 0, -0, inf, -inf, nan), whatever the process's locale. Any number converts,
    // integers and booleans too.
    TAVI_SDK_API TaviString(double value);

    TAVI_SDK_API TaviString(const TaviString& other);

    TaviString(TaviString&& other) noexcept : content(other.content) { other.content = nullptr; }

    ~TaviString()
    {
        if (content != nullptr)
            SetString(nullptr);
    }

    TAVI_SDK_API TaviString& operator=(const TaviString& other);

    TaviString& operator=(TaviString&& other) noexcept
    {
        if (this != &other)
        {
            SetString(nullptr);
            content = other.content;
            other.content = nullptr;
        }
        return *this;
    }

    // Replaces the content with a copy of the null-terminated `text`, which may lie inside the present content.
    // A null pointer releases the content.
    TAVI_SDK_API void SetString(const char* text);

    // Converts wide text: UTF-16 where wchar_t has 16 bits, UTF-32 where it has 32. A pair of surrogates is one
    // character in either; a lone surrogate, or a value beyond U+10FFFF, becomes U+FFFD.
    TAVI_SDK_API void SetStringW(const wchar_t* text);

    // Null-terminated, or null when the string has no text. Valid until the string is changed or destroyed.
    TAVI_SDK_API const char* c_str() const;

    // The content as wide text, with U+FFFD for each ill-formed sequence; null, and valid, as c_str().
    TAVI_SDK_API const wchar_t* c_strw() const;

    // In bytes, without the terminator; 0 when the string has no text.
    TAVI_SDK_API unsigned long long size() const;

private:
    friend class JsonValue;

    struct Node;
    struct Text;

    Text* content; // shared with copies and with values
};

static_assert(sizeof(TaviString) == sizeof(void*), "TaviString is one pointer-sized handle");

// The sum has text if either operand has.
TAVI_SDK_API TaviString operator+(const TaviString& left, const TaviString& right);

// Compares bytes as unsigned values; a prefix is less than the longer text. A string without text equals "".
TAVI_SDK_API bool operator<(const TaviString& left, const TaviString& right);

} // namespace Veltrane::TaviDesktopSDK
