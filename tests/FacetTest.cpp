#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetHelpers.h>

#include "Text.h"

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

template <typename... Facets>
constexpr bool AreNeverCopied = (... && (!std::is_copy_constructible_v<Facets> && !std::is_copy_assignable_v<Facets>));

template <typename Class>
concept GivesEntries = (requires(const TaviString& key, Class& facet) { facet.GetFacetEntry(key); });

static_assert(std::has_virtual_destructor_v<Facet::Base> && std::is_abstract_v<Facet::Base>);
// Entries are copied by Clone(), and by an assignment to a facet as a Base.
static_assert(AreNeverCopied<Facet::Core, Facet::Product, Facet::Content, Facet::Entitlement, Facet::Component>);
static_assert(std::is_copy_assignable_v<Facet::Base>);
// Only a core makes these two.
static_assert(!std::is_default_constructible_v<Facet::Entitlement> &&
              !std::is_default_constructible_v<Facet::Component>);
// Entries are read through the protected Data().
static_assert(!GivesEntries<Facet::Base> && !GivesEntries<const Facet::Base>);

// A facet class that is defined outside the library.
class OwnFacet : public Facet::Base
{
public:
    using Base::Base;
    using Base::Data;

    const char* GetFacetName() const override { return "own"; }
    Base* Clone() const override { return nullptr; }
};

class CountingFacet : public OwnFacet
{
public:
    explicit CountingFacet(int* counter) : OwnFacet(nullptr, false), destructions(counter) {}
    ~CountingFacet() override { ++*destructions; }
    CountingFacet(const CountingFacet&) = delete;
    CountingFacet& operator=(const CountingFacet&) = delete;

private:
    int* destructions;
};

// The core's sub-facets by the name of their class.
struct SubFacet
{
    const char* name;
    std::type_index type;
    Facet::Base& (*get)(Facet::Core& core);
};

std::vector<SubFacet> SubFacets()
{
    return {
        {Facet::Product::FacetName(), typeid(Facet::Product), ProductFacet},
        {Facet::Content::FacetName(), typeid(Facet::Content), ContentFacet},
        {Facet::Entitlement::FacetName(), typeid(Facet::Entitlement), EntitlementFacet},
        {Facet::Component::FacetName(), typeid(Facet::Component), ComponentFacet},
    };
}

struct NamedFacet
{
    const char* name;
    std::unique_ptr<Facet::Base> owner; // the facet itself, or the core whose sub-facet it is
    Facet::Base* facet;
};

// One of each class of the library, and a core's sub-facet of each class that it has.
std::vector<NamedFacet> FacetsOfEveryClass()
{
    std::vector<NamedFacet> facets;
    const auto add = [&facets](const char* name, std::unique_ptr<Facet::Base> facet)
    {
        Facet::Base* const itself = facet.get();
        facets.push_back({name, std::move(facet), itself});
    };
    add(Facet::Core::FacetName(), std::make_unique<Facet::Core>());
    add(Facet::Product::FacetName(), std::make_unique<Facet::Product>());
    add(Facet::Content::FacetName(), std::make_unique<Facet::Content>());
    for (const SubFacet& row : SubFacets())
    {
        auto core = std::make_unique<Facet::Core>();
        Facet::Base& facet = row.get(*core);
        facets.push_back({row.name, std::move(core), &facet});
    }
    return facets;
}

// What the facet alone would put into a payload.
std::string Built(const Facet::Base& facet)
{
    return Json(facet.Build(JsonValue()));
}

// {"a":"text","b":{"c":1}}
JsonValue SomeEntries()
{
    JsonValue entries;
    entries[Key("a")] = String("text");
    entries[Key("b")][Key("c")] = JsonValue(1LL);
    return entries;
}

constexpr const char* SomeEntriesJson = R"({"a":"text","b":{"c":1}})";

void SetSomeEntries(Facet::Base& facet)
{
    SetFacetEntry(facet, Key("a"), SomeEntries()[Key("a")]);
    SetFacetEntry(facet, Key("b"), SomeEntries()[Key("b")]);
}

