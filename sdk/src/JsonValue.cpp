#include <TaviDesktopSDK/JsonValue.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "JsonObject.h"
#include "TextView.h"

namespace Veltrane::TaviDesktopSDK
{

JsonValue::Node* JsonValue::Node::DeepCopyOf(const Node& node)
{
    if (node.kind == Kind::Object)
        return new Object(static_cast<const Object&>(node));
    auto copy = std::make_unique<Array>();
    copy->elements = static_cast<const Array&>(node).elements;
    return copy.release();
}

void JsonValue::Node::Delete(Node* node) noexcept
{
    switch (node->kind)
    {
    case Kind::Boolean:
        delete static_cast<Boolean*>(node);
        break;
    case Kind::Integer:
        delete static_cast<Integer*>(node);
        break;
    case Kind::Text:
        delete static_cast<Text*>(node);
        break;
    case Kind::Array:
        delete static_cast<Array*>(node);
        break;
    case Kind::Object:
        delete static_cast<Object*>(node);
        break;
    }
}

bool JsonValue::Node::AreEqual(const JsonValue& left, const JsonValue& right)
{
    if (left.node == nullptr || right.node == nullptr || left.node->kind != right.node->kind)
        return left.node == right.node;
    switch (left.node->kind)
    {
    case Kind::Boolean:
        return As<Boolean>(left)->value == As<Boolean>(right)->value;
    case Kind::Integer:
        return As<Integer>(left)->value == As<Integer>(right)->value;
    case Kind::Text:
        return As<Text>(left)->value == As<Text>(right)->value;
    case Kind::Array:
        return std::equal(As<Array>(left)->elements.begin(), As<Array>(left)->elements.end(),
                          As<Array>(right)->elements.begin(), As<Array>(right)->elements.end(), AreEqual);
    case Kind::Object:
        break;
    }
    const Object& other = *As<Object>(right);
    if (As<Object>(left)->Count() != other.Count())
        return false;
    for (const Member* member = As<Object>(left)->First(); member != nullptr; member = member->next)
    {
        const Member* const found = other.Find(member->key->value);
        if (found == nullptr || !AreEqual(member->value, found->value))
            return false;
    }
    return true;
}

JsonValue::JsonValue(bool value) : node(new Node::Boolean(value)) {}

JsonValue::JsonValue(long long value) : node(new Node::Integer(value)) {}

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
    Node::Release(std::exchange(node, text != nullptr ? new Node::Text(text) : nullptr));
}

JsonValue& JsonValue::operator[](const TaviString& key)
{
    auto* object = Node::As<Node::Object>(*this);
    if (object == nullptr)
    {
        object = new Node::Object;
        Node::Release(std::exchange(node, object));
    }
    return object->FindOrAdd(ViewOf(key));
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    static const JsonValue null;
    const auto* const object = Node::As<Node::Object>(*this);
    const Node::Member* const member = object != nullptr ? object->Find(ViewOf(key)) : nullptr;
    return member != nullptr ? member->value : null;
}

const JsonValue& JsonValue::operator[](int index) const
{
    static const JsonValue null;
    const auto* const array = Node::As<Node::Array>(*this);
    return array != nullptr && index >= 0 && index < GetCount() ? array->elements[static_cast<std::size_t>(index)]
                                                                : null;
}

int JsonValue::GetCount() const
{
    if (const auto* const object = Node::As<Node::Object>(*this))
        return static_cast<int>(object->Count());
    if (const auto* const array = Node::As<Node::Array>(*this))
        return static_cast<int>(array->elements.size());
    return 0;
}

JsonValue JsonValue::GetKeyList() const
{
    auto keys = std::make_unique<Node::Array>();
    if (const auto* const object = Node::As<Node::Object>(*this))
    {
        keys->elements.reserve(object->Count());
        for (const Node::Member* member = object->First(); member != nullptr; member = member->next)
            keys->elements.push_back(Node::Holding(Node::CopyOf(member->key)));
    }
    return Node::Holding(keys.release());
}

TaviString JsonValue::GetJsonString() const
{
    std::string json;
    Node::AppendJson(json, *this);
    TaviString text;
    text.SetString(json.c_str());
    return text;
}

int JsonValue::Compare(const JsonValue& other) const
{
    return Node::AreEqual(*this, other) ? 0 : 1;
}

bool JsonValue::RemoveKey(const TaviString& key)
{
    auto* const object = Node::As<Node::Object>(*this);
    return object != nullptr && object->Remove(ViewOf(key));
}

JsonValue::operator TaviString() const
{
    if (node == nullptr)
        return TaviString();
    const auto* const held = Node::As<Node::Text>(*this);
    if (held == nullptr)
        return GetJsonString();
    TaviString text;
    text.SetString(held->value.c_str());
    return text;
}

JsonValue::operator long long() const
{
    if (const auto* const number = Node::As<Node::Integer>(*this))
        return number->value;
    const auto* const flag = Node::As<Node::Boolean>(*this);
    return flag != nullptr && flag->value ? 1 : 0;
}

void JsonValue::Reset() noexcept
{
    Node::Release(std::exchange(node, nullptr));
}

} // namespace Veltrane::TaviDesktopSDK
