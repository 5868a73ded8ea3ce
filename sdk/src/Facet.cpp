#include <TaviDesktopSDK/Facet.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "Blocks.h"
#include "Members.h"
#include "PayloadView.h"

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

JsonValue MillisecondsSince(long long start)
{
    return JsonValue((SteadyNanoseconds() - start) / 1'000'000);
}

const TaviString& EditingLength()
{
    // Never destroyed: the host may report until the last of its own statics is gone.
    static const TaviString& key = *new TaviString("document_editing_length_ms");
    return key;
}

// Null for an unknown name.
std::unique_ptr<Base> CreateFacet(const char* name)
{
    const auto isNamed = [name](const char* known) { return name == known || std::strcmp(name, known) == 0; };
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

// A block's size, which operator delete needs, stands before it.
void* Base::operator new(std::size_t size)
{
    const std::size_t blockSize = sizeof(std::max_align_t) + size;
    auto* const block = static_cast<std::byte*>(AllocateBlock(blockSize));
    new (block) std::size_t(blockSize);
    return block + sizeof(std::max_align_t);
}

void Base::operator delete(void* memory) noexcept
{
    if (memory == nullptr)
        return;
    std::byte* const block = static_cast<std::byte*>(memory) - sizeof(std::max_align_t);
    FreeBlock(block, *std::launder(reinterpret_cast<std::size_t*>(block)));
}

Base::~Base() = default;

JsonValue Base::Build(const JsonValue& event) const
{
    JsonValue built(event);
    Members::Merge(built, Data());
    if (editTimerStart != TimerNotRunning)
        built[EditingLength()] = MillisecondsSince(editTimerStart);
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
    static constexpr std::size_t KindCount = 4; // that a core creates

    std::array<std::unique_ptr<Base>, KindCount> inOrderOfCreation;
    std::size_t count = 0;

    std::unique_ptr<Base>* begin() { return inOrderOfCreation.data(); }
    std::unique_ptr<Base>* end() { return begin() + count; }

    Base* Add(std::unique_ptr<Base> facet) { return (inOrderOfCreation[count++] = std::move(facet)).get(); }

    static void* operator new(std::size_t size) { return AllocateBlock(size); }
    static void operator delete(void* memory) noexcept { FreeBlock(memory, sizeof(FacetList)); }
};

Core::Core(const Core& other) : Base(other)
{
    if (other.facets == nullptr)
        return;
    auto copies = std::make_unique<FacetList>();
    for (const std::unique_ptr<Base>& facet : *other.facets)
        copies->Add(std::unique_ptr<Base>(facet->Clone()));
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
        for (const std::unique_ptr<Base>& facet : *facets)
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
        const auto* const found = std::find_if(facets->begin(), facets->end(),
                                               [name](const std::unique_ptr<Base>& facet)
                                               { return std::strcmp(facet->GetFacetName(), name) == 0; });
        if (found != facets->end())
            return found->get();
    }
    std::unique_ptr<Base> created = action == CreateWhenMissing ? CreateFacet(name) : nullptr;
    if (created == nullptr)
        return nullptr;
    if (facets == nullptr)
        facets = new FacetList;
    return facets->Add(std::move(created));
}

} // namespace Veltrane::TaviDesktopSDK::Facet

namespace Veltrane::TaviDesktopSDK
{

void PayloadView::Add(const Facet::Core& event)
{
    const auto add = [this](const Facet::Base& facet)
    {
        Add(facet.Data());
        if (facet.editTimerStart != Facet::TimerNotRunning)
        {
            measured[Facet::EditingLength()] = Facet::MillisecondsSince(facet.editTimerStart);
            Add(measured);
        }
    };
    add(event);
    if (event.facets == nullptr)
        return;
    for (const std::unique_ptr<Facet::Base>& facet : *event.facets)
        add(*facet);
}

} // namespace Veltrane::TaviDesktopSDK
