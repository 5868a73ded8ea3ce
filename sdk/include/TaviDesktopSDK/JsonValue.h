// A JSON value (null, boolean, 64-bit integer, string, object or array) held by value through one pointer-sized handle.
//
// The handle of a null value is empty, and no other value's is: `value.Compare(JsonValue()) == 0` asks for null.
// Neither
// `==` nor `if` does, which take the value for a number by its conversion. A pointer, a text among them, converts to
// the boolean true. Strings and keys are 8-bit text as in TaviString.h; a key without text is the empty key.
//
// Copies are deep. A reference that operator[] gave stays valid while other members are added to the same object, and
// ends with its member. Assigning a value to itself, to one of its own members, or a member to the value that holds it,
// is safe; only moving a value into one of its own members is not allowed. Nothing here throws unless memory runs out.
// No two values may be used by two threads at once, not even a value and its copy: they share what is never changed.
#pragma once

#include <TaviDesktopSDK/Export.h>
#include <TaviDesktopSDK/TaviString.h>

namespace Veltrane::TaviDesktopSDK
{

class JsonValue
{
public:
    JsonValue() noexcept : node(nullptr) {}

    TAVI_SDK_API JsonValue(bool value);
    TAVI_SDK_API JsonValue(long long value);

    TAVI_SDK_API JsonValue(const JsonValue& other);

    JsonValue(JsonValue&& other) noexcept : node(other.node) { other.node = nullptr; }

    ~JsonValue()
    {
        if (node != nullptr)
            Reset();
    }

    TAVI_SDK_API JsonValue& operator=(const JsonValue& other);

    JsonValue& operator=(JsonValue&& other) noexcept
    {
        // `other` may be this value or a member of it: it is taken out before the tree around it goes.
        Node* const taken = other.node;
        other.node = nullptr;
        Reset();
        node = taken;
        return *this;
    }

    // Makes the value a string, a copy of the null-terminated `text`, or null when `text` is a null pointer.
    TAVI_SDK_API void SetString(const char* text);

    // The member under `key`, added as null when missing. A value that is no object becomes an empty object first.
    TAVI_SDK_API JsonValue& operator[](const TaviString& key);

    // For reading: a null value for an absent member, an index out of range, and for any value that has no members. An
    // index counts an array's elements from 0.
    TAVI_SDK_API const JsonValue& operator[](const TaviString& key) const;
    TAVI_SDK_API const JsonValue& operator[](int index) const;

    // Members of an object or elements of an array; 0 for every other value.
    TAVI_SDK_API int GetCount() const;

    // An array of the object's keys as strings, in the order in which the members were added; empty for every other
    // value.
    TAVI_SDK_API JsonValue GetKeyList() const;

    // JSON text (RFC 8259) in UTF-8 without blanks, members in the order of GetKeyList(). Characters below U+0020, the
    // quote and the backslash are escaped; a sequence that is not UTF-8 is written as U+FFFD.
    TAVI_SDK_API TaviString GetJsonString() const;

    // 0 when both are equal as JSON: same type, same content, objects whatever the order of their members. 1 otherwise.
    TAVI_SDK_API int Compare(const JsonValue& other) const;

    // True when there was such a member. Without its last member an object is an empty one.
    TAVI_SDK_API bool RemoveKey(const TaviString& key);

    // A string's text; no text for null; the JSON text of every other value.
    TAVI_SDK_API operator TaviString() const;

    // An integer's value; 1 or 0 for a boolean; 0 for every other value.
    TAVI_SDK_API operator long long() const;

private:
    struct Node;

    // Releases the tree and leaves null.
    TAVI_SDK_API void Reset() noexcept;

    Node* node;
};

static_assert(sizeof(JsonValue) == sizeof(void*), "JsonValue is one pointer-sized handle");

} // namespace Veltrane::TaviDesktopSDK
