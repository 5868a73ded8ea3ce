// Facets: named JSON objects that the telemetry library merges into an event's payload.
//
// `Core` is the event. Its sub-facets are created on first request and belong to it until `Clear()`. `Product` and
// `Content` may also stand alone. While one thread uses a facet, no other thread may use the library or its values.
#pragma once

#include <cstddef>

#include <TaviDesktopSDK/Export.h>
#include <TaviDesktopSDK/JsonValue.h>
#include <TaviDesktopSDK/TaviString.h>

// C4251: the member's class is not exported as a whole; its out-of-line members are.
#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4251)
#endif

namespace Veltrane::TaviDesktopSDK::Facet
{

class TAVI_SDK_API Base
{
public:
    // With null `data` the facet has its own entries. Otherwise it works on the caller's `*data`, which must outlive
    // it, if `shared`, and on a copy of `*data` if not.
    Base(JsonValue* data, bool shared);

    Base(const Base&) = delete;

    // Copies entries and a running edit timer. Assigning to a facet that shares its data writes the caller's `*data`.
    Base& operator=(const Base& other);

    // The library frees what it allocates, whichever module creates or destroys the facet.
    static void* operator new(std::size_t size);
    static void operator delete(void* memory) noexcept;

    // The order of the virtual functions is part of the binary interface: never change it.
    virtual ~Base();

    // A copy of `event` with this facet's entries added, an entry replacing one of the same key.
    virtual JsonValue Build(const JsonValue& event) const;

    // Returns the class's FacetName(): a constant text, which the library owns.
    virtual const char* GetFacetName() const = 0;

    // Returns a new copy with its own data, owned by the caller.
    virtual Base* Clone() const = 0;

protected:
    // Also stops the edit timer.
    virtual void RemoveFacetEntries();

    // The entries, as an object; null before the first entry is set.
    JsonValue& Data();
    const JsonValue& Data() const;

private:
    friend class Content;

    JsonValue ownData;
    JsonValue* sharedData;
    long long editTimerStart; // used by Content only; in Base so that assignment copies it. Negative when stopped
};

class TAVI_SDK_API Product : public Base
{
public:
    Product() : Base(nullptr, false) {}
    Product& operator=(const Product&) = delete;

    static const char* FacetName();

    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;
};

class TAVI_SDK_API Content : public Base
{
public:
    Content() : Base(nullptr, false) {}
    Content& operator=(const Content&) = delete;

    static const char* FacetName();

    // Adds "document_editing_length_ms" while the edit timer runs: an integer, milliseconds since its start.
    JsonValue Build(const JsonValue& event) const override;
    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;

    // Starts or restarts the timer of the editing of the document. Assigning this facet as a Base to another content
    // facet copies the start time.
    void StartDocumentEditTimer();
};

// A sub-facet only: created by a core.
class TAVI_SDK_API Entitlement : public Base
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

// A sub-facet only: created by a core.
class TAVI_SDK_API Component : public Base
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

class TAVI_SDK_API Core : public Base
{
public:
    Core() : Base(nullptr, false) {}
    Core& operator=(const Core&) = delete;
    ~Core() override { Clear(); }

    static const char* FacetName();

    // The core's own entries, then each sub-facet's in the order of creation.
    JsonValue Build(const JsonValue& event) const override;
    const char* GetFacetName() const override { return FacetName(); }
    Base* Clone() const override;

    // Removes all entries and destroys all sub-facets; references to them become invalid.
    void Clear();

    // The event's sub-facets, created on the first request.
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

    // Null for an unknown name, and for an absent facet that is only to be found.
    Base* GetFacetByName(const char* name, FacetCreationAction action);

    Base* subFacets[4] = {}; // in the order of creation; unused places, at the end, are null
};

} // namespace Veltrane::TaviDesktopSDK::Facet

#if defined(_MSC_VER)
#pragma warning(pop)
#endif
