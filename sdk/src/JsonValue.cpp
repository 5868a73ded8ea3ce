#include <TaviDesktopSDK/JsonValue.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Node.h"

namespace Veltrane::TaviDesktopSDK
{

TaviString::Node* TaviString::Node::DeepCopyOf(const Node& node)
{
    auto copy = std::make_unique<Object>();
    for (const Member* member = static_cast<const Object&>(node).first; member != nullptr; member = member->next)
        copy->Append(std::make_unique<Member>(*member));
    return copy.release();
}

TaviString::Node::Object::~Object()
{
    while (first != nullptr)
        delete std::exchange(first, first->next);
}

void TaviString::Node::Delete(Node* node) noexcept
{
    switch (node->kind)
    {
    case Kind::Boolean:
    case Kind::Integer:
        delete static_cast<Number*>(node);
        break;
    case Kind::Text:
        Text::Delete(static_cast<Text*>(node));
        break;
    case Kind::Array:
        delete static_cast<Array*>(node);
        break;
    case Kind::Object:
        delete static_cast<Object*>(node);
        break;
    }
}

bool TaviString::Node::AreEqual(const JsonValue& leftValue, const JsonValue& rightValue)
{
    const Node* const left = leftValue.node;
    const Node* const right = rightValue.node;
    if (left == right || left == nullptr || right == nullptr || left->kind != right->kind)
        return left == right;
    switch (left->kind)
    {
    case Kind::Boolean:
    case Kind::Integer:
        return static_cast<const Number*>(left)->value == static_cast<const Number*>(right)->value;
    case Kind::Text:
        return static_cast<const Text*>(left)->View() == static_cast<const Text*>(right)->View();
    case Kind::Array:
        return std::ranges::equal(static_cast<const Array*>(left)->elements, static_cast<const Array*>(right)->elements,
                                  AreEqual);
    case Kind::Object:
        break;
    }
    const auto& other = static_cast<const Object&>(*right);
    if (static_cast<const Object*>(left)->count != other.count)
        return false;
    for (const Member* member = static_cast<const Object*>(left)->first; member != nullptr; member = member->next)
    {
        const Member* const found = other.Find(member->key->View());
        if (found == nullptr || !AreEqual(member->value, found->value))
            return false;
    }
    return true;
}

JsonValue::JsonValue(bool value) : node(new Node::Number(Node::Kind::Boolean, value ? 1 : 0)) {}

JsonValue::JsonValue(long long value) : node(new Node::Number(Node::Kind::Integer, value)) {}

JsonValue::JsonValue(const JsonValue& other) : node(Node::CopyOf(other.node)) {}

JsonValue& JsonValue::operator=(const JsonValue& other)
{
    // The copy is complete before the old value goes: `other` may be part of it. References to the members of a value
    // that is assigned to itself stay valid.
    if (this != &other)
        Node::Release(std::exchange(node, Node::CopyOf(other.node)));
    return *this;
}

void JsonValue::SetString(const char* text)
{
    // The new text is complete before the old value goes: it may be part of it.
    Node* const made = text != nullptr ? TaviString::Text::Make(std::string_view(text)) : nullptr;
    Node::Release(std::exchange(node, made));
}

JsonValue& JsonValue::operator[](const TaviString& key)
{
    auto* object = Node::As<Node::Object>(*this);
    if (object == nullptr)
    {
        object = new Node::Object;
        Node::Release(std::exchange(node, object));
    }
    Node::Member* const found = object->Find(TaviString::Text::ViewOf(key));
    return found != nullptr ? found->value : object->Append(std::make_unique<Node::Member>(key)).value;
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    static const JsonValue null;
    const auto* const object = Node::As<Node::Object>(*this);
    const Node::Member* const member = object != nullptr ? object->Find(TaviString::Text::ViewOf(key)) : nullptr;
    return member != nullptr ? member->value : null;
}

const JsonValue& JsonValue::operator[](int index) const
{
    static const JsonValue null;
    const auto* const array = Node::As<Node::Array>(*this);
    const auto place = static_cast<std::size_t>(index); // a negative index is beyond every size
    return array != nullptr && place < array->elements.size() ? array->elements[place] : null;
}

int JsonValue::GetCount() const
{
    if (const auto* const object = Node::As<Node::Object>(*this))
        return static_cast<int>(object->count);
    const auto* const array = Node::As<Node::Array>(*this);
    return array != nullptr ? static_cast<int>(array->elements.size()) : 0;
}

JsonValue JsonValue::GetKeyList() const
{
    auto keys = std::make_unique<Node::Array>();
    if (const auto* const object = Node::As<Node::Object>(*this))
    {
        keys->elements.reserve(object->count);
        for (const Node::Member* member = object->first; member != nullptr; member = member->next)
            keys->elements.emplace_back().node = Node::Share(member->key);
    }
    JsonValue list;
    list.node = keys.release();
    return list;
}

TaviString JsonValue::GetJsonString() const
{
    std::string json;
    Node::AppendJson(json, *this);
    TaviString text;
    text.content = TaviString::Text::Make(json);
    return text;
}

int JsonValue::Compare(const JsonValue& other) const
{
    return Node::AreEqual(*this, other) ? 0 : 1;
}

bool JsonValue::RemoveKey(const TaviString& key)
{
    auto* const object = Node::As<Node::Object>(*this);
    Node::Member* const member = object != nullptr ? object->Find(TaviString::Text::ViewOf(key)) : nullptr;
    if (member != nullptr)
        object->TakeOut(member);
    return member != nullptr;
}

JsonValue::operator TaviString() const
{
    if (node != nullptr && node->kind != Node::Kind::Text)
        return GetJsonString();
    TaviString text;
    text.content = Node::Share(static_cast<TaviString::Text*>(node));
    return text;
}

JsonValue::operator long long() const
{
    const bool isNumber = node != nullptr && (node->kind == Node::Kind::Boolean || node->kind == Node::Kind::Integer);
    return isNumber ? static_cast<const Node::Number*>(node)->value : 0;
}

void JsonValue::Reset() noexcept
{
    Node::Release(std::exchange(node, nullptr));
}

} // namespace Veltrane::TaviDesktopSDK
