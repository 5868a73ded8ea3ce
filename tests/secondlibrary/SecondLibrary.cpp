#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Veltrane::TaviDesktopSDK
{

namespace
{

bool EmptyIsNoText()
{
    static const bool isSet = std::getenv("SECOND_LIBRARY_EMPTY_IS_NO_TEXT") != nullptr;
    return isSet;
}

bool IsNoText(const char* text)
{
    return text == nullptr || (*text == '\0' && EmptyIsNoText());
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

constexpr char32_t Replacement = 0xFFFD;

bool IsBetween(char32_t character, char32_t first, char32_t last)
{
    return character >= first && character <= last;
}

// The character at `at` of the null-terminated `wide`; moves `at` beyond it.
char32_t NextWide(const wchar_t*& at)
{
    const auto unit = [](wchar_t character) { return char32_t{static_cast<std::make_unsigned_t<wchar_t>>(character)}; };
    const char32_t first = unit(*at++);
    if (IsBetween(first, 0xD800, 0xDBFF) && IsBetween(unit(*at), 0xDC00, 0xDFFF))
        return 0x10000 + ((first - 0xD800) << 10) + (unit(*at++) - 0xDC00);
    return IsBetween(first, 0xD800, 0xDFFF) || first > 0x10FFFF ? Replacement : first;
}

std::string Utf8Of(const wchar_t* wide)
{
    std::string text;
    while (*wide != L'\0')
    {
        const char32_t character = NextWide(wide);
        const int trailing = character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
        constexpr std::array<char32_t, 4> leads = {0x00, 0xC0, 0xE0, 0xF0};
        text += static_cast<char>(leads[static_cast<std::size_t>(trailing)] | character >> (6 * trailing));
        for (int i = trailing - 1; i >= 0; --i)
            text += static_cast<char>(0x80 | (character >> (6 * i) & 0x3F));
    }
    return text;
}

// The character at `at` of the null-terminated `text`; moves `at` beyond it, or by one byte where it is ill-formed.
char32_t NextUtf8(const char*& at)
{
    const auto byte = [bytes = at](int i) { return char32_t{static_cast<unsigned char>(bytes[i])}; };
    const char32_t lead = byte(0);
    ++at;
    if (lead < 0x80)
        return lead;
    const int trailing = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t character = lead & (0x3FU >> trailing);
    for (int i = 1; i <= trailing; ++i)
    {
        if (!IsBetween(byte(i), 0x80, 0xBF))
            return Replacement;
        character = character << 6 | (byte(i) & 0x3F);
    }
    const char32_t least = trailing == 1 ? 0x80 : trailing == 2 ? 0x800 : 0x10000;
    if (!IsBetween(lead, 0xC2, 0xF4) || !IsBetween(character, least, 0x10FFFF) || IsBetween(character, 0xD800, 0xDFFF))
        return Replacement;
    at += trailing;
    return character;
}

std::wstring WideOf(const char* text)
{
    std::wstring wide;
    while (*text != '\0')
    {
        char32_t character = NextUtf8(text);
        if (sizeof(wchar_t) == 2 && character >= 0x10000)
        {
            character -= 0x10000;
            wide += static_cast<wchar_t>(0xD800 + (character >> 10));
            character = 0xDC00 + (character & 0x3FF);
        }
        wide += static_cast<wchar_t>(character);
    }
    return wide;
}

} // namespace

struct TaviString::Content
{
    std::string text;
    std::wstring wide;
};

TaviString::TaviString() noexcept : content(nullptr) {}

TaviString::TaviString(double value) : content(nullptr)
{
    std::array<char, 512> digits{}; // the largest number has 309 before the point
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 6).ptr;
    std::string text(static_cast<const char*>(digits.data()), end);
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

TaviString::~TaviString()
{
    delete content;
}

TaviString& TaviString::operator=(const TaviString& other)
{
    return *this = TaviString(other);
}

TaviString& TaviString::operator=(TaviString&& other) noexcept
{
    TaviString taken(std::move(other));
    std::swap(content, taken.content);
    return *this;
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
    using Array = std::vector<JsonValue>;
    using Object = std::map<std::string, JsonValue>;

    std::variant<bool, long long, std::string, Array, Object> content;

    // A null pointer when `value` is of another kind.
    template <typename Kind>
    static Kind* In(const JsonValue& value)
    {
        return value.node != nullptr ? std::get_if<Kind>(&value.node->content) : nullptr;
    }

    // Moves all members to new memory, so that a reference that is no longer valid refers to freed memory.
    static void Renew(Object& object)
    {
        Object copy(object);
        object.swap(copy);
    }

    // The same text for equal values, and for no others.
    static std::string JsonText(const JsonValue& value);
};

namespace
{

std::string Quoted(const std::string& text)
{
    std::string quoted = "\"";
    for (const char byte : text)
    {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x20)
        {
            quoted += "\\u00";
            quoted += digits[code / 16U];
            quoted += digits[code % 16U];
            continue;
        }
        if (byte == '"' || byte == '\\')
            quoted += '\\';
        quoted += byte;
    }
    return quoted + '"';
}

} // namespace

std::string JsonValue::Node::JsonText(const JsonValue& value)
{
    if (const bool* const boolean = In<bool>(value))
        return *boolean ? "true" : "false";
    if (const long long* const integer = In<long long>(value))
        return std::to_string(*integer);
    if (const std::string* const text = In<std::string>(value))
        return Quoted(*text);
    std::string list;
    if (const Object* const object = In<Object>(value))
    {
        for (const auto& [key, member] : *object)
            list += (list.empty() ? "" : ",\n") + Quoted(key) + ": " + JsonText(member);
        return "{" + list + "}";
    }
    if (const Array* const array = In<Array>(value))
    {
        for (const JsonValue& element : *array)
            list += (list.empty() ? "" : ", ") + JsonText(element);
        return "[" + list + "]";
    }
    return "null";
}

JsonValue::JsonValue() noexcept : node(nullptr) {}

JsonValue::JsonValue(bool value) : node(new Node{value}) {}

JsonValue::JsonValue(long long value) : node(new Node{value}) {}

JsonValue::JsonValue(const JsonValue& other) : node(other.node != nullptr ? new Node(*other.node) : nullptr) {}

JsonValue::~JsonValue()
{
    delete node;
}

JsonValue& JsonValue::operator=(const JsonValue& other)
{
    return *this = JsonValue(other);
}

JsonValue& JsonValue::operator=(JsonValue&& other) noexcept
{
    JsonValue taken(std::move(other));
    std::swap(node, taken.node);
    return *this;
}

void JsonValue::SetString(const char* text)
{
    Node* const next = IsNoText(text) ? nullptr : new Node{std::string(text)};
    delete std::exchange(node, next);
}

namespace
{

const JsonValue& NullValue()
{
    static const JsonValue& null = *new JsonValue; // never destroyed, as the library's state below
    return null;
}

} // namespace

JsonValue& JsonValue::operator[](const TaviString& key)
{
    if (Node::In<Node::Object>(*this) == nullptr)
        delete std::exchange(node, new Node{Node::Object()});
    Node::Object& object = *Node::In<Node::Object>(*this);
    if (object.try_emplace(TextIn(key)).second)
        Node::Renew(object);
    return object.at(TextIn(key));
}

const JsonValue& JsonValue::operator[](const TaviString& key) const
{
    const Node::Object* const object = Node::In<Node::Object>(*this);
    return object != nullptr && object->contains(TextIn(key)) ? object->at(TextIn(key)) : NullValue();
}

const JsonValue& JsonValue::operator[](int index) const
{
    const Node::Array* const array = Node::In<Node::Array>(*this);
    const bool isThere = array != nullptr && index >= 0 && index < GetCount();
    return isThere ? (*array)[static_cast<std::size_t>(index)] : NullValue();
}

int JsonValue::GetCount() const
{
    if (const Node::Object* const object = Node::In<Node::Object>(*this))
        return static_cast<int>(object->size());
    const Node::Array* const array = Node::In<Node::Array>(*this);
    return array != nullptr ? static_cast<int>(array->size()) : 0;
}

JsonValue JsonValue::GetKeyList() const
{
    Node::Array keys;
    if (const Node::Object* const object = Node::In<Node::Object>(*this))
    {
        for (const auto& [key, member] : *object)
            keys.emplace_back().node = new Node{key};
    }
    JsonValue list;
    list.node = new Node{std::move(keys)};
    return list;
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
    auto* const object = Node::In<Node::Object>(*this);
    if (object == nullptr)
        return false;
    const bool wasThere = object->erase(TextIn(key)) != 0;
    if (wasThere)
        Node::Renew(*object);
    return wasThere;
}

JsonValue::operator TaviString() const
{
    if (node == nullptr)
        return {};
    const std::string* const text = Node::In<std::string>(*this);
    return TextOf(text != nullptr ? *text : Node::JsonText(*this));
}

JsonValue::operator long long() const
{
    if (const bool* const boolean = Node::In<bool>(*this))
        return *boolean ? 1 : 0;
    const long long* const integer = Node::In<long long>(*this);
    return integer != nullptr ? *integer : 0;
}

namespace
{

void AddMembers(JsonValue& event, const JsonValue& members)
{
    const JsonValue keys = members.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const TaviString key = keys[i].operator TaviString();
        event[key] = members[key];
    }
}

} // namespace

