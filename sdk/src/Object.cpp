#include "Node.h"

namespace Veltrane::TaviDesktopSDK
{

TaviString::Node::Member* TaviString::Node::Object::FindInIndex(std::string_view key) const
{
    const auto found = index->find(key);
    return found != index->end() ? found->second : nullptr;
}

void TaviString::Node::Object::EnterInIndex(Member& member)
{
    if (index == nullptr)
    {
        auto made = std::make_unique<std::unordered_map<std::string_view, Member*>>();
        for (Member* present = first; present != nullptr; present = present->next)
            made->emplace(present->key->View(), present);
        index = std::move(made);
    }
    index->emplace(member.key->View(), &member);
}

std::unique_ptr<TaviString::Node::Member> TaviString::Node::Object::TakeOut(Member* member)
{
    if (index != nullptr)
        index->erase(member->key->View());
    *member->link = member->next;
    (member->next != nullptr ? member->next->link : end) = member->link;
    member->next = nullptr;
    --count;
    return std::unique_ptr<Member>(member);
}

} // namespace Veltrane::TaviDesktopSDK
