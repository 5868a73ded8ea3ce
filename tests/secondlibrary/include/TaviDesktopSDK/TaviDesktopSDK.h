// The second library, for tests only: the same declarations as the telemetry library's interface, in one header.
// Whatever the interface leaves open is decided differently than in the stand-in.
//
// A reference returned by operator[] is valid until a member is added to or removed from its object, or an object
// around that. An object's keys are in ascending order. Copies share nothing. Calls are made on one thread.
//
// With SECOND_LIBRARY_EXPLICIT conversions are explicit, and no pointer converts to a boolean: what compiles with and
// without it relies on no implicit conversion. The macro must be the same for the library and all its users.
#pragma once

#include <cstddef>
#include <utility>

#if !defined(_WIN32)
#define SECOND_LIBRARY_API __attribute__((visibility("default")))
#elif defined(SECOND_LIBRARY_BUILDING)
#define SECOND_LIBRARY_API __declspec(dllexport)
#else
#define SECOND_LIBRARY_API __declspec(dllimport)
#endif

#if defined(SECOND_LIBRARY_EXPLICIT)
#define SECOND_LIBRARY_CONVERSION explicit
#else
#define SECOND_LIBRARY_CONVERSION
#endif

namespace Veltrane::TaviDesktopSDK
{

class TaviString
{
public:
    SECOND_LIBRARY_API TaviString() noexcept;
    SECOND_LIBRARY_API SECOND_LIBRARY_CONVERSION TaviString(double value);
    SECOND_LIBRARY_API TaviString(const TaviString& other);
    TaviString(TaviString&& other) noexcept : content(other.content) { other.content = nullptr; }
    SECOND_LIBRARY_API ~TaviString();
    SECOND_LIBRARY_API TaviString& operator=(const TaviString& other);
    SECOND_LIBRARY_API TaviString& operator=(TaviString&& other) noexcept;

    // With SECOND_LIBRARY_EMPTY_IS_NO_TEXT in the environment, "" is no text either.
    SECOND_LIBRARY_API void SetString(const char* text);
    SECOND_LIBRARY_API void SetStringW(const wchar_t* text);

    SECOND_LIBRARY_API const char* c_str() const;
    SECOND_LIBRARY_API const wchar_t* c_strw() const;
    SECOND_LIBRARY_API unsigned long long size() const;

private:
    struct Content;

    Content* content;
};

SECOND_LIBRARY_API TaviString operator+(const TaviString& left, const TaviString& right);
SECOND_LIBRARY_API bool operator<(const TaviString& left, const TaviString& right);

class JsonValue
{
public:
    SECOND_LIBRARY_API JsonValue() noexcept;
    SECOND_LIBRARY_API SECOND_LIBRARY_CONVERSION JsonValue(bool value);
    SECOND_LIBRARY_API SECOND_LIBRARY_CONVERSION JsonValue(long long value);
#if defined(SECOND_LIBRARY_EXPLICIT)
    JsonValue(const void*) = delete;
#endif
    SECOND_LIBRARY_API JsonValue(const JsonValue& other);
    JsonValue(JsonValue&& other) noexcept : node(std::exchange(other.node, nullptr)) {}
    SECOND_LIBRARY_API ~JsonValue();
    SECOND_LIBRARY_API JsonValue& operator=(const JsonValue& other);
    SECOND_LIBRARY_API JsonValue& operator=(JsonValue&& other) noexcept;

    // With SECOND_LIBRARY_EMPTY_IS_NO_TEXT in the environment, "" makes the value null.
    SECOND_LIBRARY_API void SetString(const char* text);

    SECOND_LIBRARY_API JsonValue& operator[](const TaviString& key);
    SECOND_LIBRARY_API const JsonValue& operator[](const TaviString& key) const;
    SECOND_LIBRARY_API const JsonValue& operator[](int index) const;
    SECOND_LIBRARY_API int GetCount() const;
    SECOND_LIBRARY_API JsonValue GetKeyList() const;
    SECOND_LIBRARY_API TaviString GetJsonString() const;

    // -7 where the values differ.
    SECOND_LIBRARY_API int Compare(const JsonValue& other) const;

    SECOND_LIBRARY_API bool RemoveKey(const TaviString& key);
    SECOND_LIBRARY_API SECOND_LIBRARY_CONVERSION operator TaviString() const;
    SECOND_LIBRARY_API SECOND_LIBRARY_CONVERSION operator long long() const;

private:
    struct Node;

    Node* node;
};

static_assert(sizeof(TaviString) == sizeof(void*) && sizeof(JsonValue) == sizeof(void*));

// A facet has a member of a class that is not exported as a whole, of which cl warns. All its non-inline members are.
#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4251)
#endif

namespace Facet
{

class SECOND_LIBRARY_API Base
{
public:
    Base(JsonValue* data, bool shared);
    Base(const Base&) = delete;
    Base& operator=(const Base& other);
    static void* operator new(std::size_t size);
    static void operator delete(void* memory) noexcept;

    // The order of the virtual functions is part of the binary interface: never change it.
    virtual ~Base();
    virtual JsonValue Build(const JsonValue& event) const;
    virtual const char* GetFacetName() const = 0;
    virtual Base* Clone() const = 0;

    void SetFacetEntry(const TaviString& key, const JsonValue& value)
    {
        if (value.Compare(JsonValue()) == 0)
            Data().RemoveKey(key);
        else
            Data()[key] = value;
    }

protected:
    virtual void RemoveFacetEntries();

    JsonValue& Data();
    const JsonValue& Data() const;

private:
    JsonValue ownData;
    JsonValue* entries; // ownData, or the caller's
};

class SECOND_LIBRARY_API Product : public Base
{
public:
    Product() : Base(nullptr, false) {}
    Product& operator=(const Product&) = delete;

    static const char* FacetName();

    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;
};

class SECOND_LIBRARY_API Content : public Base
{
public:
    Content() : Base(nullptr, false) {}
    Content& operator=(const Content&) = delete;

    static const char* FacetName();

    JsonValue Build(const JsonValue& event) const override;
    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;

    // Does nothing: this library measures no editing.
    void StartDocumentEditTimer();
};

class SECOND_LIBRARY_API Entitlement : public Base
{
public:
    Entitlement& operator=(const Entitlement&) = delete;

    static const char* FacetName();

    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;

private:
    friend class Core;

    Entitlement() : Base(nullptr, false) {}
};

class SECOND_LIBRARY_API Component : public Base
{
public:
    Component& operator=(const Component&) = delete;

    static const char* FacetName();

    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;

private:
    friend class Core;

    Component() : Base(nullptr, false) {}
};

class SECOND_LIBRARY_API Core : public Base
{
public:
    Core() : Base(nullptr, false) {}
    Core& operator=(const Core&) = delete;
    ~Core() override { Clear(); }

    static const char* FacetName();

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

#if defined(_MSC_VER)
#pragma warning(pop)
#endif

SECOND_LIBRARY_API int Initialize(const Facet::Product& product, TaviString& hostProduct);
SECOND_LIBRARY_API bool SetHostProduct(const TaviString& hostProduct);
SECOND_LIBRARY_API int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra);
SECOND_LIBRARY_API int IsOptedIn(JsonValue* details);
SECOND_LIBRARY_API int SetTestingFlags(const TaviString& productKey, const JsonValue& flags);
SECOND_LIBRARY_API int SetTestingCallback(const TaviString& productKey,
                                          int (*callback)(const JsonValue& payload, void* context, JsonValue& reply),
                                          void* context);

} // namespace Veltrane::TaviDesktopSDK