namespace Facet
{

Base::Base(JsonValue* data, bool shared)
    : ownData(data != nullptr && !shared ? *data : JsonValue()), entries(data != nullptr && shared ? data : &ownData)
{
}

Base& Base::operator=(const Base& other)
{
    if (this != &other)
        Data() = other.Data();
    return *this;
}

void* Base::operator new(std::size_t size)
{
    return ::operator new(size);
}

void Base::operator delete(void* memory) noexcept
{
    ::operator delete(memory);
}

Base::~Base() = default;

JsonValue Base::Build(const JsonValue& event) const
{
    JsonValue result(event);
    AddMembers(result, Data());
    return result;
}

void Base::RemoveFacetEntries()
{
    Data() = JsonValue();
}

JsonValue& Base::Data()
{
    return *entries;
}

const JsonValue& Base::Data() const
{
    return *entries;
}

namespace
{

Base* Filled(std::unique_ptr<Base> copy, const Base& original)
{
    *copy = original;
    return copy.release();
}

} // namespace

const char* Product::FacetName()
{
    return "second.product";
}

Base* Product::Clone() const
{
    return Filled(std::unique_ptr<Base>(new Product), *this);
}

const char* Content::FacetName()
{
    return "second.content";
}

JsonValue Content::Build(const JsonValue& event) const
{
    return Base::Build(event);
}

Base* Content::Clone() const
{
    return Filled(std::unique_ptr<Base>(new Content), *this);
}

void Content::StartDocumentEditTimer() {}

const char* Entitlement::FacetName()
{
    return "second.entitlement";
}

Base* Entitlement::Clone() const
{
    return Filled(std::unique_ptr<Base>(new Entitlement), *this);
}

const char* Component::FacetName()
{
    return "second.component";
}

Base* Component::Clone() const
{
    return Filled(std::unique_ptr<Base>(new Component), *this);
}

struct Core::SubFacets
{
    std::vector<std::unique_ptr<Base>> list; // in the order of creation
};

const char* Core::FacetName()
{
    return "second.core";
}

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
    if (subFacets != nullptr)
    {
        copy->subFacets = new SubFacets;
        for (const auto& facet : subFacets->list)
            copy->subFacets->list.emplace_back(facet->Clone());
    }
    return Filled(std::move(copy), *this);
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
    for (const auto& facet : subFacets->list)
    {
        if (std::strcmp(name, facet->GetFacetName()) == 0)
            return facet.get();
    }
    if (action == FindOnly)
        return nullptr;
    const auto isNamed = [name](const char* known) { return std::strcmp(name, known) == 0; };
    Base* created = nullptr;
    if (isNamed(Component::FacetName()))
        created = new Component;
    else if (isNamed(Content::FacetName()))
        created = new Content;
    else if (isNamed(Entitlement::FacetName()))
        created = new Entitlement;
    else if (isNamed(Product::FacetName()))
        created = new Product;
    else
        return nullptr;
    subFacets->list.emplace_back(created);
    return created;
}

} // namespace Facet