constexpr long long NoTimer = -1;

// The edit timer's time in the facet's payload; NoTimer when the payload has none.
long long EditingLength(const Facet::Base& facet)
{
    const JsonValue payload = facet.Build(JsonValue());
    const JsonValue& length = payload[Key("document_editing_length_ms")];
    if (IsNull(length))
        return NoTimer;
    const auto milliseconds = static_cast<long long>(length);
    EXPECT_EQ(length.Compare(JsonValue(milliseconds)), 0) << "the length is no integer: " << Json(length);
    EXPECT_GE(milliseconds, 0);
    return milliseconds;
}

bool HasTimer(const Facet::Base& facet)
{
    return EditingLength(facet) != NoTimer;
}

class ContentWithTimer : public Facet::Content
{
public:
    using Content::RemoveFacetEntries;

    ContentWithTimer() { StartDocumentEditTimer(); }
};

// Assigns the entries and the timer only; the class of `target` stays.
void Assign(Facet::Base& target, const Facet::Base& source)
{
    target = source;
}

} // namespace

TEST(Facet, WithoutDataHoldsEntriesOfItsOwn)
{
    for (const bool shared : {false, true})
    {
        SCOPED_TRACE(shared);
        OwnFacet facet(nullptr, shared);
        EXPECT_TRUE(IsNull(facet.Data()));
        SetSomeEntries(facet);
        EXPECT_EQ(Json(facet.Data()), SomeEntriesJson);
        EXPECT_TRUE(IsNull(OwnFacet(nullptr, shared).Data()));
    }
}

TEST(Facet, WithSharedDataWorksOnTheCallersValue)
{
    JsonValue data = SomeEntries();
    {
        OwnFacet facet(&data, true);
        EXPECT_EQ(&facet.Data(), &data);
        EXPECT_EQ(&std::as_const(facet).Data(), &data);
        SetFacetEntry(facet, Key("a"), JsonValue(2LL));
        EXPECT_EQ(Json(data), R"({"a":2,"b":{"c":1}})");
        data[Key("d")] = JsonValue(3LL);
        EXPECT_EQ(Built(facet), R"({"a":2,"b":{"c":1},"d":3})");
    }
    EXPECT_EQ(Json(data), R"({"a":2,"b":{"c":1},"d":3})");
}

TEST(Facet, WithUnsharedDataWorksOnACopy)
{
    JsonValue data = SomeEntries();
    OwnFacet facet(&data, false);
    SetFacetEntry(facet, Key("a"), JsonValue(2LL));
    EXPECT_EQ(Json(data), SomeEntriesJson);
    data[Key("b")] = JsonValue();
    EXPECT_EQ(Built(facet), R"({"a":2,"b":{"c":1}})");
}

TEST(Facet, AssignmentOfAFacetWithSharedDataCopiesTheCallersValue)
{
    JsonValue data = SomeEntries();
    const OwnFacet source(&data, true);
    Facet::Product target;
    Assign(target, source);
    SetFacetEntry(target, Key("a"), JsonValue());
    EXPECT_EQ(Json(data), SomeEntriesJson);

    data = JsonValue();
    EXPECT_EQ(Built(target), R"({"b":{"c":1}})");
}

TEST(Facet, AssignmentCopiesEntries)
{
    OwnFacet source(nullptr, false);
    SetSomeEntries(source);
    OwnFacet target(nullptr, false);
    SetFacetEntry(target, Key("old"), JsonValue(true));
    target = source;
    EXPECT_EQ(Built(target), SomeEntriesJson);

    FacetEntries(source)[Key("b")][Key("c")] = JsonValue(2LL);
    EXPECT_EQ(Built(target), SomeEntriesJson);

    OwnFacet& same = target;
    target = same;
    EXPECT_EQ(Built(target), SomeEntriesJson);
}

