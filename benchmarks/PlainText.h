// The text of a typed value; all engines of Comparison convert by this and copy the text. Wide text becomes UTF-8, what
// is ill-formed in it U+FFFD; integers are decimal; floating point has six decimals without trailing zeros; booleans
// are "True" and "False".
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class PlainText
{
public:
    explicit PlainText(const std::wstring& value);
    explicit PlainText(std::int32_t value);
    explicit PlainText(std::uint32_t value);
    explicit PlainText(std::int64_t value);
    explicit PlainText(std::uint64_t value);
    explicit PlainText(double value);
    explicit PlainText(std::same_as<bool> auto value) : text(value ? "True" : "False") {}

    PlainText(const PlainText&) = delete;
    PlainText& operator=(const PlainText&) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): stands for the text at the call.
    operator std::string_view() const { return text; }

private:
    void Assign(auto number);

    std::array<char, 256> buffer; // uninitialized, but for what `text` refers to
    std::string longText;         // a text that does not fit into the buffer
    std::string_view text;
};
