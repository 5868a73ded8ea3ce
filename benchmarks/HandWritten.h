// An engine of Comparison that writes payloads as JSON text straight into a buffer allocated beforehand: the floor,
// which is the least that a report can cost. What is known before the event, the product's description or a document's
// whole payload, is copied as text.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "Comparison.h"

class HandWritten
{
public:
    using Callback = int (*)(std::string_view payload, void* context);

    // A comma follows each member; Close() replaces the last one.
    class Payload
    {
    public:
        explicit Payload(const HandWritten& engine) : Payload(engine, engine.description) {}

        // Starts with `text`.
        Payload(const HandWritten& engine, std::string_view text) : begin(engine.buffer.get()), at(begin)
        {
            Write(text);
        }

        void Add(std::string_view key, std::string_view text)
        {
            WriteKey(key);
            WriteQuoted(text);
            *at++ = ',';
        }

        void Add(std::string_view key, std::int64_t number)
        {
            WriteKey(key);
            at = std::to_chars(at, at + 20, number).ptr;
            *at++ = ',';
        }

        template <typename Fill>
        void AddObject(std::string_view key, const Fill& fill)
        {
            WriteKey(key);
            *at++ = '{';
            fill(*this);
            Close();
            *at++ = ',';
        }

        void Close() { at[-1] = '}'; }

        // All that is written so far, whether the object is closed or not.
        std::string_view Text() const { return {begin, static_cast<std::size_t>(at - begin)}; }

        void Write(std::string_view text)
        {
            std::memcpy(at, text.data(), text.size());
            at += text.size();
        }

    private:
        void WriteKey(std::string_view key)
        {
            *at++ = '"';
            Write(key);
            *at++ = '"';
            *at++ = ':';
        }

        void WriteQuoted(std::string_view text)
        {
            *at++ = '"';
            for (const char byte : text)
            {
                if (static_cast<unsigned char>(byte) >= 0x20 && byte != '"' && byte != '\\')
                    *at++ = byte;
                else
                    WriteEscaped(byte);
            }
            *at++ = '"';
        }

        void WriteEscaped(char byte);

        char* begin;
        char* at;
    };

    using Prepared = std::string;

    HandWritten(const ProductDescription& product, Callback target, void* targetContext);

    void Send(Payload&& payload) const
    {
        payload.Close();
        callback(payload.Text(), context);
    }

    Prepared Prepare(Payload&& payload) const { return std::string(payload.Text()); }
    void SendPrepared(const Prepared& prepared, std::int64_t milliseconds) const;

private:
    // More than any measured event takes.
    static constexpr std::size_t BufferSize = 65536;

    std::unique_ptr<char[]> buffer;
    std::string description; // not closed: a comma follows the last member
    Callback callback;
    void* context;
};

extern template class Comparison<HandWritten>;