TEST(Facet, AssignmentToAFacetWithSharedDataWritesTheCallersValue)
{
    OwnFacet source(nullptr, false);
    SetSomeEntries(source);
    JsonValue data;
    OwnFacet target(&data, true);
    target = source;
    EXPECT_EQ(Json(data), SomeEntriesJson);

    OwnFacet another(&data, true);
    target = another;
    EXPECT_EQ(Json(data), SomeEntriesJson);
}

TEST(Facet, AssignmentThroughTheBaseLeavesSubFacetsAlone)
{
    Facet::Content source;
    SetSomeEntries(source);
    Facet::Core core;
    SetFacetEntry(ContentFacet(core), Key("sub"), JsonValue(true));
    Assign(core, source);
    EXPECT_EQ(Built(core), R"({"a":"text","b":{"c":1},"sub":true})");
    EXPECT_STREQ(core.GetFacetName(), Facet::Core::FacetName());

    ContentFacet(core) = source;
    SetFacetEntry(core, Key("a"), JsonValue());
    SetFacetEntry(core, Key("b"), JsonValue());
    EXPECT_EQ(Built(core), SomeEntriesJson);
}

TEST(Facet, SettingAnEntryStoresItOrRemovesItForANullValue)
{
    for (const NamedFacet& row : FacetsOfEveryClass())
    {
        SCOPED_TRACE(row.name);
        Facet::Base& facet = *row.facet;
        SetFacetEntry(facet, Key("absent"), JsonValue());
        EXPECT_EQ(Built(facet), "null");

        SetFacetEntry(facet, Key("false"), JsonValue(false));
        SetFacetEntry(facet, Key("zero"), JsonValue(0LL));
        SetFacetEntry(facet, Key("empty"), String(""));
        EXPECT_EQ(Built(facet), R"({"false":false,"zero":0,"empty":""})");

        SetFacetEntry(facet, Key("zero"), String("replaced"));
        SetFacetEntry(facet, Key("false"), JsonValue());
        SetFacetEntry(facet, Key("empty"), String(nullptr));
        SetFacetEntry(facet, Key("absent"), JsonValue());
        EXPECT_EQ(Built(facet), R"({"zero":"replaced"})");
    }
}

TEST(Facet, EntriesAreReadWithoutBeingCreated)
{
    OwnFacet facet(nullptr, false);
    const Facet::Base& reading = facet;
    EXPECT_TRUE(IsNull(FacetEntries(reading)));
    EXPECT_TRUE(IsNull(FacetEntries(reading)[Key("a")]));
    EXPECT_TRUE(IsNull(facet.Data()));

    SetSomeEntries(facet);
    EXPECT_EQ(Json(FacetEntries(reading)), SomeEntriesJson);
    EXPECT_EQ(Json(FacetEntries(reading)[Key("b")]), R"({"c":1})");
    EXPECT_TRUE(IsNull(FacetEntries(reading)[Key("absent")]));
    EXPECT_EQ(Built(facet), SomeEntriesJson);
}

TEST(Facet, EntriesAreChangedInPlace)
{
    for (const NamedFacet& row : FacetsOfEveryClass())
    {
        SCOPED_TRACE(row.name);
        JsonValue& entries = FacetEntries(*row.facet);
        EXPECT_TRUE(IsNull(entries[Key("a")]));
        EXPECT_EQ(Built(*row.facet), R"({"a":null})");
        entries[Key("a")][Key("b")] = JsonValue(true);
        EXPECT_EQ(Built(*row.facet), R"({"a":{"b":true}})");
        EXPECT_EQ(&FacetEntries(*row.facet), &entries);
    }
}

TEST(Facet, BuildAddsEntriesToTheEventAndReplacesThoseOfTheSameKey)
{
    OwnFacet facet(nullptr, false);
    const Facet::Base& base = facet;
    JsonValue event;
    event[Key("first")] = JsonValue(1LL);
    event[Key("a")] = String("of the event");
    event[Key("last")] = JsonValue(2LL);
    const std::string before = Json(event);
    EXPECT_EQ(Json(base.Build(event)), before) << "without entries";

    SetSomeEntries(facet);
    EXPECT_EQ(Json(base.Build(event)), R"({"first":1,"a":"text","last":2,"b":{"c":1}})");
    EXPECT_EQ(Json(event), before) << "the argument is left as it was";
    EXPECT_EQ(Json(facet.Data()), SomeEntriesJson) << "the facet is left as it was";
}

