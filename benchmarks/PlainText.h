// The text of a typed value, for the comparisons: all of them convert by this, into a buffer of its own, and copy from
// it. Wide text as UTF-8, what is ill-formed in it as U+FFFD; integers in decimal; floating point with six decimals
// less the trailing zeros; "True" and "False".
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

    std::array<char, 256> buffer; // not cleared: only what `text` shows has a value
    std::string longText;         // what does not fit into the buffer
    std::string_view text;
};
