#include <TaviDesktopSDK/JsonValue.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "TextView.h"
#include "Unicode.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

// Members in the order in which they were added, at addresses that stay, found by key through an index.
class Object
{
public:
    struct Member
    {
        std::string key;
        JsonValue value;
    };

    Object() = default;

    Object(const Object& other)
    {
        for (const Member& member : other.members)
            Append(member);
    }

    Object(Object&&) = default;
    Object& operator=(const Object&) = delete;
    Object& operator=(Object&&) = default;
    ~Object() = default;

    const std::list<Member>& Members() const { return members; }

    const JsonValue* Find(std::string_view key) const
    {
        const auto found = index.find(key);
        return found != index.end() ? &found->second->value : nullptr;
    }

    JsonValue& FindOrAdd(std::string_view key)
    {
        const auto found = index.find(key);
        return found != index.end() ? found->second->value : Append({std::string(key), JsonValue()});
    }

    bool Remove(std::string_view key)
    {
        const auto found = index.find(key);
        if (found == index.end())
            return false;
        const auto member = found->second;
        index.erase(found);
        members.erase(member);
        return true;
    }

private:
    JsonValue& Append(Member member)
    {
        members.push_back(std::move(member));
        const auto added = std::prev(members.end());
        index.emplace(added->key, added);
        return added->value;
    }

    std::list<Member> members;
    std::map<std::string_view, std::list<Member>::iterator> index;
};

using Array = std::vector<JsonValue>;

void AppendQuoted(std::string& json, std::string_view text)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
    json += '"';
    while (!text.empty())
    {
        const DecodedCharacter decoded = DecodeUtf8(text);
        const char first = text.front();
        switch (decoded.character)
        {
        case U'"':
        case U'\\':
            json += '\\';
            json += first;
            break;
        case U'\b':
            json += "\\b";
            break;
        case U'\f':
            json += "\\f";
            break;
        case U'\n':
            json += "\\n";
            break;
        case U'\r':
            json += "\\r";
            break;
        case U'\t':
            json += "\\t";
            break;
        default:
            if (decoded.character < 0x20)
            {
                json += "\\u00";
                json += hexDigits[decoded.character >> 4];
                json += hexDigits[decoded.character & 0xF];
            }
            else
            {
                json += decoded.wellFormed ? text.substr(0, decoded.length) : replacementCharacter;
            }
        }
        text.remove_prefix(decoded.length);
    }
    json += '"';
}

} // namespace

struct JsonValue::Node
{
    std::variant<bool, long long, std::string, Object, Array> content;

    // The value's content when it is a T, else null.
    template <typename T>
    static T* Find(const JsonValue& value)
    {
        return value.node != nullptr ? std::get_if<T>(&value.node->content) : nullptr;
    }

    static void AppendJson(std::string& json, const JsonValue& value)
    {
        if (value.node == nullptr)
            json += "null";
        else
            std::visit([&json](const auto& held) { Append(json, held); }, value.node->content);
    }

    static bool AreEqual(const JsonValue& left, const JsonValue& right)
    {
        if (left.node == nullptr || right.node == nullptr)
            return left.node == right.node;
        if (left.node->content.index() != right.node->content.index())
            return false;
        return std::visit(
            [&right](const auto& held)
            { return HasEqualContent(held, std::get<std::decay_t<decltype(held)>>(right.node->content)); },
            left.node->content);
    }

private:
    static void Append(std::string& json, bool boolean) { json += boolean ? "true" : "false"; }

    static void Append(std::string& json, long long integer) { json += std::to_string(integer); }

    static void Append(std::string& json, const std::string& text) { AppendQuoted(json, text); }

    static void Append(std::string& json, const Object& object)
    {
        json += '{';
        for (const char* separator = ""; const Object::Member& member : object.Members())
        {
            json += std::exchange(separator, ",");
            AppendQuoted(json, member.key);
            json += ':';
            AppendJson(json, member.value);
        }
        json += '}';
    }

