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
            made->emplace(present->key->value, present);
        index = std::move(made);
    }
    index->emplace(member->key->value, member);
    static_cast<void>(owner.release());
}

bool JsonValue::Node::Object::Remove(std::string_view key)
{
    Member* const member = Find(key);
    if (member == nullptr)
        return false;
    if (index != nullptr)
        index->erase(key);
    *member->link = member->next;
    (member->next != nullptr ? member->next->link : end) = member->link;
    --count;
    delete member;
    return true;
}

void JsonValue::Node::CopyMembers(JsonValue& into, const JsonValue& from)
{
    const auto* const source = As<Object>(from);
    if (source == nullptr || source->First() == nullptr)
        return;
    auto* const object = As<Object>(into);
    if (object == nullptr)
    {
        into = from;
        return;
    }
    for (const Member* member = source->First(); member != nullptr; member = member->next)
    {
        if (Member* const present = object->Find(member->key->value))
            present->value = member->value;
        else
            object->Append(new Member(*member));
    }
}

} // namespace Veltrane::TaviDesktopSDK
