// Conversions between UTF-8 and the platform's wide text, independent of the locale.
#pragma once

#include <string>
#include <string_view>

namespace Veltrane::TaviDesktopSDK
{

// wchar_t is a UTF-16 unit or a code point, by its size. A pair of surrogates is one character in either; a lone
// surrogate, or a value beyond U+10FFFF, becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view wide);

// Each ill-formed sequence becomes one U+FFFD, counted as the Unicode Standard recommends (maximal subparts).
std::wstring WideFromUtf8(std::string_view utf8);

struct DecodedCharacter
{
    char32_t character; // U+FFFD when ill-formed
    std::size_t length; // bytes taken, at least 1
    bool wellFormed;
};

// The first character of `utf8`, which is not empty.
DecodedCharacter DecodeUtf8(std::string_view utf8);

} // namespace Veltrane::TaviDesktopSDK
