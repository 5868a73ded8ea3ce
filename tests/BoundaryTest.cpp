// The binary interface: what programs that were built against an earlier library rely on.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetHelpers.h>

#include "Text.h"

using namespace Corvane;
using namespace Veltrane::TaviDesktopSDK;

namespace
{

// Makes protected members accessible.
struct Opened : Facet::Base
{
    static auto RemoveFacetEntriesMember() { return &Opened::RemoveFacetEntries; }
};

// The number of the virtual function's entry in the table of its class. A pointer to a virtual member holds the entry's
// offset in bytes, plus one (Itanium C++ ABI, 2.3). Only Visual C++ does it in another way.
template <typename Member>
std::size_t SlotOf(Member member)
{
    static_assert(sizeof(member) == 2 * sizeof(std::uintptr_t));
    std::uintptr_t function = 0;
    std::memcpy(&function, &member, sizeof(function));
    EXPECT_EQ(function & 1, 1U) << "not a virtual function";
    return function / sizeof(void*);
}

template <typename Function>
Function EntryOf(const Facet::Base& facet, std::size_t slot)
{
    const Function* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&facet), sizeof(table));
    return table[slot];
}

} // namespace

TEST(Boundary, HandlesAreOnePointer)
{
    EXPECT_EQ(sizeof(TaviString), sizeof(void*));
    EXPECT_EQ(alignof(TaviString), alignof(void*));
    EXPECT_EQ(sizeof(JsonValue), sizeof(void*));
    EXPECT_EQ(alignof(JsonValue), alignof(void*));
}

// Programs have facets on their stacks, so their size is part of the interface.
TEST(Boundary, FacetsKeepTheirSizes)
{
    constexpr std::size_t Base = 4 * sizeof(void*); // virtual functions, own data, shared data, timer
    EXPECT_EQ(sizeof(Facet::Base), Base);
    EXPECT_EQ(sizeof(Facet::Product), Base);
    EXPECT_EQ(sizeof(Facet::Content), Base);
    EXPECT_EQ(sizeof(Facet::Entitlement), Base);
    EXPECT_EQ(sizeof(Facet::Component), Base);
    EXPECT_EQ(sizeof(Facet::Core), Base + 4 * sizeof(void*)); // sub-facets
}

// The destructor, which has two entries, comes first.
TEST(Boundary, VirtualFunctionsKeepTheirOrder)
{
    EXPECT_EQ(SlotOf(&Facet::Base::Build), 2U);
    EXPECT_EQ(SlotOf(&Facet::Base::GetFacetName), 3U);
    EXPECT_EQ(SlotOf(&Facet::Base::Clone), 4U);
    EXPECT_EQ(SlotOf(Opened::RemoveFacetEntriesMember()), 5U);

    EXPECT_EQ(SlotOf(&Facet::Content::Build), 2U);
    EXPECT_EQ(SlotOf(&Facet::Core::Build), 2U);
    EXPECT_EQ(SlotOf(&Facet::Core::GetFacetName), 3U);
    EXPECT_EQ(SlotOf(&Facet::Core::Clone), 4U);
}

// Calls through the library's own tables, as a program that was built against an earlier library does.
TEST(Boundary, TheLibrarysTablesHoldTheFunctionsInThatOrder)
{
    Facet::Core core;
    const Facet::Product product;
    const Facet::Content content;
    const Facet::Base& entitlement = EntitlementFacet(core);
    const Facet::Base& component = ComponentFacet(core);
    const struct
    {
        const Facet::Base& facet;
        const char* name;
    } rows[] = {
        {core, Facet::Core::FacetName()},           {product, Facet::Product::FacetName()},
        {content, Facet::Content::FacetName()},     {entitlement, Facet::Entitlement::FacetName()},
        {component, Facet::Component::FacetName()},
    };
    for (const auto& row : rows)
    {
        Facet::Base* const clone = EntryOf<Facet::Base* (*)(const Facet::Base*)>(row.facet, 4)(&row.facet);
        ASSERT_NE(clone, nullptr) << row.name;
        EXPECT_STREQ(EntryOf<const char* (*)(const Facet::Base*)>(*clone, 3)(clone), row.name);
        SetFacetEntry(*clone, Key("key"), JsonValue(1LL));
        EntryOf<void (*)(Facet::Base*)>(*clone, 5)(clone); // removes the entries
        EXPECT_TRUE(IsNull(FacetEntries(*clone)[Key("key")])) << row.name;
        EntryOf<void (*)(Facet::Base*)>(*clone, 1)(clone); // destroys and frees
    }
}
