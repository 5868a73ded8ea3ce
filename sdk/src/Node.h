// The nodes that strings and values point to. Texts, numbers and arrays never change, so copies share them, and a
// member's key is the text of the string under which it was added. An object has one owner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <TaviDesktopSDK/JsonValue.h>
#include <TaviDesktopSDK/TaviString.h>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

// Adds the members of `from` to `into`, replacing those of the same key. A `from` that is no object has no members.
void AddMembers(JsonValue& into, JsonValue from);

struct TaviString::Node
{
    enum class Kind : std::uint32_t
    {
        Boolean,
        Integer,
        Text,
        Array,
        Object,
    };

    struct Number;
    struct Array;
    struct Member;
    struct Object;

    explicit Node(Kind ofNode) : kind(ofNode) {}

    Kind kind;
    unsigned owners = 1;

    // Null if the value is of another kind.
    template <typename NodeType>
    static NodeType* As(const JsonValue& value)
    {
        Node* const node = value.node;
        return node != nullptr && node->kind == NodeType::OwnKind ? static_cast<NodeType*>(node) : nullptr;
    }

    // Adds an owner to `node`, which may be null.
    template <typename NodeType>
    static NodeType* Share(NodeType* node)
    {
        if (node != nullptr)
            ++node->owners;
        return node;
    }

    template <typename NodeType>
    static void Release(NodeType* node) noexcept
    {
        if (node != nullptr && --node->owners == 0)
            NodeType::Delete(node);
    }

    // The node of a copy of the value that points to `node`.
    static Node* CopyOf(Node* node)
    {
        return node != nullptr && node->kind == Kind::Object ? DeepCopyOf(*node) : Share(node);
    }

    static bool AreEqual(const JsonValue& left, const JsonValue& right);
    static void AppendJson(std::string& json, const JsonValue& value);

private:
    static Node* DeepCopyOf(const Node& node);
    static void Delete(Node* node) noexcept;
};

// An integer, or a boolean as 0 or 1.
struct TaviString::Node::Number : Node, BlockAllocated
{
    Number(Kind ofNode, long long number) : Node(ofNode), value(number) {}

    long long value;
};

// The header of a block that holds the text and its terminator after it.
struct TaviString::Text : Node
{
    static constexpr Kind OwnKind = Kind::Text;

    std::size_t size;
    std::wstring* wide = nullptr; // made on the first c_strw()

    char* Bytes() { return reinterpret_cast<char*>(this + 1); }
    std::string_view View() const { return {reinterpret_cast<const char*>(this + 1), size}; }

    // Empty for a string without text. Valid until the string is changed or destroyed.
    static std::string_view ViewOf(const TaviString& string)
    {
        return string.content != nullptr ? string.content->View() : std::string_view();
    }

    // The caller fills in the bytes.
    static Text* Make(std::size_t size)
    {
        auto* const text = new (AllocateBlock(BlockSize(size))) Text(size);
        text->Bytes()[size] = '\0';
        return text;
    }

    static Text* Make(std::string_view bytes)
    {
        Text* const text = Make(bytes.size());
        bytes.copy(text->Bytes(), bytes.size());
        return text;
    }

    static void Delete(Text* text) noexcept
    {
        delete text->wide;
        FreeBlock(text, BlockSize(text->size));
    }

private:
    explicit Text(std::size_t length) : Node(OwnKind), size(length) {}

    static std::size_t BlockSize(std::size_t textSize) { return sizeof(Text) + textSize + 1; }
};

struct TaviString::Node::Array : Node, BlockAllocated
{
    static constexpr Kind OwnKind = Kind::Array;

    Array() : Node(OwnKind) {}

    std::vector<JsonValue> elements;
};

struct TaviString::Node::Member : BlockAllocated
{
    explicit Member(const TaviString& ofMember)
        : key(ofMember.content != nullptr ? Share(ofMember.content) : Text::Make(0))
    {
    }
    Member(const Member& other) : key(Share(other.key)), value(other.value) {}
    Member& operator=(const Member&) = delete;
    ~Member() { Release(key); }

    Text* key;
    JsonValue value;
    Member** link = nullptr; // the pointer to this member: the previous member's `next`, or the object's `first`
    Member* next = nullptr;
};

// A list of members in the order in which they were added. A member keeps its address until it is removed. Up to 32
// members are found by a linear search, more by an index.
struct TaviString::Node::Object : Node, BlockAllocated
{
    static constexpr Kind OwnKind = Kind::Object;

    Object() : Node(OwnKind) {}
    ~Object();

    // Null if the object has no such member.
    Member* Find(std::string_view key) const
    {
        if (index != nullptr)
            return FindInIndex(key);
        Member* member = first;
        while (member != nullptr && member->key->View() != key)
            member = member->next;
        return member;
    }

    // The object must not have a member of this key.
    Member& Append(std::unique_ptr<Member> member)
    {
        if (index != nullptr || count == MostWithoutIndex)
            EnterInIndex(*member);
        Member& added = *member.release();
        added.link = end;
        *end = &added;
        end = &added.next;
        ++count;
        return added;
    }

    std::unique_ptr<Member> TakeOut(Member* member);

    friend void AddMembers(JsonValue& into, JsonValue from)
    {
        auto* const source = As<Object>(from);
        if (source == nullptr || source->first == nullptr)
            return;
        auto* const object = As<Object>(into);
        if (object == nullptr)
        {
            into = std::move(from);
            return;
        }
        while (source->first != nullptr)
        {
            std::unique_ptr<Member> member = source->TakeOut(source->first);
            if (Member* const present = object->Find(member->key->View()))
                present->value = std::move(member->value);
            else
                object->Append(std::move(member));
        }
    }

    Member* first = nullptr;
    Member** end = &first;
    std::size_t count = 0;

private:
    static constexpr std::size_t MostWithoutIndex = 32;

    Member* FindInIndex(std::string_view key) const;
    void EnterInIndex(Member& member);

    std::unique_ptr<std::unordered_map<std::string_view, Member*>> index; // null while there are few members
};

} // namespace Veltrane::TaviDesktopSDK
