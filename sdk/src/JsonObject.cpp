#include "JsonObject.h"

namespace Veltrane::TaviDesktopSDK
{

JsonValue::Node::Member* JsonValue::Node::Object::FindInIndex(std::string_view key) const
{
    const auto found = index->find(key);
    return found != index->end() ? found->second : nullptr;
}

void JsonValue::Node::Object::EnterInIndex(Member* member)
{
    std::unique_ptr<Member> owner(member);
    if (index == nullptr)
    {
        auto made = std::make_unique<std::unordered_map<std::string_view, Member*>>();
        for (Member* present = first; present != nullptr; present = present->next)
            made->emplace(present->key->View(), present);
        index = std::move(made);
    }
    index->emplace(member->key->View(), member);
    static_cast<void>(owner.release());
}

std::unique_ptr<JsonValue::Node::Member> JsonValue::Node::Object::Take(Member& member)
{
    if (index != nullptr)
        index->erase(member.key->View());
    *member.link = member.next;
    (member.next != nullptr ? member.next->link : end) = member.link;
    member.next = nullptr;
    --count;
    return std::unique_ptr<Member>(&member);
}

void JsonValue::Node::CopyMembers(JsonValue& into, const JsonValue& from)
{
    const auto* const source = In<Object>(from);
    if (source == nullptr || source->First() == nullptr)
        return;
    auto* const object = In<Object>(into);
    if (object == nullptr)
    {
        into = from;
        return;
    }
    for (const Member* member = source->First(); member != nullptr; member = member->next)
    {
        if (Member* const present = object->Find(member->key->View()))
            present->value = member->value;
        else
            object->Append(new Member(*member));
    }
}

void JsonValue::Node::MoveMembers(JsonValue& into, JsonValue& from)
{
    auto* const source = In<Object>(from);
    if (source == nullptr || source->First() == nullptr)
        return;
    auto* const object = In<Object>(into);
    if (object == nullptr)
    {
        into = std::move(from);
        return;
    }
    Member* next = source->First();
    while (next != nullptr)
    {
        std::unique_ptr<Member> member = source->Take(*std::exchange(next, next->next));
        if (Member* const present = object->Find(member->key->View()))
            present->value = std::move(member->value);
        else
            object->Append(member.release());
    }
}

} // namespace Veltrane::TaviDesktopSDK
