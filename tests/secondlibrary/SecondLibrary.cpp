// Strings, values and facets of the second library. Its functions are those of the faulty library.
#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace Veltrane::TaviDesktopSDK
{

namespace
{

bool IsNoText(const char* text)
{
    static const bool emptyIsNoText = std::getenv("SECOND_LIBRARY_EMPTY_IS_NO_TEXT") != nullptr;
    return text == nullptr || (*text == '\0' && emptyIsNoText);
}

std::string TextIn(const TaviString& text)
{
    return text.c_str() != nullptr ? text.c_str() : "";
}

TaviString TextOf(const std::string& text)
{
    TaviString result;
    result.SetString(text.c_str());
    return result;
}

// Wide text has 16 or 32 bits a character. The standard library converts paths between all encodings. Ill-formed text
// becomes "?".
using Unicode = std::conditional_t<sizeof(wchar_t) == 2, std::u16string, std::u32string>;

std::string Utf8Of(std::wstring_view wide)
try
{
    const std::u8string text = std::filesystem::path(Unicode(wide.begin(), wide.end())).u8string();
    return {text.begin(), text.end()};
}
catch (const std::exception&)
{
    return "?";
}

std::wstring WideOf(std::string_view utf8)
try
{
    const auto text = std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).string<Unicode::value_type>();
    return {text.begin(), text.end()};
}
catch (const std::exception&)
{
    return L"?";
}

} // namespace

struct TaviString::Content
{
    std::string text;
    std::wstring wide;
};

TaviString::TaviString(double value) : content(nullptr)
{
    std::string text = std::to_string(value);
    if (text.find('.') != std::string::npos)
        text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    SetString(text.c_str());
}

TaviString::TaviString(const TaviString& other)
    : content(other.content != nullptr ? new Content(*other.content) : nullptr)
{
}

void TaviString::SetString(const char* text)
{
    Content* const next = IsNoText(text) ? nullptr : new Content{text, WideOf(text)};
    delete std::exchange(content, next);
}

void TaviString::SetStringW(const wchar_t* text)
{
    SetString(text != nullptr ? Utf8Of(text).c_str() : nullptr);
}

const char* TaviString::c_str() const
{
    return content != nullptr ? content->text.c_str() : nullptr;
}

const wchar_t* TaviString::c_strw() const
{
    return content != nullptr ? content->wide.c_str() : nullptr;
}

unsigned long long TaviString::size() const
{
    return content != nullptr ? content->text.size() : 0;
}

TaviString operator+(const TaviString& left, const TaviString& right)
{
    const bool hasText = left.c_str() != nullptr || right.c_str() != nullptr;
    return hasText ? TextOf(TextIn(left) + TextIn(right)) : TaviString();
}

bool operator<(const TaviString& left, const TaviString& right)
{
    return TextIn(left) < TextIn(right);
}

struct JsonValue::Node
{
    enum class Kind
    {
        Boolean,
        Integer,
        Text,
        Array,
        Object,
    };

    Kind kind;
    long long integer = 0; // of a boolean 0 or 1
    std::string text = {};
    std::vector<JsonValue> elements = {};
    std::map<std::string, JsonValue> members = {};

    static bool Is(Kind kind, const JsonValue& value) { return value.node != nullptr && value.node->kind == kind; }

    static JsonValue Of(Node content)
    {
        JsonValue value;
        value.node = new Node(std::move(content));
        return value;
    }

    // Moves all members to new memory, so that a reference that is no longer valid refers to freed memory.
    void Renew() { members = std::map<std::string, JsonValue>(members); }

    // The same text for equal values, and for no others.
    std::string JsonText() const;
    static std::string JsonText(const JsonValue& value)
    {
        return value.node != nullptr ? value.node->JsonText() : "null";
    }
};

