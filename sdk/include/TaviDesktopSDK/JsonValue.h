// A JSON value (null, boolean, 64-bit integer, string, object or array) held by value through one pointer-sized handle.
//
// Only a null value has an empty handle. To test for null, write `value.Compare(JsonValue()) == 0`: `==` and `if` would
// convert the value to a number. A pointer, even a string literal, converts to the boolean true; SetString() sets text.
// Strings and keys are 8-bit text as in TaviString.h; a key without text is the empty key.
//
// Copies are deep. A reference from operator[] stays valid while other members are added to the same object, until its
// own member is removed. Assigning a value to itself, to one of its own members, or a member to the value that holds
// it, is safe; moving a value into one of its own members is not. Nothing here throws unless memory runs out.
//
// Values nested up to 1,000 levels deep can be built, copied, compared, written as text and destroyed on a stack of one
// megabyte. Each level takes stack, and deeper values can overflow it.
//
// All values and strings share memory inside the library: while one thread uses any of them, no other thread may use
// another one.
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

    // Read access; the stand-in returns null for an absent member or an index out of range, and for a value that has
    // no members. An index counts an array's elements from 0.
    TAVI_SDK_API const JsonValue& operator[](const TaviString& key) const;
    TAVI_SDK_API const JsonValue& operator[](int index) const;

    // The number of an object's members or an array's elements; 0 for every other value.
    TAVI_SDK_API int GetCount() const;

    // An array of the object's keys as strings, in the order in which the members were added; empty for every other
    // value.
    TAVI_SDK_API JsonValue GetKeyList() const;

    // JSON text (RFC 8259) in UTF-8 without blanks, members in the order of GetKeyList(). Characters below U+0020, the
    // quote and the backslash are escaped; a sequence that is not UTF-8 is written as U+FFFD.
    TAVI_SDK_API TaviString GetJsonString() const;

    // 0 if both are equal as JSON: same type, same content; the order of an object's members does not matter. 1
    // otherwise.
    TAVI_SDK_API int Compare(const JsonValue& other) const;

    // Returns true if the member existed; removing the last leaves an empty object.
    TAVI_SDK_API bool RemoveKey(const TaviString& key);

    // A string's text; no text for null; the JSON text of every other value.
    TAVI_SDK_API operator TaviString() const;

    // An integer's value; 1 or 0 for a boolean; 0 for every other value.
    TAVI_SDK_API operator long long() const;

private:
    using Node = TaviString::Node;
    friend Node;

    // Frees what the value holds and makes it null.
    TAVI_SDK_API void Reset() noexcept;

    Node* node;
};

static_assert(sizeof(JsonValue) == sizeof(void*), "JsonValue is one pointer-sized handle");

} // namespace Veltrane::TaviDesktopSDK
