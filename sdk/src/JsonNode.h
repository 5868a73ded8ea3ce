// What lies behind a value's handle. By the handle's lowest two bits it holds
//
//     00  null (no bit is set), or the address of a node: a longer text, a larger integer, an object, an array
//     01  a text of up to seven bytes: its length above the two bits in the lowest byte, its bytes in the others
//     10  a boolean
//     11  an integer of 62 bits
//
// so that most of what events are made of takes no memory of its own.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include <TaviDesktopSDK/JsonValue.h>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

static_assert(sizeof(void*) == sizeof(std::uint64_t) && std::endian::native == std::endian::little,
              "a short text lies in its handle byte by byte");

struct JsonValue::Node
{
    enum class Kind : std::uint32_t
    {
        Null,
        Boolean,
        Integer,
        Text,
        Object,
        Array,
    };

    struct Integer;
    struct Text;
    struct Object;
    struct Array;

    Kind kind;

    static Kind KindOf(const JsonValue& value)
    {
        switch (Bits(value) & TagMask)
        {
        case TextTag:
            return Kind::Text;
        case BooleanTag:
            return Kind::Boolean;
        case IntegerTag:
            return Kind::Integer;
        default:
            return value.node != nullptr ? value.node->kind : Kind::Null;
        }
    }

    // What the value holds when it is of that kind; null otherwise.
    static Object* ObjectIn(const JsonValue& value);
    static Array* ArrayIn(const JsonValue& value);

    // Of a value of that kind.
    static bool BooleanIn(const JsonValue& value) { return (Bits(value) >> TagBits) != 0; }
    static long long IntegerIn(const JsonValue& value);
    static std::string_view TextIn(const JsonValue& value);

    // Short texts are measured here: that takes less than a call.
    static std::string_view ViewOf(const char* text)
    {
        std::size_t size = 0;
        while (size <= LongestShortText && text[size] != '\0')
            ++size;
        return {text, size <= LongestShortText ? size : size + std::strlen(text + size)};
    }

    // What a handle holds from then on.
    static Node* OfBoolean(bool value) { return FromBits(std::uint64_t{value ? 1U : 0U} << TagBits | BooleanTag); }
    static Node* OfInteger(long long value);
    static Node* OfText(std::string_view text);
    static Node* CopyOf(const JsonValue& value) { return HasNode(value.node) ? CopyOfNode(value) : value.node; }

    static JsonValue Holding(Node* held)
    {
        JsonValue value;
        value.node = held;
        return value;
    }

    // Ends what a handle held.
    static void Release(Node* held) noexcept
    {
        if (HasNode(held))
            ReleaseNode(held);
    }

    static bool AreEqual(const JsonValue& left, const JsonValue& right);

    static TaviString JsonText(const JsonValue& value);

private:
    static constexpr std::uint64_t TagMask = 3;
    static constexpr std::uint64_t TextTag = 1;
    static constexpr std::uint64_t BooleanTag = 2;
    static constexpr std::uint64_t IntegerTag = 3;
    static constexpr int TagBits = 2;
    static constexpr std::size_t LongestShortText = 7;

    static std::uint64_t Bits(const Node* held) { return reinterpret_cast<std::uintptr_t>(held); }
    static std::uint64_t Bits(const JsonValue& value) { return Bits(value.node); }

    static Node* FromBits(std::uint64_t bits)
    {
        return reinterpret_cast<Node*>(bits); // NOLINT(performance-no-int-to-ptr): never followed
    }

    // Both ends of a text as an integer, the first byte lowest; what lies between is read twice.
    template <typename End>
    static std::uint64_t EndsOf(std::string_view text)
    {
        End first = 0;
        End last = 0;
        std::memcpy(&first, text.data(), sizeof(End));
        std::memcpy(&last, text.data() + text.size() - sizeof(End), sizeof(End));
        return first | std::uint64_t{last} << (8 * (text.size() - sizeof(End)));
    }

    static std::uint64_t ShortBytes(std::string_view text)
    {
        if (text.size() >= sizeof(std::uint32_t))
            return EndsOf<std::uint32_t>(text);
        if (text.size() >= sizeof(std::uint16_t))
            return EndsOf<std::uint16_t>(text);
        return text.empty() ? 0 : static_cast<unsigned char>(text.front());
    }

    static bool HasNode(const Node* held) { return held != nullptr && (Bits(held) & TagMask) == 0; }

    static Node* CopyOfNode(const JsonValue& value);
    static void ReleaseNode(Node* node) noexcept;

    class Writer;
};

// One that 62 bits cannot hold.
struct JsonValue::Node::Integer : Node
{
    long long value;
};

// One block: this, and the text.
struct JsonValue::Node::Text : Node
{
    std::size_t size;

    std::string_view View() const { return {reinterpret_cast<const char*>(this + 1), size}; }

    static Text* Make(std::string_view text)
    {
        auto* const made = new (AllocateBlock(BlockSize(text.size()))) Text{{Kind::Text}, text.size()};
        std::copy(text.begin(), text.end(), reinterpret_cast<char*>(made + 1));
        return made;
    }

    static void Release(Text* text) noexcept { FreeBlock(text, BlockSize(text->size)); }

private:
    static std::size_t BlockSize(std::size_t textSize) { return sizeof(Text) + textSize; }
};

// One block: this, and the elements.
struct JsonValue::Node::Array : Node
{
    std::size_t size;

    JsonValue* begin() { return reinterpret_cast<JsonValue*>(this + 1); }
    JsonValue* end() { return begin() + size; }

    // All elements are null.
    static Array* Make(std::size_t size)
    {
        auto* const made = new (AllocateBlock(BlockSize(size))) Array{{Kind::Array}, size};
        std::uninitialized_default_construct_n(made->begin(), size);
        return made;
    }

    static void Release(Array* array) noexcept
    {
        std::destroy(array->begin(), array->end());
        FreeBlock(array, BlockSize(array->size));
    }

private:
    static std::size_t BlockSize(std::size_t size) { return sizeof(Array) + size * sizeof(JsonValue); }
};

inline JsonValue::Node::Array* JsonValue::Node::ArrayIn(const JsonValue& value)
{
    return KindOf(value) == Kind::Array ? static_cast<Array*>(value.node) : nullptr;
}

inline long long JsonValue::Node::IntegerIn(const JsonValue& value)
{
    if (HasNode(value.node))
        return static_cast<const Integer*>(value.node)->value;
    return static_cast<long long>(Bits(value)) >> TagBits;
}

inline std::string_view JsonValue::Node::TextIn(const JsonValue& value)
{
    if (HasNode(value.node))
        return static_cast<const Text*>(value.node)->View();
    return {reinterpret_cast<const char*>(&value.node) + 1, (Bits(value) & 0xFF) >> TagBits};
}

inline JsonValue::Node* JsonValue::Node::OfInteger(long long value)
{
    const auto bits = static_cast<std::uint64_t>(value) << TagBits | IntegerTag;
    if (static_cast<long long>(bits) >> TagBits == value)
        return FromBits(bits);
    return new (AllocateBlock(sizeof(Integer))) Integer{{Kind::Integer}, value};
}

inline JsonValue::Node* JsonValue::Node::OfText(std::string_view text)
{
    if (text.size() > LongestShortText)
        return Text::Make(text);
    return FromBits(ShortBytes(text) << 8 | text.size() << TagBits | TextTag);
}

} // namespace Veltrane::TaviDesktopSDK