namespace
{

const JsonValue& NullValue()
{
    // Never destroyed: a host may report until its last static object is gone.
    static const JsonValue& null = *new JsonValue;
    return null;
}

std::string Quoted(const std::string& text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace

std::string JsonValue::Node::JsonText() const
{
    if (kind == Kind::Boolean)
        return integer != 0 ? "true" : "false";
    if (kind == Kind::Integer)
        return std::to_string(integer);
    if (kind == Kind::Text)
        return Quoted(text);
    std::string list;
    for (const auto& [key, member] : members)
        list += (list.empty() ? "" : ",\n") + Quoted(key) + ": " + JsonText(member);
    for (const JsonValue& element : elements)
        list += (list.empty() ? "" : ", ") + JsonText(element);
    return kind == Kind::Object ? "{" + list + "}" : "[" + list + "]";
}

JsonValue::JsonValue(bool value) : node(new Node{Node::Kind::Boolean, value ? 1 : 0}) {}

JsonValue::JsonValue(long long value) : node(new Node{Node::Kind::Integer, value}) {}

JsonValue::JsonValue(const JsonValue& other) : node(other.node != nullptr ? new Node(*other.node) : nullptr) {}

JsonValue::~JsonValue()
{
    delete node;
}

void JsonValue::SetString(const char* text)
{
    *this = IsNoText(text) ? JsonValue() : Node::Of({Node::Kind::Text, 0, text});
}

JsonValue& JsonValue::operator[](const TaviString& key)
{
    if (!Node::Is(Node::Kind::Object, *this))
        *this = Node::Of({Node::Kind::Object});
    if (node->members.try_emplace(TextIn(key)).second)
        node->Renew();
    return node->members.at(TextIn(key));
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    const bool isThere = node != nullptr && node->members.contains(TextIn(key));
    return isThere ? node->members.at(TextIn(key)) : NullValue();
}

const JsonValue& JsonValue::operator[](int index) const
{
    const bool isThere = Node::Is(Node::Kind::Array, *this) && index >= 0 && index < GetCount();
    return isThere ? node->elements[static_cast<std::size_t>(index)] : NullValue();
}

int JsonValue::GetCount() const
{
    return node != nullptr ? static_cast<int>(node->members.size() + node->elements.size()) : 0;
}

JsonValue JsonValue::GetKeyList() const
{
    Node list{Node::Kind::Array};
    if (node != nullptr)
    {
        for (const auto& [key, member] : node->members)
            list.elements.push_back(Node::Of({Node::Kind::Text, 0, key}));
    }
    return Node::Of(std::move(list));
}

TaviString JsonValue::GetJsonString() const
{
    return TextOf(Node::JsonText(*this));
}

int JsonValue::Compare(const JsonValue& other) const
{
    return Node::JsonText(*this) == Node::JsonText(other) ? 0 : -7;
}

bool JsonValue::RemoveKey(const TaviString& key)
{
    const bool wasThere = node != nullptr && node->members.erase(TextIn(key)) != 0;
    if (wasThere)
        node->Renew();
    return wasThere;
}

JsonValue::operator TaviString() const
{
    if (node == nullptr)
        return TaviString();
    return TextOf(node->kind == Node::Kind::Text ? node->text : node->JsonText());
}

JsonValue::operator long long() const
{
    return node != nullptr ? node->integer : 0;
}

namespace Facet
{

Base::~Base() = default;

JsonValue Base::Build(const JsonValue& event) const
{
    JsonValue result(event);
    const JsonValue keys = Data().GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const TaviString key(keys[i]);
        result[key] = Data()[key];
    }
    return result;
}

void Base::RemoveFacetEntries()
{
    Data() = JsonValue();
}

struct Core::SubFacets
{
    std::vector<std::unique_ptr<Base>> list; // in the order of creation
};

JsonValue Core::Build(const JsonValue& event) const
{
    JsonValue result = Base::Build(event);
    if (subFacets != nullptr)
    {
        for (const auto& facet : subFacets->list)
            result = facet->Build(result);
    }
    return result;
}

Base* Core::Clone() const
{
    auto copy = std::make_unique<Core>();
    static_cast<Base&>(*copy) = *this;
    if (subFacets != nullptr)
    {
        copy->subFacets = new SubFacets;
        for (const auto& facet : subFacets->list)
            copy->subFacets->list.emplace_back(facet->Clone());
    }
    return copy.release();
}

void Core::Clear()
{
    RemoveFacetEntries();
    delete std::exchange(subFacets, nullptr);
}

Base* Core::GetFacetByName(const char* name, FacetCreationAction action)
{
    if (subFacets == nullptr)
        subFacets = new SubFacets;
    const std::string wanted = name;
    for (const auto& facet : subFacets->list)
    {
        if (wanted == facet->GetFacetName())
            return facet.get();
    }
    Base* created = nullptr;
    if (action == FindOnly)
        return created;
    if (wanted == Component::FacetName())
        created = new Component;
    else if (wanted == Content::FacetName())
        created = new Content;
    else if (wanted == Entitlement::FacetName())
        created = new Entitlement;
    else if (wanted == Product::FacetName())
        created = new Product;
    else
        return nullptr;
    subFacets->list.emplace_back(created);
    return created;
}

} // namespace Facet

} // namespace Veltrane::TaviDesktopSDK
