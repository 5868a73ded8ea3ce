// A JSON object: a list of members in the order in which they were added. A member keeps its address until it is
// removed.
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "JsonNode.h"

namespace Veltrane::TaviDesktopSDK
{

struct JsonValue::Node::Member : InBlocks
{
    explicit Member(std::string_view name) : key(new Text(name)) {}
    Member(const Member& other) : value(other.value), key(static_cast<Text*>(CopyOf(other.key))) {}
    Member& operator=(const Member&) = delete;
    ~Member() { Release(key); }

    JsonValue value;
    Text* key;
    Member** link = nullptr; // the pointer to this member: the previous member's `next`, or the object's `first`
    Member* next = nullptr;
};

// A few members are found by a linear search, many by an index.
struct JsonValue::Node::Object : Node, InBlocks
{
    static constexpr Kind OwnKind = Kind::Object;

    Object() : Node(OwnKind) {}
    Object(const Object& other) : Object()
    {
        for (const Member* member = other.first; member != nullptr; member = member->next)
            Append(new Member(*member));
    }
    Object& operator=(const Object&) = delete;
    ~Object()
    {
        while (first != nullptr)
            delete std::exchange(first, first->next);
    }

    Member* First() const { return first; }
    std::size_t Count() const { return count; }

    // Null when there is no such member.
    Member* Find(std::string_view key) const
    {
        if (index != nullptr)
            return FindInIndex(key);
        Member* member = first;
        while (member != nullptr && member->key->value != key)
            member = member->next;
        return member;
    }

    JsonValue& FindOrAdd(std::string_view key)
    {
        Member* const found = Find(key);
        return found != nullptr ? found->value : Append(new Member(key)).value;
    }

    // Takes over ownership of `member`, whose key must not be present yet. Deletes it when memory runs out.
    Member& Append(Member* member)
    {
        if (index != nullptr || count == MostWithoutIndex)
            EnterInIndex(member);
        member->link = end;
        *end = member;
        end = &member->next;
        ++count;
        return *member;
    }

    // False when there is no such member.
    bool Remove(std::string_view key);

private:
    static constexpr std::size_t MostWithoutIndex = 32;

    Member* FindInIndex(std::string_view key) const;
    void EnterInIndex(Member* member);

    Member* first = nullptr;
    Member** end = &first;
    std::size_t count = 0;
    std::unique_ptr<std::unordered_map<std::string_view, Member*>> index; // null while there are few members
};

} // namespace Veltrane::TaviDesktopSDK
