#include <algorithm>
#include <iterator>

#include "JsonNode.h"

namespace Veltrane::TaviDesktopSDK
{

JsonObject::JsonObject(const JsonObject& other)
{
    for (const Member& member : other.members)
    {
        members.push_back(member);
        EnterInIndex();
    }
}

JsonObject::Members::iterator JsonObject::Find(std::string_view key)
{
    if (index == nullptr)
        return std::find_if(members.begin(), members.end(), [key](const Member& member) { return member.text == key; });
    const auto found = index->find(key);
    return found != index->end() ? found->second : members.end();
}

JsonValue& JsonObject::FindOrAdd(const TaviString& key)
{
    const auto found = Find(ViewOf(key));
    if (found != members.end())
        return found->value;
    members.emplace_back(key);
    EnterInIndex();
    return members.back().value;
}

bool JsonObject::Remove(std::string_view key)
{
    const auto found = Find(key);
    if (found == members.end())
        return false;
    if (index != nullptr)
        index->erase(key);
    members.erase(found);
    return true;
}

void JsonObject::TakeMembers(JsonObject& from)
{
    from.index.reset();
    while (!from.members.empty())
    {
        Member& taken = from.members.front();
        const auto present = Find(taken.text);
        if (present != members.end())
        {
            present->value = std::move(taken.value);
            from.members.pop_front();
            continue;
        }
        members.splice(members.end(), from.members, from.members.begin());
        EnterInIndex();
    }
}

void JsonObject::EnterInIndex()
{
    if (index == nullptr && members.size() <= MostWithoutIndex)
        return;
    try
    {
        if (index != nullptr)
        {
            index->emplace(members.back().text, std::prev(members.end()));
            return;
        }
        auto made = std::make_unique<Index>();
        for (auto member = members.begin(); member != members.end(); ++member)
            made->emplace(member->text, member);
        index = std::move(made);
    }
    catch (...)
    {
        members.pop_back();
        throw;
    }
}

} // namespace Veltrane::TaviDesktopSDK