TEST(Facet, NamesAreDistinctAndThoseOfTheClasses)
{
    const std::set<std::string> names = {Facet::Core::FacetName(), Facet::Product::FacetName(),
                                         Facet::Content::FacetName(), Facet::Entitlement::FacetName(),
                                         Facet::Component::FacetName()};
    EXPECT_EQ(names.size(), 5U);
    EXPECT_FALSE(names.contains(""));
    for (const NamedFacet& row : FacetsOfEveryClass())
        EXPECT_STREQ(row.facet->GetFacetName(), row.name);
}

TEST(Facet, CloneIsADeepCopyOfTheSameClass)
{
    for (const NamedFacet& row : FacetsOfEveryClass())
    {
        SCOPED_TRACE(row.name);
        Facet::Base& facet = *row.facet;
        SetSomeEntries(facet);
        const std::unique_ptr<Facet::Base> owner(facet.Clone());
        Facet::Base& clone = *owner;
        ASSERT_NE(&clone, &facet);
        EXPECT_EQ(typeid(clone), typeid(facet));
        EXPECT_EQ(Built(clone), SomeEntriesJson);

        FacetEntries(facet)[Key("b")][Key("c")] = JsonValue(2LL);
        EXPECT_EQ(Built(clone), SomeEntriesJson);
        SetFacetEntry(clone, Key("a"), JsonValue());
        EXPECT_EQ(Built(facet), R"({"a":"text","b":{"c":2}})");
    }
}

TEST(Facet, CloneOutlivesItsSource)
{
    for (NamedFacet& row : FacetsOfEveryClass())
    {
        SetSomeEntries(*row.facet);
        const std::unique_ptr<Facet::Base> clone(row.facet->Clone());
        row.owner.reset();
        EXPECT_EQ(Built(*clone), SomeEntriesJson) << row.name;
    }
}

TEST(Facet, MayBeDeletedThroughTheBase)
{
    int destructions = 0;
    const Facet::Base* const facet = new CountingFacet(&destructions);
    EXPECT_EQ(destructions, 0);
    delete facet;
    EXPECT_EQ(destructions, 1);
}

TEST(Facet, RemovingEntriesDropsAllAndStopsTheTimer)
{
    ContentWithTimer content;
    SetSomeEntries(content);
    content.RemoveFacetEntries();
    EXPECT_EQ(Built(content), "null");

    SetSomeEntries(content);
    EXPECT_EQ(Built(content), SomeEntriesJson);
}

TEST(CoreFacet, SubFacetIsCreatedOnceAndOfItsClass)
{
    Facet::Core core;
    for (const SubFacet& row : SubFacets())
    {
        Facet::Base& facet = row.get(core);
        EXPECT_EQ(std::type_index(typeid(facet)), row.type) << row.name;
        EXPECT_STREQ(facet.GetFacetName(), row.name);
        SetFacetEntry(facet, Key(row.name), JsonValue(true));
        EXPECT_EQ(Built(facet), std::string("{\"") + row.name + "\":true}") << "it shares nothing with the others";
    }
    for (const SubFacet& row : SubFacets())
    {
        Facet::Base& facet = row.get(core);
        EXPECT_EQ(&row.get(core), &facet) << row.name;
        EXPECT_EQ(Built(facet), std::string("{\"") + row.name + "\":true}");
    }
}

TEST(CoreFacet, SubFacetBelongsToOneCore)
{
    Facet::Core core;
    Facet::Core other;
    for (const SubFacet& row : SubFacets())
    {
        SetFacetEntry(row.get(core), Key("a"), JsonValue(true));
        EXPECT_NE(&row.get(core), &row.get(other)) << row.name;
        EXPECT_EQ(Built(row.get(other)), "null") << row.name;
    }
}

