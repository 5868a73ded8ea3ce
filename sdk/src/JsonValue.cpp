#include <TaviDesktopSDK/JsonValue.h>

#include <algorithm>
#include <utility>

#include "JsonNode.h"

namespace Veltrane::TaviDesktopSDK
{

JsonValue::Node* JsonValue::Node::CopyOf(Node* node)
{
    if (node == nullptr)
        return nullptr;
    if (const auto* const object = std::get_if<JsonObject>(&node->held))
        return Make<JsonObject>(*object);
    if (const auto* const array = std::get_if<JsonArray>(&node->held))
        return Make<JsonArray>(*array);
    ++node->owners;
    return node;
}

void JsonValue::Node::Release(Node* node) noexcept
{
    if (node != nullptr && --node->owners == 0)
        delete node;
}

bool JsonValue::Node::AreEqual(const JsonValue& left, const JsonValue& right)
{
    if (left.node == nullptr || right.node == nullptr)
        return left.node == right.node;
    if (const auto* const object = In<JsonObject>(left))
    {
        const auto* const other = In<JsonObject>(right);
        return other != nullptr && object->All().size() == other->All().size() &&
               std::all_of(object->All().begin(), object->All().end(),
                           [other](const Member& member)
                           {
                               const auto found = other->Find(member.text);
                               return found != other->All().end() && AreEqual(member.value, found->value);
                           });
    }
    if (const auto* const array = In<JsonArray>(left))
    {
        const auto* const other = In<JsonArray>(right);
        return other != nullptr && std::equal(array->begin(), array->end(), other->begin(), other->end(), AreEqual);
    }
    if (const auto* const text = In<TaviString>(left))
    {
        const auto* const other = In<TaviString>(right);
        return other != nullptr && ViewOf(*text) == ViewOf(*other);
    }
    const auto isSame = [&]<typename Number>(const Number* number)
    {
        const auto* const other = In<Number>(right);
        return number != nullptr && other != nullptr && *number == *other;
    };
    return isSame(In<bool>(left)) || isSame(In<long long>(left));
}

JsonValue::JsonValue(bool value) : node(Node::Make<bool>(value)) {}

JsonValue::JsonValue(long long value) : node(Node::Make<long long>(value)) {}

JsonValue::JsonValue(const JsonValue& other) : node(Node::CopyOf(other.node)) {}

JsonValue& JsonValue::operator=(const JsonValue& other)
{
    if (this != &other) // references to this value's members stay valid
        *this = JsonValue(other);
    return *this;
}

void JsonValue::SetString(const char* text)
{
    TaviString string;
    string.SetString(text);
    // The new text is complete before the old value goes: it may be part of it.
    Node* const made = text != nullptr ? Node::Make<TaviString>(std::move(string)) : nullptr;
    Node::Release(std::exchange(node, made));
}

JsonValue& JsonValue::operator[](const TaviString& key)
{
    if (Node::In<JsonObject>(*this) == nullptr)
        Node::Release(std::exchange(node, Node::Make<JsonObject>()));
    return Node::In<JsonObject>(*this)->FindOrAdd(key);
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    static const JsonValue null;
    const auto* const object = Node::In<JsonObject>(*this);
    if (object == nullptr)
        return null;
    const auto found = object->Find(ViewOf(key));
    return found != object->All().end() ? found->value : null;
}

const JsonValue& JsonValue::operator[](int index) const
{
    static const JsonValue null;
    const auto* const array = Node::In<JsonArray>(*this);
    return array != nullptr && index >= 0 && index < GetCount() ? (*array)[static_cast<std::size_t>(index)] : null;
}

int JsonValue::GetCount() const
{
    if (const auto* const object = Node::In<JsonObject>(*this))
        return static_cast<int>(object->All().size());
    if (const auto* const array = Node::In<JsonArray>(*this))
        return static_cast<int>(array->size());
    return 0;
}

JsonValue JsonValue::GetKeyList() const
{
    JsonArray keys;
    if (const auto* const object = Node::In<JsonObject>(*this))
    {
        keys.reserve(object->All().size());
        for (const Member& member : object->All())
            keys.push_back(Node::Holding(Node::Make<TaviString>(member.key)));
    }
    return Node::Holding(Node::Make<JsonArray>(std::move(keys)));
}

TaviString JsonValue::GetJsonString() const
{
    std::string text;
    Node::AppendText(text, *this);
    TaviString string;
    string.SetString(text.c_str());
    return string;
}

int JsonValue::Compare(const JsonValue& other) const
{
    return Node::AreEqual(*this, other) ? 0 : 1;
}

bool JsonValue::RemoveKey(const TaviString& key)
{
    auto* const object = Node::In<JsonObject>(*this);
    return object != nullptr && object->Remove(ViewOf(key));
}

JsonValue::operator TaviString() const
{
    if (const auto* const text = Node::In<TaviString>(*this))
        return *text;
    return node != nullptr ? GetJsonString() : TaviString();
}

JsonValue::operator long long() const
{
    if (const auto* const number = Node::In<long long>(*this))
        return *number;
    const auto* const flag = Node::In<bool>(*this);
    return flag != nullptr && *flag ? 1 : 0;
}

void JsonValue::Reset() noexcept
{
    Node::Release(std::exchange(node, nullptr));
}

} // namespace Veltrane::TaviDesktopSDK
