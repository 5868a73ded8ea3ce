#include <TaviDesktopSDK/Facet.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <new>

#include "Node.h"

namespace Veltrane::TaviDesktopSDK::Facet
{

namespace
{

constexpr long long TimerNotRunning = -1;

long long SteadyNanoseconds()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count();
}

// Assigns `source` to `created` and returns it.
Base* CloneInto(Base* created, const Base& source)
{
    std::unique_ptr<Base> copy(created);
    *copy = source;
    return copy.release();
}

} // namespace

Base::Base(JsonValue* data, bool shared) : sharedData(shared ? data : nullptr), editTimerStart(TimerNotRunning)
{
    if (data != nullptr && !shared)
        ownData = *data;
}

// Assigns the entries; whether this facet shares its data does not change.
// cppcheck-suppress operatorEqVarError
Base& Base::operator=(const Base& other)
{
    if (this != &other)
    {
        Data() = other.Data();
        editTimerStart = other.editTimerStart;
    }
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
    JsonValue built(event);
    AddMembers(built, Data());
    return built;
}

void Base::RemoveFacetEntries()
{
    Data() = JsonValue();
    editTimerStart = TimerNotRunning;
}

JsonValue& Base::Data()
{
    return sharedData != nullptr ? *sharedData : ownData;
}

const JsonValue& Base::Data() const
{
    return sharedData != nullptr ? *sharedData : ownData;
}

const char* Product::FacetName()
{
    return "product";
}

Base* Product::Clone() const
{
    return CloneInto(new Product, *this);
}

const char* Content::FacetName()
{
    return "content";
}

JsonValue Content::Build(const JsonValue& event) const
{
    JsonValue built = Base::Build(event);
    if (editTimerStart != TimerNotRunning)
    {
        TaviString key;
        key.SetString("document_editing_length_ms");
        built[key] = JsonValue((SteadyNanoseconds() - editTimerStart) / 1'000'000);
    }
    return built;
}

Base* Content::Clone() const
{
    return CloneInto(new Content, *this);
}

void Content::StartDocumentEditTimer()
{
    editTimerStart = SteadyNanoseconds();
}

const char* Entitlement::FacetName()
{
    return "entitlement";
}

Base* Entitlement::Clone() const
{
    return CloneInto(new Entitlement, *this);
}

const char* Component::FacetName()
{
    return "component";
}

Base* Component::Clone() const
{
    return CloneInto(new Component, *this);
}

const char* Core::FacetName()
{
    return "core";
}

JsonValue Core::Build(const JsonValue& event) const
{
    JsonValue built = Base::Build(event);
    for (const Base* const facet : subFacets)
    {
        if (facet != nullptr)
            AddMembers(built, facet->Build(JsonValue()));
    }
    return built;
}

Base* Core::Clone() const
{
    auto copy = std::make_unique<Core>();
    static_cast<Base&>(*copy) = *this;
    for (std::size_t i = 0; i < std::size(subFacets) && subFacets[i] != nullptr; ++i)
        copy->subFacets[i] = subFacets[i]->Clone();
    return copy.release();
}

void Core::Clear()
{
    RemoveFacetEntries();
    for (Base*& facet : subFacets)
    {
        delete facet;
        facet = nullptr;
    }
}

Base* Core::GetFacetByName(const char* name, FacetCreationAction action)
{
    Base** place = subFacets;
    for (; place != std::end(subFacets) && *place != nullptr; ++place)
    {
        if (std::strcmp((*place)->GetFacetName(), name) == 0)
            return *place;
    }
    if (action == FindOnly)
        return nullptr;
    // Each kind has a place, so `place` is free here unless the name is unknown.
    if (std::strcmp(name, Component::FacetName()) == 0)
        *place = new Component;
    else if (std::strcmp(name, Content::FacetName()) == 0)
        *place = new Content;
    else if (std::strcmp(name, Entitlement::FacetName()) == 0)
        *place = new Entitlement;
    else if (std::strcmp(name, Product::FacetName()) == 0)
        *place = new Product;
    else
        return nullptr;
    return *place;
}

} // namespace Veltrane::TaviDesktopSDK::Facet