    static void Append(std::string& json, const Array& array)
    {
        json += '[';
        for (const char* separator = ""; const JsonValue& element : array)
        {
            json += std::exchange(separator, ",");
            AppendJson(json, element);
        }
        json += ']';
    }

    template <typename Scalar>
    static bool HasEqualContent(const Scalar& left, const Scalar& right)
    {
        return left == right;
    }

    static bool HasEqualContent(const Object& left, const Object& right)
    {
        return left.Members().size() == right.Members().size() &&
               std::all_of(left.Members().begin(), left.Members().end(),
                           [&right](const Object::Member& member)
                           {
                               const JsonValue* const other = right.Find(member.key);
                               return other != nullptr && AreEqual(member.value, *other);
                           });
    }

    static bool HasEqualContent(const Array& left, const Array& right)
    {
        return std::equal(left.begin(), left.end(), right.begin(), right.end(), AreEqual);
    }
};

JsonValue::JsonValue(bool value) : node(new Node{value}) {}

JsonValue::JsonValue(long long value) : node(new Node{value}) {}

JsonValue::JsonValue(const JsonValue& other) : node(other.node != nullptr ? new Node(*other.node) : nullptr) {}

JsonValue& JsonValue::operator=(const JsonValue& other)
{
    return *this = JsonValue(other);
}

void JsonValue::SetString(const char* text)
{
    Node* const previous = std::exchange(node, text != nullptr ? new Node{std::string(text)} : nullptr);
    delete previous;
}

JsonValue& JsonValue::operator[](const TaviString& key)
{
    auto* object = Node::Find<Object>(*this);
    if (object == nullptr)
    {
        Node* const previous = std::exchange(node, new Node{Object()});
        delete previous;
        object = Node::Find<Object>(*this);
    }
    return object->FindOrAdd(ViewOf(key));
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    static const JsonValue null;
    const Object* const object = Node::Find<Object>(*this);
    const JsonValue* const member = object != nullptr ? object->Find(ViewOf(key)) : nullptr;
    return member != nullptr ? *member : null;
}

const JsonValue& JsonValue::operator[](int index) const
{
    static const JsonValue null;
    const Array* const array = Node::Find<Array>(*this);
    return index >= 0 && index < GetCount() && array != nullptr ? (*array)[static_cast<std::size_t>(index)] : null;
}

int JsonValue::GetCount() const
{
    if (const Object* const object = Node::Find<Object>(*this))
        return static_cast<int>(object->Members().size());
    if (const Array* const array = Node::Find<Array>(*this))
        return static_cast<int>(array->size());
    return 0;
}

JsonValue JsonValue::GetKeyList() const
{
    Array keys;
    if (const Object* const object = Node::Find<Object>(*this))
    {
        keys.reserve(object->Members().size());
        for (const Object::Member& member : object->Members())
            keys.emplace_back().SetString(member.key.c_str());
    }
    JsonValue list;
    list.node = new Node{std::move(keys)};
    return list;
}

TaviString JsonValue::GetJsonString() const
{
    std::string json;
    Node::AppendJson(json, *this);
    return TaviString(json.c_str());
}

int JsonValue::Compare(const JsonValue& other) const
{
    return Node::AreEqual(*this, other) ? 0 : 1;
}

bool JsonValue::RemoveKey(const TaviString& key)
{
    auto* const object = Node::Find<Object>(*this);
    return object != nullptr && object->Remove(ViewOf(key));
}

JsonValue::operator TaviString() const
{
    if (node == nullptr)
        return TaviString();
    const std::string* const text = Node::Find<std::string>(*this);
    return text != nullptr ? TaviString(text->c_str()) : GetJsonString();
}

JsonValue::operator long long() const
{
    if (const bool* const boolean = Node::Find<bool>(*this))
        return *boolean ? 1 : 0;
    const long long* const integer = Node::Find<long long>(*this);
    return integer != nullptr ? *integer : 0;
}

void JsonValue::Reset() noexcept
{
    delete std::exchange(node, nullptr);
}

} // namespace Veltrane::TaviDesktopSDK
