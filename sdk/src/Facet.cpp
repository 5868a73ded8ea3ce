#include <TaviDesktopSDK/Facet.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "Merge.h"

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

std::unique_ptr<Base> CreateFacet(const char* name)
{
    const auto isNamed = [name](const char* known) { return std::strcmp(name, known) == 0; };
    if (isNamed(Component::FacetName()))
        return std::make_unique<Component>();
    if (isNamed(Content::FacetName()))
        return std::make_unique<Content>();
    if (isNamed(Entitlement::FacetName()))
        return std::make_unique<Entitlement>();
    if (isNamed(Product::FacetName()))
        return std::make_unique<Product>();
    return nullptr;
}

} // namespace

Base::Base(JsonValue* data, bool shared) : sharedData(shared ? data : nullptr), editTimerStart(TimerNotRunning)
{
    if (data != nullptr && !shared)
        ownData = *data;
}

Base::Base(const Base& other) : ownData(other.Data()), editTimerStart(other.editTimerStart) {}

// Whether data is shared stays as it is: entries are what is assigned.
// cppcheck-suppress operatorEqVarError
Base& Base::operator=(const Base& other)
{
    if (this == &other)
        return *this;
    Data() = other.Data();
    editTimerStart = other.editTimerStart;
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
    MergeMembers(built, Data());
    if (editTimerStart != TimerNotRunning)
        built[TaviString("document_editing_length_ms")] = JsonValue((SteadyNanoseconds() - editTimerStart) / 1'000'000);
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

void Base::StartEditTimer()
{
    editTimerStart = SteadyNanoseconds();
}

const char* Product::FacetName()
{
    return "product";
}

Base* Product::Clone() const
{
    return new Product(*this);
}

const char* Content::FacetName()
{
    return "content";
}

Base* Content::Clone() const
{
    return new Content(*this);
}

void Content::StartDocumentEditTimer()
{
    StartEditTimer();
}

const char* Entitlement::FacetName()
{
    return "entitlement";
}

Base* Entitlement::Clone() const
{
    return new Entitlement(*this);
}

const char* Component::FacetName()
{
    return "component";
}

Base* Component::Clone() const
{
    return new Component(*this);
}

struct Core::FacetList
{
    std::vector<std::unique_ptr<Base>> inOrderOfCreation;
};

Core::Core(const Core& other) : Base(other)
{
    if (other.facets == nullptr)
        return;
    auto copies = std::make_unique<FacetList>();
    for (const std::unique_ptr<Base>& facet : other.facets->inOrderOfCreation)
        copies->inOrderOfCreation.emplace_back(facet->Clone());
    facets = copies.release();
}

const char* Core::FacetName()
{
    return "core";
}

JsonValue Core::Build(const JsonValue& event) const
{
    JsonValue built = Base::Build(event);
    if (facets != nullptr)
    {
        for (const std::unique_ptr<Base>& facet : facets->inOrderOfCreation)
            built = facet->Build(built);
    }
    return built;
}

Base* Core::Clone() const
{
    return new Core(*this);
}

void Core::Clear()
{
    RemoveFacetEntries();
    delete facets;
    facets = nullptr;
}

Base* Core::GetFacetByName(const char* name, FacetCreationAction action)
{
    if (facets != nullptr)
    {
        const auto& present = facets->inOrderOfCreation;
        const auto found = std::find_if(present.begin(), present.end(),
                                        [name](const std::unique_ptr<Base>& facet)
                                        { return std::strcmp(facet->GetFacetName(), name) == 0; });
        if (found != present.end())
            return found->get();
    }
    std::unique_ptr<Base> created = action == CreateWhenMissing ? CreateFacet(name) : nullptr;
    if (created == nullptr)
        return nullptr;
    if (facets == nullptr)
        facets = new FacetList;
    return facets->inOrderOfCreation.emplace_back(std::move(created)).get();
}

} // namespace Veltrane::TaviDesktopSDK::Facet
