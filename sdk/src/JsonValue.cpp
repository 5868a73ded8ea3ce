#include <TaviDesktopSDK/JsonValue.h>

#include <algorithm>
#include <utility>

#include "JsonNode.h"
#include "JsonObject.h"
#include "Members.h"
#include "StringContent.h"

namespace Veltrane::TaviDesktopSDK
{

JsonValue::Node* JsonValue::Node::CopyOfNode(const JsonValue& value)
{
    switch (value.node->kind)
    {
    case Kind::Integer:
        return OfInteger(IntegerIn(value));
    case Kind::Text:
        return Text::Make(TextIn(value));
    case Kind::Object:
    {
        const Object* const object = ObjectIn(value);
        JsonValue copy; // owns what there is of the copy, should memory run out
        auto* const copied = Object::MakeFor(object->Count());
        copy.node = copied;
        object->ForEach([copied](const Member& member) { copied->FindOrAdd(*member.key).node = CopyOf(member.value); });
        return std::exchange(copy.node, nullptr);
    }
    default:
    {
        Array* const array = ArrayIn(value);
        JsonValue copy;
        auto* const copied = Array::Make(array->size);
        copy.node = copied;
        std::transform(array->begin(), array->end(), copied->begin(),
                       [](const JsonValue& element) { return JsonValue(element); });
        return std::exchange(copy.node, nullptr);
    }
    }
}

void JsonValue::Node::ReleaseNode(Node* node) noexcept
{
    switch (node->kind)
    {
    case Kind::Integer:
        FreeBlock(node, sizeof(Integer));
        break;
    case Kind::Text:
        Text::Release(static_cast<Text*>(node));
        break;
    case Kind::Object:
        Object::Release(static_cast<Object*>(node));
        break;
    default:
        Array::Release(static_cast<Array*>(node));
    }
}

bool JsonValue::Node::AreEqual(const JsonValue& left, const JsonValue& right)
{
    if (KindOf(left) != KindOf(right))
        return false;
    switch (KindOf(left))
    {
    case Kind::Integer:
        return IntegerIn(left) == IntegerIn(right);
    case Kind::Text:
        return TextIn(left) == TextIn(right);
    case Kind::Object:
    {
        const Object* const other = ObjectIn(right);
        bool areEqual = ObjectIn(left)->Count() == other->Count();
        const Member* next = other->First(); // the order is mostly the same
        ObjectIn(left)->ForEach(
            [other, &areEqual, &next](const Member& member)
            {
                if (!areEqual)
                    return;
                const bool isNext = next != nullptr && member.key->Is(*next->key);
                const Member* const found = isNext ? next : other->Find(*member.key);
                areEqual = found != nullptr && AreEqual(member.value, found->value);
                next = found != nullptr ? found->next : nullptr;
            });
        return areEqual;
    }
    case Kind::Array:
        return std::equal(ArrayIn(left)->begin(), ArrayIn(left)->end(), ArrayIn(right)->begin(), ArrayIn(right)->end(),
                          AreEqual);
    default:
        return left.node == right.node; // null or a boolean
    }
}

JsonValue::JsonValue(bool value) : node(Node::OfBoolean(value)) {}

JsonValue::JsonValue(long long value) : node(Node::OfInteger(value)) {}

JsonValue::JsonValue(const JsonValue& other) : node(Node::CopyOf(other)) {}

JsonValue& JsonValue::operator=(const JsonValue& other)
{
    return *this = JsonValue(other);
}

void JsonValue::SetString(const char* text)
{
    // The new text is complete before the old value goes: it may be part of it.
    Node::Release(std::exchange(node, text != nullptr ? Node::OfText(Node::ViewOf(text)) : nullptr));
}

JsonValue& JsonValue::operator[](const TaviString& key)
{
    auto* object = Node::ObjectIn(*this);
    if (object == nullptr)
    {
        object = Node::Object::Make(Node::Object::SmallestCapacity);
        Node::Release(std::exchange(node, object));
    }
    return object->FindOrAdd(KeyOf(key));
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    static const JsonValue null;
    const Node::Object* const object = Node::ObjectIn(*this);
    const Member* const member = object != nullptr ? object->Find(KeyOf(key)) : nullptr;
    return member != nullptr ? member->value : null;
}

const JsonValue& JsonValue::operator[](int index) const
{
    static const JsonValue null;
    Node::Array* const array = Node::ArrayIn(*this);
    return array != nullptr && index >= 0 && index < GetCount() ? array->begin()[index] : null;
}

int JsonValue::GetCount() const
{
    if (const Node::Object* const object = Node::ObjectIn(*this))
        return static_cast<int>(object->Count());
    if (const Node::Array* const array = Node::ArrayIn(*this))
        return static_cast<int>(array->size);
    return 0;
}

JsonValue JsonValue::GetKeyList() const
{
    const Node::Object* const object = Node::ObjectIn(*this);
    auto* const keys = Node::Array::Make(object != nullptr ? object->Count() : 0);
    JsonValue list;
    list.node = keys;
    if (object != nullptr)
        object->ForEach([key = keys->begin()](const Member& member) mutable
                        { key++->node = Node::OfText(member.key->View()); });
    return list;
}

TaviString JsonValue::GetJsonString() const
{
    return Node::JsonText(*this);
}

int JsonValue::Compare(const JsonValue& other) const
{
    return Node::AreEqual(*this, other) ? 0 : 1;
}

bool JsonValue::RemoveKey(const TaviString& key)
{
    Node::Object* const object = Node::ObjectIn(*this);
    return object != nullptr && object->Remove(KeyOf(key));
}

JsonValue::operator TaviString() const
{
    switch (Node::KindOf(*this))
    {
    case Node::Kind::Null:
        return TaviString();
    case Node::Kind::Text:
        return Contents::Of(Node::TextIn(*this));
    default:
        return GetJsonString();
    }
}

JsonValue::operator long long() const
{
    switch (Node::KindOf(*this))
    {
    case Node::Kind::Boolean:
        return Node::BooleanIn(*this) ? 1 : 0;
    case Node::Kind::Integer:
        return Node::IntegerIn(*this);
    default:
        return 0;
    }
}

void JsonValue::Reset() noexcept
{
    Node::Release(std::exchange(node, nullptr));
}

void Members::Merge(JsonValue& into, const JsonValue& from)
{
    const Node::Object* const source = Node::ObjectIn(from);
    if (source == nullptr || source->Count() == 0)
        return;
    Node::Object* const object = Node::ObjectIn(into);
    if (object == nullptr)
    {
        into = from;
        return;
    }
    source->ForEach([object](const Member& member) { object->FindOrAdd(*member.key) = member.value; });
}

} // namespace Veltrane::TaviDesktopSDK
