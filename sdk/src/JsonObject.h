// An object's members: a list in the order in which they were added. Each keeps its place in memory until it is
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
    explicit Member(std::string_view name) : key(Text::Make(name)) {}
    Member(const Member& other) : value(other.value), key(static_cast<Text*>(CopyOf(other.key))) {}
    Member& operator=(const Member&) = delete;
    ~Member() { Release(key); }

    JsonValue value;
    Text* key;
    Member** link = nullptr; // what points to this member: the one before, or the object
    Member* next = nullptr;
};

// Few members are found by going through them, many by an index.
struct JsonValue::Node::Object : Node, InBlocks
{
    static constexpr Kind KindOfThis = Kind::Object;

    Object() : Node(KindOfThis) {}
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
        while (member != nullptr && member->key->View() != key)
            member = member->next;
        return member;
    }

    JsonValue& FindOrAdd(std::string_view key)
    {
        Member* const found = Find(key);
        return found != nullptr ? found->value : Append(new Member(key)).value;
    }

    // Whose key is not there yet. It is this object's from now on, and is deleted when memory runs out.
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

    // The member is the caller's from now on.
    std::unique_ptr<Member> Take(Member& member);

private:
    static constexpr std::size_t MostWithoutIndex = 32;

    Member* FindInIndex(std::string_view key) const;
    void EnterInIndex(Member* member);

    Member* first = nullptr;
    Member** end = &first;
    std::size_t count = 0;
    std::unique_ptr<std::unordered_map<std::string_view, Member*>> index; // null: few
};

} // namespace Veltrane::TaviDesktopSDK
