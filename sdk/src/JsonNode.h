// What lies behind a value's handle. Scalars and strings are never changed, and so shared by a value and its copies;
// objects and arrays belong to one value each.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include <TaviDesktopSDK/JsonValue.h>
#include <TaviDesktopSDK/TaviString.h>

#include "Blocks.h"
#include "TextView.h"

namespace Veltrane::TaviDesktopSDK
{

struct Member
{
    explicit Member(const TaviString& name) : key(name), text(ViewOf(key)) {}

    TaviString key;
    std::string_view text; // the key's, which stays where it is
    JsonValue value;
};

// Members in the order in which they were added, each at its own place in memory until it is removed. Few are found by
// going through them, many by an index.
class JsonObject
{
public:
    using Members = std::list<Member, BlockAllocator<Member>>;

    JsonObject() = default;
    JsonObject(const JsonObject& other);
    JsonObject& operator=(const JsonObject&) = delete;
    ~JsonObject() = default;

    const Members& All() const { return members; }

    // All().end() when there is no such member.
    Members::iterator Find(std::string_view key);
    Members::const_iterator Find(std::string_view key) const { return const_cast<JsonObject*>(this)->Find(key); }

    JsonValue& FindOrAdd(const TaviString& key);

    // False when there was no such member.
    bool Remove(std::string_view key);

    // Takes all members out of `from`; they replace those of the same key.
    void TakeMembers(JsonObject& from);

private:
    using Index = std::unordered_map<std::string_view, Members::iterator>;

    static constexpr std::size_t MostWithoutIndex = 32;

    // Enters the last member, or takes it out again when memory runs out.
    void EnterInIndex();

    Members members;
    std::unique_ptr<Index> index; // null: few
};

using JsonArray = std::vector<JsonValue>;

struct JsonValue::Node
{
    using Held = std::variant<bool, long long, TaviString, JsonArray, JsonObject>;

    template <typename Type, typename... Arguments>
    static Node* Make(Arguments&&... arguments)
    {
        return new Node{1, Held(std::in_place_type<Type>, std::forward<Arguments>(arguments)...)};
    }

    // A value that holds the node.
    static JsonValue Holding(Node* node)
    {
        JsonValue value;
        value.node = node;
        return value;
    }

    static Node* CopyOf(Node* node);
    static void Release(Node* node) noexcept;

    // Null when the value is of another type.
    template <typename Type>
    static const Type* In(const JsonValue& value)
    {
        return value.node != nullptr ? std::get_if<Type>(&value.node->held) : nullptr;
    }
    template <typename Type>
    static Type* In(JsonValue& value)
    {
        return value.node != nullptr ? std::get_if<Type>(&value.node->held) : nullptr;
    }

    static bool AreEqual(const JsonValue& left, const JsonValue& right);
    static void AppendText(std::string& text, const JsonValue& value);

    // Adds the members of the object `from` to `into`, replacing those of the same key. Any other `from` has none.
    friend void AddMembers(JsonValue& into, JsonValue from)
    {
        auto* const added = In<JsonObject>(from);
        if (added == nullptr || added->All().empty())
            return;
        if (auto* const object = In<JsonObject>(into))
            object->TakeMembers(*added);
        else
            into = std::move(from);
    }

    static void* operator new(std::size_t size) { return AllocateBlock(size); }
    static void operator delete(void* memory, std::size_t size) noexcept { FreeBlock(memory, size); }

    unsigned owners; // 1 for an object or an array
    Held held;
};

void AddMembers(JsonValue& into, JsonValue from);

} // namespace Veltrane::TaviDesktopSDK
