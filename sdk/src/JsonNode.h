// What lies behind a value's handle. Scalars and texts are never changed, and so shared by a value and its copies; an
// object or an array belongs to one value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <TaviDesktopSDK/JsonValue.h>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

struct JsonValue::Node
{
    enum class Kind : std::uint32_t
    {
        Boolean,
        Integer,
        Text,
        Array,
        Object,
    };

    struct Boolean;
    struct Integer;
    struct Text;
    struct Array;
    struct Object;
    struct Member;

    explicit Node(Kind ofThis) : kind(ofThis) {}

    Kind kind;
    unsigned owners = 1;

    // Null when the value is of another kind.
    template <typename OfKind>
    static OfKind* In(const JsonValue& value)
    {
        Node* const node = value.node;
        return node != nullptr && node->kind == OfKind::KindOfThis ? static_cast<OfKind*>(node) : nullptr;
    }

    static JsonValue Holding(Node* node)
    {
        JsonValue value;
        value.node = node;
        return value;
    }

    static Node* CopyOf(Node* node)
    {
        if (node == nullptr)
            return nullptr;
        if (node->kind >= Kind::Array)
            return DeepCopyOf(*node);
        ++node->owners;
        return node;
    }

    static void Release(Node* node) noexcept
    {
        if (node != nullptr && --node->owners == 0)
            Delete(node);
    }

    static bool AreEqual(const JsonValue& left, const JsonValue& right);
    static void AppendJson(std::string& json, const JsonValue& value);

    friend void AddMembers(JsonValue& into, const JsonValue& from) { CopyMembers(into, from); }
    friend void AddMembers(JsonValue& into, JsonValue&& from) { MoveMembers(into, from); }

private:
    static void CopyMembers(JsonValue& into, const JsonValue& from);
    static void MoveMembers(JsonValue& into, JsonValue& from);
    static Node* DeepCopyOf(const Node& node);
    static void Delete(Node* node) noexcept;
};

// Adds the members of the object `from` to `into`, replacing those of the same key. Any other `from` has none.
void AddMembers(JsonValue& into, const JsonValue& from);
void AddMembers(JsonValue& into, JsonValue&& from);

struct JsonValue::Node::Boolean : Node, InBlocks
{
    static constexpr Kind KindOfThis = Kind::Boolean;

    explicit Boolean(bool flag) : Node(KindOfThis), value(flag) {}

    bool value;
};

struct JsonValue::Node::Integer : Node, InBlocks
{
    static constexpr Kind KindOfThis = Kind::Integer;

    explicit Integer(long long number) : Node(KindOfThis), value(number) {}

    long long value;
};

// One block: this, and the text.
struct JsonValue::Node::Text : Node
{
    static constexpr Kind KindOfThis = Kind::Text;

    explicit Text(std::size_t bytes) : Node(KindOfThis), size(bytes) {}

    std::size_t size;

    std::string_view View() const { return {reinterpret_cast<const char*>(this + 1), size}; }

    static Text* Make(std::string_view text)
    {
        auto* const made = new (AllocateBlock(sizeof(Text) + text.size())) Text(text.size());
        text.copy(reinterpret_cast<char*>(made + 1), text.size());
        return made;
    }
    static void Delete(Text* text) noexcept { FreeBlock(text, sizeof(Text) + text->size); }
};

struct JsonValue::Node::Array : Node, InBlocks
{
    static constexpr Kind KindOfThis = Kind::Array;

    Array() : Node(KindOfThis) {}

    std::vector<JsonValue> elements;
};

} // namespace Veltrane::TaviDesktopSDK
