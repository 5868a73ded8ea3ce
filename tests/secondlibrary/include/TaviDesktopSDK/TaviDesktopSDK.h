// The second library, for tests only: the same declarations as the telemetry library's interface, in one header.
// Whatever the interface leaves open is decided differently than in the stand-in: conversions are explicit, and no
// pointer converts to a boolean.
//
// A reference returned by operator[] is valid until a member is added to or removed from its object, or an object
// around that. An object's keys are in ascending order. Copies share nothing. Calls are made on one thread.
#pragma once

#include <utility>

#if !defined(_WIN32)
#define SECOND_LIBRARY_API __attribute__((visibility("default")))
#elif defined(SECOND_LIBRARY_BUILDING)
#define SECOND_LIBRARY_API __declspec(dllexport)
#else
#define SECOND_LIBRARY_API __declspec(dllimport)
#endif

namespace Veltrane::TaviDesktopSDK
{

class SECOND_LIBRARY_API TaviString
{
public:
    TaviString() noexcept : content(nullptr) {}
    explicit TaviString(double value);
    TaviString(const TaviString& other);
    TaviString(TaviString&& other) noexcept : content(std::exchange(other.content, nullptr)) {}
    ~TaviString() { SetString(nullptr); }
    TaviString& operator=(TaviString other) noexcept
    {
        std::swap(content, other.content);
        return *this;
    }

    // With SECOND_LIBRARY_EMPTY_IS_NO_TEXT in the environment, "" is no text either.
    void SetString(const char* text);
    void SetStringW(const wchar_t* text);

    const char* c_str() const;
    const wchar_t* c_strw() const;
    unsigned long long size() const;

private:
    struct Content;

    Content* content;
};

SECOND_LIBRARY_API TaviString operator+(const TaviString& left, const TaviString& right);
SECOND_LIBRARY_API bool operator<(const TaviString& left, const TaviString& right);

class SECOND_LIBRARY_API JsonValue
{
public:
    JsonValue() noexcept : node(nullptr) {}
    explicit JsonValue(bool value);
    explicit JsonValue(long long value);
    JsonValue(const void*) = delete;
    JsonValue(const JsonValue& other);
    JsonValue(JsonValue&& other) noexcept : node(std::exchange(other.node, nullptr)) {}
    ~JsonValue();
    JsonValue& operator=(JsonValue other) noexcept
    {
        std::swap(node, other.node);
        return *this;
    }

    // With SECOND_LIBRARY_EMPTY_IS_NO_TEXT in the environment, "" makes the value null.
    void SetString(const char* text);

    JsonValue& operator[](const TaviString& key);
    const JsonValue& operator[](const TaviString& key) const;
    const JsonValue& operator[](int index) const;
    int GetCount() const;
    JsonValue GetKeyList() const;
    TaviString GetJsonString() const;

    // -7 if the values differ.
    int Compare(const JsonValue& other) const;

    bool RemoveKey(const TaviString& key);
    explicit operator TaviString() const;
    explicit operator long long() const;

private:
    struct Node;

    Node* node;
};

static_assert(sizeof(TaviString) == sizeof(void*) && sizeof(JsonValue) == sizeof(void*));

namespace Facet
{

class SECOND_LIBRARY_API Base
{
public:
    Base(JsonValue*, bool) {}
    Base(const Base&) = delete;
    Base& operator=(const Base& other)
    {
        data = other.data;
        return *this;
    }

    // The order of the virtual functions is part of the binary interface: never change it.
    virtual ~Base();
    virtual JsonValue Build(const JsonValue& event) const;
    virtual const char* GetFacetName() const = 0;
    virtual Base* Clone() const = 0;

protected:
    virtual void RemoveFacetEntries();

    JsonValue& Data() { return data; }
    const JsonValue& Data() const { return data; }

private:
    JsonValue data;
};

// A facet without further facets in it.
template <typename Kind>
class Simple : public Base
{
public:
    Simple() : Base(nullptr, false) {}

    const char* GetFacetName() const override { return Kind::FacetName(); }
    Base* Clone() const override
    {
        Base* const copy = new Kind;
        *copy = *this;
        return copy;
    }
};

class Product : public Simple<Product>
{
public:
    static const char* FacetName() { return "second.product"; }
};

class Content : public Simple<Content>
{
public:
    static const char* FacetName() { return "second.content"; }

    // Does nothing: this library measures no editing.
    void StartDocumentEditTimer() {}
};

class Entitlement : public Simple<Entitlement>
{
public:
    static const char* FacetName() { return "second.entitlement"; }
};

class Component : public Simple<Component>
{
public:
    static const char* FacetName() { return "second.component"; }
};

class SECOND_LIBRARY_API Core : public Base
{
public:
    Core() : Base(nullptr, false) {}
    Core& operator=(const Core&) = delete;
    ~Core() override { Clear(); }

    static const char* FacetName() { return "second.core"; }

    JsonValue Build(const JsonValue& event) const override;
    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;

    void Clear();

    Base& ComponentFacet() { return *GetFacetByName(Component::FacetName(), CreateWhenMissing); }
    Base& ContentFacet() { return *GetFacetByName(Content::FacetName(), CreateWhenMissing); }
    Base& EntitlementFacet() { return *GetFacetByName(Entitlement::FacetName(), CreateWhenMissing); }
    Base& ProductFacet() { return *GetFacetByName(Product::FacetName(), CreateWhenMissing); }

private:
    enum FacetCreationAction : int
    {
        FindOnly = 0,
        CreateWhenMissing = 1,
    };
    struct SubFacets;

    Base* GetFacetByName(const char* name, FacetCreationAction action);

    SubFacets* subFacets = nullptr; // until the first is created
};

} // namespace Facet

SECOND_LIBRARY_API int Initialize(const Facet::Product& product, TaviString& hostProduct);
SECOND_LIBRARY_API bool SetHostProduct(const TaviString& hostProduct);
SECOND_LIBRARY_API int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra);
SECOND_LIBRARY_API int IsOptedIn(JsonValue* details);
SECOND_LIBRARY_API int SetTestingFlags(const TaviString& productKey, const JsonValue& flags);
SECOND_LIBRARY_API int SetTestingCallback(const TaviString& productKey,
                                          int (*callback)(const JsonValue& payload, void* context, JsonValue& reply),
                                          void* context);

} // namespace Veltrane::TaviDesktopSDK