TEST(CoreFacet, BuildsItsEntriesThenSubFacetsInTheOrderOfCreation)
{
    std::vector<SubFacet> order = SubFacets();
    for (const SubFacet& first : SubFacets())
    {
        SCOPED_TRACE(first.name);
        Facet::Core core;
        std::string expected = R"({"core":0)";
        for (const SubFacet& row : order)
        {
            row.get(core);
            expected += std::string(",\"") + row.name + "\":0";
        }
        // The order in which entries are set does not matter.
        for (const SubFacet& row : SubFacets())
            SetFacetEntry(row.get(core), Key(row.name), JsonValue(0LL));
        SetFacetEntry(core, Key("core"), JsonValue(0LL));
        EXPECT_EQ(Built(core), expected + "}");
        std::rotate(order.begin(), order.begin() + 1, order.end());
    }
}

TEST(CoreFacet, LaterEntryReplacesAnEarlierOneOfTheSameKey)
{
    JsonValue event;
    for (const char* key : {"a", "b", "c", "d"})
        event[Key(key)] = String("event");
    Facet::Core core;
    SetFacetEntry(EntitlementFacet(core), Key("d"), String("first sub-facet"));
    SetFacetEntry(EntitlementFacet(core), Key("c"), String("first sub-facet"));
    SetFacetEntry(ComponentFacet(core), Key("d"), String("second sub-facet"));
    for (const char* key : {"b", "c", "d"})
        SetFacetEntry(core, Key(key), String("core"));
    EXPECT_EQ(Json(core.Build(event)), R"({"a":"event","b":"core","c":"first sub-facet","d":"second sub-facet"})");
    EXPECT_EQ(Json(event), R"({"a":"event","b":"event","c":"event","d":"event"})");
}

TEST(CoreFacet, CloneHasClonesOfTheSubFacets)
{
    Facet::Core core;
    SetSomeEntries(core);
    for (const SubFacet& row : SubFacets())
        SetFacetEntry(row.get(core), Key(row.name), SomeEntries());
    const std::string before = Built(core);

    const std::unique_ptr<Facet::Base> owner(core.Clone());
    auto& clone = dynamic_cast<Facet::Core&>(*owner);
    EXPECT_EQ(Built(clone), before);

    for (const SubFacet& row : SubFacets())
    {
        const Facet::Base& cloned = row.get(clone);
        EXPECT_NE(&cloned, &row.get(core)) << row.name;
        EXPECT_EQ(std::type_index(typeid(cloned)), row.type) << row.name;
        FacetEntries(row.get(core))[Key(row.name)][Key("a")] = JsonValue(false);
    }
    EXPECT_EQ(Built(clone), before);

    const std::string changed = Built(core);
    EXPECT_NE(changed, before);
    SetFacetEntry(ComponentFacet(clone), Key(Facet::Component::FacetName()), JsonValue());
    EXPECT_EQ(Built(core), changed);

    const std::unique_ptr<Facet::Base> other(core.Clone());
    clone.Clear();
    EXPECT_EQ(Built(core), changed);
    core.Clear();
    EXPECT_EQ(Built(*other), changed);
}

TEST(CoreFacet, ClearDropsEntriesAndSubFacets)
{
    Facet::Core core;
    core.Clear();
    EXPECT_EQ(Built(core), "null");

    SetSomeEntries(core);
    for (const SubFacet& row : SubFacets())
        SetFacetEntry(row.get(core), Key(row.name), JsonValue(true));
    ContentFacet(core) = ContentWithTimer();
    core.Clear();
    EXPECT_EQ(Built(core), "null");
    for (const SubFacet& row : SubFacets())
        EXPECT_EQ(Built(row.get(core)), "null") << row.name;
}

