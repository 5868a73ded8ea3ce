// A payload as JSON text, written straight into a buffer of fixed size, for Comparison: the floor, which is the least
// that a report can cost. A measured payload fits into the buffer, and none of its texts needs an escape.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>

class WrittenText
{
public:
    using Finished = std::string_view;

    WrittenText() { buffer[0] = '{'; }
    WrittenText(const WrittenText& other) : size(other.size) { std::memcpy(buffer.data(), other.buffer.data(), size); }
    WrittenText& operator=(const WrittenText&) = delete;

    // A comma follows each member.
    void Add(std::string_view key, std::string_view text)
    {
        WriteKey(key);
        Write("\"");
        for (const char byte : text)
        {
            if (static_cast<unsigned char>(byte) < 0x20 || byte == '"' || byte == '\\')
                throw std::invalid_argument("A measured text needs an escape");
            buffer[size++] = byte;
        }
        Write("\",");
    }

    void Add(std::string_view key, std::int64_t number)
    {
        WriteKey(key);
        char* const begin = buffer.data() + size;
        size += static_cast<std::size_t>(std::to_chars(begin, begin + 20, number).ptr - begin);
        Write(",");
    }

    void AddObject(std::string_view key, const auto& fill)
    {
        WriteKey(key);
        Write("{");
        fill(*this);
        Finish();
        Write(",");
    }

    // Replaces the last comma.
    std::string_view Finish()
    {
        buffer[size - 1] = '}';
        return {buffer.data(), size};
    }

private:
    void WriteKey(std::string_view key)
    {
        Write("\"");
        Write(key);
        Write("\":");
    }

    void Write(std::string_view text)
    {
        std::memcpy(buffer.data() + size, text.data(), text.size());
        size += text.size();
    }

    std::array<char, 4096> buffer; // initialized up to `size`
    std::size_t size = 1;
};