namespace
{

constexpr int UnknownHostProduct = 40;
constexpr int FlagsAreNoObject = 41;

// The function's status: that in the environment, as in SECOND_LIBRARY_TrackEvent=7, or else the given one.
int StatusOf(const char* function, int status)
{
    const char* const told = std::getenv((std::string("SECOND_LIBRARY_") + function).c_str());
    return told != nullptr ? static_cast<int>(std::strtol(told, nullptr, 10)) : status;
}

struct Library
{
    std::map<std::string, JsonValue> products; // descriptions given to Initialize, by the identifier that it returned
    bool callbackEnabled = false;
    int (*callback)(const JsonValue& payload, void* context, JsonValue& reply) = nullptr;
    void* callbackContext = nullptr;
};

Library& TheLibrary()
{
    // Never destroyed: the host may report until the last of its own statics is gone.
    static Library& library = *new Library;
    return library;
}

} // namespace

int Initialize(const Facet::Product& product, TaviString& hostProduct)
{
    auto& products = TheLibrary().products;
    const std::string identifier = "second library, product " + std::to_string(products.size() + 1);
    products[identifier] = product.Build(JsonValue());
    hostProduct = TextOf(identifier);
    return StatusOf("Initialize", 0);
}

bool SetHostProduct(const TaviString&)
{
    return false;
}

int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra)
{
    const Library& library = TheLibrary();
    const auto product = library.products.find(TextIn(hostProduct));
    if (product == library.products.end())
        return UnknownHostProduct;
    JsonValue payload = core.Build(product->second);
    if (extra != nullptr)
        AddMembers(payload, *extra);
    JsonValue reply;
    if (library.callbackEnabled && library.callback != nullptr)
        library.callback(payload, library.callbackContext, reply);
    return StatusOf("TrackEvent", 0);
}

int IsOptedIn(JsonValue*)
{
    return StatusOf("IsOptedIn", 1); // opted in: only 4 means the contrary
}

int SetTestingFlags(const TaviString&, const JsonValue& flags)
{
    if (!TextIn(flags.GetJsonString()).starts_with('{'))
        return FlagsAreNoObject;
    TheLibrary().callbackEnabled = flags[TextOf("Testing_EnableCallback")].Compare(JsonValue(true)) == 0;
    return StatusOf("SetTestingFlags", 0);
}

int SetTestingCallback(const TaviString&, int (*callback)(const JsonValue& payload, void* context, JsonValue& reply),
                       void* context)
{
    TheLibrary().callback = callback;
    TheLibrary().callbackContext = context;
    return StatusOf("SetTestingCallback", 0);
}

} // namespace Veltrane::TaviDesktopSDK