TEST(CoreFacet, MayBeUsedAgainAfterClear)
{
    Facet::Core core;
    SetFacetEntry(ProductFacet(core), Key("product"), JsonValue(1LL));
    SetFacetEntry(ContentFacet(core), Key("content"), JsonValue(1LL));
    core.Clear();
    SetFacetEntry(ContentFacet(core), Key("content"), JsonValue(2LL));
    SetFacetEntry(ProductFacet(core), Key("product"), JsonValue(2LL));
    SetFacetEntry(core, Key("core"), JsonValue(2LL));
    EXPECT_EQ(Built(core), R"({"core":2,"content":2,"product":2})");
    core.Clear();
    core.Clear();
    EXPECT_EQ(Built(core), "null");
}

TEST(EditTimer, RunsFromItsStartOn)
{
    Facet::Content content;
    SetSomeEntries(content);
    EXPECT_EQ(Built(content), SomeEntriesJson);

    content.StartDocumentEditTimer();
    EXPECT_TRUE(HasTimer(content));
    const JsonValue payload = content.Build(JsonValue());
    EXPECT_EQ(Json(payload.GetKeyList()), R"(["a","b","document_editing_length_ms"])");
    EXPECT_EQ(Json(payload[Key("b")]), R"({"c":1})");

    content.StartDocumentEditTimer();
    EXPECT_TRUE(HasTimer(content)) << "started anew";
}

TEST(EditTimer, IsNeverSmallerInALaterPayload)
{
    const ContentWithTimer content;
    long long earlier = 0;
    for (int i = 0; i < 1000; ++i)
    {
        const long long later = EditingLength(content);
        ASSERT_GE(later, earlier);
        earlier = later;
    }
}

TEST(EditTimer, IsNoEntryOfTheFacet)
{
    const ContentWithTimer content;
    EXPECT_TRUE(IsNull(FacetEntries(content)));
}

TEST(EditTimer, RunsInNoOtherFacet)
{
    Facet::Core core;
    ContentFacet(core);
    const Facet::Content before;
    const ContentWithTimer running;
    const Facet::Content after;
    EXPECT_TRUE(HasTimer(running));
    EXPECT_FALSE(HasTimer(before));
    EXPECT_FALSE(HasTimer(after));
    EXPECT_FALSE(HasTimer(core));
}

TEST(EditTimer, ShowsInAContentOnly)
{
    const ContentWithTimer content;
    for (const NamedFacet& row : FacetsOfEveryClass())
    {
        const bool isContent = row.name == std::string(Facet::Content::FacetName());
        Assign(*row.facet, content);
        EXPECT_EQ(HasTimer(*row.facet), isContent) << row.name;
    }
    OwnFacet facet(nullptr, false);
    Assign(facet, content);
    EXPECT_FALSE(HasTimer(facet));
}

TEST(EditTimer, GoesAlongWithACloneAndAnAssignment)
{
    // Long enough to show that no timer restarts.
    constexpr std::chrono::milliseconds Pause(20);
    const ContentWithTimer content;
    std::this_thread::sleep_for(Pause);
    const long long earlier = EditingLength(content);
    EXPECT_GE(earlier, Pause.count());

    const std::unique_ptr<Facet::Base> clone(content.Clone());
    EXPECT_GE(EditingLength(*clone), earlier);
    Facet::Content assigned;
    Assign(assigned, content);
    EXPECT_GE(EditingLength(assigned), earlier);

    Facet::Core core;
    ContentFacet(core) = content;
    EXPECT_GE(EditingLength(core), earlier);
    const std::unique_ptr<Facet::Base> clonedCore(core.Clone());
    EXPECT_GE(EditingLength(*clonedCore), earlier);
}

TEST(EditTimer, StopsWhenAFacetWithoutTimerIsAssigned)
{
    ContentWithTimer content;
    const std::unique_ptr<Facet::Base> clone(content.Clone());
    Facet::Core core;
    ContentFacet(core) = content;
    Assign(content, Facet::Content());
    EXPECT_FALSE(HasTimer(content));
    EXPECT_TRUE(HasTimer(*clone)) << "that of a copy runs on";
    EXPECT_TRUE(HasTimer(core));

    ContentFacet(core) = content;
    EXPECT_FALSE(HasTimer(core));
}
