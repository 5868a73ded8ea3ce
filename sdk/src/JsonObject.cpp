#include "JsonObject.h"

namespace Veltrane::TaviDesktopSDK
{

JsonValue& JsonValue::Node::Object::FindOrAddOtherwise(const KeyText& key)
{
    if (Member* const member = Find(key))
        return member->value;
    MakeRoom();
    ownsKeys = ownsKeys || !key.IsKept();
    return AddWithTable(key.Share()).value;
}

Member& JsonValue::Node::Object::AddWithTable(const KeyText* key) noexcept
{
    Member& member = Add(key);
    if (table != nullptr)
        EnterInTable({&member, key->hash});
    return member;
}

bool JsonValue::Node::Object::Remove(const KeyText& key) noexcept
{
    Member* const member = Find(key);
    if (member == nullptr)
        return false;
    *member->link = member->next;
    (member->next != nullptr ? member->next->link : end) = member->link;
    if (table != nullptr)
        RemoveFromTable(*member->key);
    JsonValue::Node::Release(member->value.node);
    member->key->GiveUp();
    member->next = std::exchange(removed, member);
    Blocks::Hide(member, sizeof(Member));
    --count;
    return true;
}

void JsonValue::Node::Object::BorrowOneByOne(const Object& from)
{
    from.ForEach(
        [this](const Member& lent)
        {
            Member* const present = Find(*lent.key);
            if (present == nullptr)
                MakeRoom();
            Member& member = present != nullptr ? *present : AddWithTable(lent.key);
            member.value.node = lent.value.node;
        });
}

JsonValue::Node::Object::TablePlace* JsonValue::Node::Object::FindInTable(const KeyText& key) const
{
    std::uint32_t place = key.hash & lastInTable;
    while (table[place].member != nullptr && !(table[place].hash == key.hash && key.Is(*table[place].member->key)))
        place = (place + 1) & lastInTable;
    return table + place;
}

void JsonValue::Node::Object::EnterInTable(TablePlace entered) noexcept
{
    std::uint32_t place = entered.hash & lastInTable;
    while (table[place].member != nullptr)
        place = (place + 1) & lastInTable;
    table[place] = entered;
}

// Closes the gap, so that no member that had to go on from its place becomes unreachable.
void JsonValue::Node::Object::RemoveFromTable(const KeyText& key) noexcept
{
    auto gap = static_cast<std::uint32_t>(FindInTable(key) - table);
    for (std::uint32_t place = (gap + 1) & lastInTable; table[place].member != nullptr;
         place = (place + 1) & lastInTable)
    {
        const std::uint32_t wentOn = (place - table[place].hash) & lastInTable;
        if (wentOn >= ((place - gap) & lastInTable))
            table[std::exchange(gap, place)] = table[place];
    }
    table[gap] = {};
}

void JsonValue::Node::Object::MakeRoom()
{
    if (unused == unusedEnd && removed != nullptr)
    {
        Blocks::Show(removed, sizeof(Member));
        unused = std::exchange(removed, removed->next);
        unusedEnd = unused + 1;
    }
    else if (unused == unusedEnd)
    {
        AddPlaces();
    }
    if (table != nullptr && count >= LargestCount(lastInTable + 1))
        MakeTable(2 * (lastInTable + 1));
}

void JsonValue::Node::Object::AddPlaces()
{
    const std::uint32_t added = places;
    void* const block = AllocateBlock(Places::BlockSize(added));
    morePlaces = new (block) Places{morePlaces, added};
    places += added;
    unused = reinterpret_cast<Member*>(morePlaces + 1);
    unusedEnd = unused + added;
    if (table == nullptr && places > LargestScanned)
        MakeTable(2 * std::bit_ceil(places));
}

void JsonValue::Node::Object::MakeTable(std::uint32_t size)
{
    auto* const made = static_cast<TablePlace*>(AllocateBlock(size * sizeof(TablePlace)));
    std::uninitialized_value_construct_n(made, size);
    TablePlace* const smaller = std::exchange(table, made);
    const std::uint32_t lastInSmaller = std::exchange(lastInTable, size - 1);
    if (smaller == nullptr)
    {
        for (Member* member = first; member != nullptr; member = member->next)
            EnterInTable({member, member->key->hash});
        return;
    }
    for (std::uint32_t place = 0; place <= lastInSmaller; ++place)
    {
        if (smaller[place].member != nullptr)
            EnterInTable(smaller[place]);
    }
    FreeBlock(smaller, (std::size_t{lastInSmaller} + 1) * sizeof(TablePlace));
}

void JsonValue::Node::Object::MakeFirstTable(Object* made)
{
    std::uint32_t size = std::bit_ceil(made->capacity);
    if (LargestCount(size) < made->capacity)
        size *= 2;
    JsonValue owner = Holding(made);
    made->MakeTable(size);
    static_cast<void>(std::exchange(owner.node, nullptr));
}

void JsonValue::Node::Object::GiveUpKeys() noexcept
{
    for (const Member* member = first; member != nullptr; member = member->next)
        member->key->GiveUp();
}

void JsonValue::Node::Object::FreeMorePlaces() noexcept
{
    for (Places* block = morePlaces; block != nullptr;)
    {
        Places* const next = block->next;
        FreeBlock(block, Places::BlockSize(block->capacity));
        block = next;
    }
}

void JsonValue::Node::Object::FreeTable() noexcept
{
    FreeBlock(table, (std::size_t{lastInTable} + 1) * sizeof(TablePlace));
}

} // namespace Veltrane::TaviDesktopSDK
