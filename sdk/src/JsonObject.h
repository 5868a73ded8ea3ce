// An object's members, in the order in which they were added: each keeps its place in memory until it is removed.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "JsonNode.h"
#include "KeyText.h"

namespace Veltrane::TaviDesktopSDK
{

struct Member
{
    JsonValue value;
    const KeyText* key;
    Member** link; // what points to this member: the one before, or the object
    Member* next;
};

// One block: this, and the first places for members. Further places are in blocks of their own, each as large as all
// before it. Few members are found by going through them, many by a table.
struct JsonValue::Node::Object : Node
{
    static constexpr std::uint32_t SmallestCapacity = 8;

    static Object* Make(std::uint32_t capacity)
    {
        void* const block = AllocateBlock(sizeof(Object) + capacity * sizeof(Member));
        auto* const object =
            new (block) Object(capacity, reinterpret_cast<Member*>(static_cast<std::byte*>(block) + sizeof(Object)));
        if (capacity > LargestScanned)
            MakeFirstTable(object);
        return object;
    }

    // With room for so many members, and for some more.
    static Object* MakeFor(std::uint32_t members) { return Make(members + SmallestCapacity); }

    static void Release(Object* object) noexcept
    {
        for (const Member* member = object->first; member != nullptr; member = member->next)
            JsonValue::Node::Release(member->value.node);
        if (object->ownsKeys)
            object->GiveUpKeys();
        ReleaseEmptied(object);
    }

    // Leaves the members.
    static void ReleaseEmptied(Object* object) noexcept
    {
        if (object->places > object->capacity)
            object->FreeMorePlaces();
        if (object->table != nullptr)
            object->FreeTable();
        FreeBlock(object, sizeof(Object) + object->capacity * sizeof(Member));
    }

    std::uint32_t Count() const { return count; }

    const Member* First() const { return first; }

    template <typename Function>
    void ForEach(Function&& function) const
    {
        for (const Member* member = first; member != nullptr; member = member->next)
            function(*member);
    }

    // Null when there is no such member.
    Member* Find(const KeyText& key) const
    {
        if ((seen & key.SeenBit()) == 0)
            return nullptr;
        if (table != nullptr)
            return FindInTable(key)->member;
        Member* member = first;
        while (member != nullptr && !key.Is(*member->key))
            member = member->next;
        return member;
    }

    // Added as null when there is none.
    JsonValue& FindOrAdd(const KeyText& key)
    {
        // What is most often the case is decided here, the rest elsewhere.
        if ((seen & key.SeenBit()) == 0 && key.IsKept() && table == nullptr && unused != unusedEnd)
            return Add(&key).value;
        return FindOrAddOtherwise(key);
    }

    bool Remove(const KeyText& key) noexcept;

    // Makes the members of the object `from` members of this one as well, in the place of those with their keys. Only
    // for an object that ReleaseEmptied() will end, and while `from` stays as it is.
    void Borrow(const Object& from)
    {
        if ((seen & from.seen) != 0 || table != nullptr || from.count > unusedEnd - unused)
        {
            BorrowOneByOne(from);
            return;
        }
        // None has the key of another, and there is room for all.
        Member* place = unused;
        Member** link = end;
        for (const Member* lent = from.first; lent != nullptr; lent = lent->next)
        {
            auto* const member = new (place++) Member{Holding(lent->value.node), lent->key, link, nullptr};
            *link = member;
            link = &member->next;
        }
        unused = place;
        end = link;
        count += from.count;
        seen |= from.seen;
    }

private:
    struct Places
    {
        Places* next;
        std::uint32_t capacity;

        static std::size_t BlockSize(std::uint32_t capacity) { return sizeof(Places) + capacity * sizeof(Member); }
    };

    // Each at the first place that was free from the one that the hash names on.
    struct TablePlace
    {
        Member* member; // null: free
        std::uint32_t hash;
    };

    static constexpr std::uint32_t LargestScanned = 16; // places

    // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject): does not see that Node is initialized
    Object(std::uint32_t firstPlaces, Member* memory)
        : Node{Kind::Object}, capacity(firstPlaces), places(firstPlaces), unused(memory),
          unusedEnd(memory + firstPlaces)
    {
    }

    JsonValue& FindOrAddOtherwise(const KeyText& key);

    // A null member at the end, at an unused place, but not in the table. There is none with that key.
    Member& Add(const KeyText* key) noexcept
    {
        auto* const member = new (unused++) Member{JsonValue(), key, end, nullptr};
        *end = member;
        end = &member->next;
        ++count;
        seen |= key->SeenBit();
        return *member;
    }

    TablePlace* FindInTable(const KeyText& key) const; // an empty place when there is no such member
    void EnterInTable(TablePlace entered) noexcept;
    void RemoveFromTable(const KeyText& key) noexcept;

    void BorrowOneByOne(const Object& from);

    // The same with the table.
    Member& AddWithTable(const KeyText* key) noexcept;

    // Of members in a table of that size: seven eighths.
    static std::uint32_t LargestCount(std::uint32_t tableSize) { return tableSize - tableSize / 8; }

    // For one member.
    void MakeRoom();
    void AddPlaces();
    void MakeTable(std::uint32_t size);       // a power of two
    static void MakeFirstTable(Object* made); // ends the object when memory runs out
    void GiveUpKeys() noexcept;
    void FreeMorePlaces() noexcept;
    void FreeTable() noexcept;

    std::uint32_t count = 0;
    std::uint32_t capacity;        // places in this block
    std::uint32_t places;          // in all
    std::uint32_t lastInTable = 0; // one less than a power of two
    bool ownsKeys = false;         // whether some may not be kept ones
    std::uint64_t seen = 0;        // of each key that was ever added
    Member* first = nullptr;
    Member** end = &first;     // what the next member will be linked to
    Member* removed = nullptr; // places of removed members, linked by `next`
    Member* unused;
    Member* unusedEnd;
    Places* morePlaces = nullptr;
    TablePlace* table = nullptr; // null as long as members are found by going through them
};

inline JsonValue::Node::Object* JsonValue::Node::ObjectIn(const JsonValue& value)
{
    return HasNode(value.node) && value.node->kind == Kind::Object ? static_cast<Object*>(value.node) : nullptr;
}

} // namespace Veltrane::TaviDesktopSDK
