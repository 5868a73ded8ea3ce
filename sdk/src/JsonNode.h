// What a value's handle points to. Booleans, integers and texts are never changed, and a value shares them with its
// copies; an object or an array has one owner.
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

    explicit Node(Kind ofNode) : kind(ofNode) {}

    Kind kind;
    unsigned owners = 1;

    // Null when the value is of another kind.
    template <typename NodeType>
    static NodeType* As(const JsonValue& value)
    {
        Node* const node = value.node;
        return node != nullptr && node->kind == NodeType::OwnKind ? static_cast<NodeType*>(node) : nullptr;
    }

    // A value that takes over ownership of `node`.
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

private:
    static void CopyMembers(JsonValue& into, const JsonValue& from);
    static Node* DeepCopyOf(const Node& node);
    static void Delete(Node* node) noexcept;
};

// Adds the members of `from` to `into`, replacing those of the same key. A `from` that is no object has no members.
void AddMembers(JsonValue& into, const JsonValue& from);

struct JsonValue::Node::Boolean : Node, InBlocks
{
    static constexpr Kind OwnKind = Kind::Boolean;

    explicit Boolean(bool flag) : Node(OwnKind), value(flag) {}

    bool value;
};

struct JsonValue::Node::Integer : Node, InBlocks
{
    static constexpr Kind OwnKind = Kind::Integer;

    explicit Integer(long long number) : Node(OwnKind), value(number) {}

    long long value;
};

struct JsonValue::Node::Text : Node, InBlocks
{
    static constexpr Kind OwnKind = Kind::Text;

    explicit Text(std::string_view text) : Node(OwnKind), value(text) {}

    std::string value;
};

struct JsonValue::Node::Array : Node, InBlocks
{
    static constexpr Kind OwnKind = Kind::Array;

    Array() : Node(OwnKind) {}

    std::vector<JsonValue> elements;
};

} // namespace Veltrane::TaviDesktopSDK
