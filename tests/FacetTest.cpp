#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/Facet.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

static_assert(std::has_virtual_destructor_v<Facet::Base> && std::is_abstract_v<Facet::Base>);
static_assert(!std::is_copy_assignable_v<Facet::Core>);

// A facet of another module than the library.
class OwnFacet : public Facet::Base
{
public:
    using Base::Base;
    using Base::Data;
    using Base::RemoveFacetEntries;

    const char* GetFacetName() const override { return "own"; }
    Base* Clone() const override { return new OwnFacet(*this); }
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

struct NamedFacet
{
    const char* name;
    std::unique_ptr<Facet::Base> facet;
};

// One of each class of the library.
std::vector<NamedFacet> FacetsOfEveryClass()
{
    std::vector<NamedFacet> facets;
    facets.push_back({Facet::Core::FacetName(), std::make_unique<Facet::Core>()});
    facets.push_back({Facet::Product::FacetName(), std::make_unique<Facet::Product>()});
    facets.push_back({Facet::Content::FacetName(), std::make_unique<Facet::Content>()});
    facets.push_back({Facet::Entitlement::FacetName(), std::make_unique<Facet::Entitlement>()});
    facets.push_back({Facet::Component::FacetName(), std::make_unique<Facet::Component>()});
    return facets;
}

// The core's sub-facets by the name of their class.
struct SubFacet
{
    const char* name;
    Facet::Base& (Facet::Core::*get)();
};

std::vector<SubFacet> SubFacets()
{
    return {
        {Facet::Product::FacetName(), &Facet::Core::ProductFacet},
        {Facet::Content::FacetName(), &Facet::Core::ContentFacet},
        {Facet::Entitlement::FacetName(), &Facet::Core::EntitlementFacet},
        {Facet::Component::FacetName(), &Facet::Core::ComponentFacet},
    };
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
    facet.SetFacetEntry(Key("a"), SomeEntries()[Key("a")]);
    facet.SetFacetEntry(Key("b"), SomeEntries()[Key("b")]);
}

constexpr long long NoTimer = -1;

// The time that the facet's payload tells, NoTimer when it tells none.
long long EditingLength(const Facet::Base& facet)
{
    const JsonValue payload = facet.Build(JsonValue());
    const JsonValue& length = payload[Key("document_editing_length_ms")];
    if (length.IsNull())
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

Facet::Content ContentWithTimer()
{
    Facet::Content content;
    content.StartDocumentEditTimer();
    return content;
}

} // namespace

TEST(Facet, WithoutDataHoldsEntriesOfItsOwn)
{
    for (const bool shared : {false, true})
    {
        SCOPED_TRACE(shared);
        OwnFacet facet(nullptr, shared);
        EXPECT_TRUE(facet.Data().IsNull());
        SetSomeEntries(facet);
        EXPECT_EQ(Json(facet.Data()), SomeEntriesJson);
        EXPECT_TRUE(OwnFacet(nullptr, shared).Data().IsNull());
    }
}

TEST(Facet, WithSharedDataWorksOnTheCallersValue)
{
    JsonValue data = SomeEntries();
    {
        OwnFacet facet(&data, true);
        EXPECT_EQ(&facet.Data(), &data);
        EXPECT_EQ(&std::as_const(facet).Data(), &data);
        facet.SetFacetEntry(Key("a"), JsonValue(2LL));
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
    facet.SetFacetEntry(Key("a"), JsonValue(2LL));
    EXPECT_EQ(Json(data), SomeEntriesJson);
    data[Key("b")] = JsonValue();
    EXPECT_EQ(Built(facet), R"({"a":2,"b":{"c":1}})");
}

TEST(Facet, CopyNeverSharesItsData)
{
    JsonValue data = SomeEntries();
    const OwnFacet source(&data, true);
    OwnFacet copy(source);
    const std::unique_ptr<Facet::Base> clone(source.Clone());
    copy.SetFacetEntry(Key("a"), JsonValue());
    clone->SetFacetEntry(Key("b"), JsonValue());
    EXPECT_EQ(Json(data), SomeEntriesJson);

    data = JsonValue();
    EXPECT_EQ(Built(copy), R"({"b":{"c":1}})");
    EXPECT_EQ(Built(*clone), R"({"a":"text"})");
}

TEST(Facet, AssignmentCopiesEntries)
{
    OwnFacet source(nullptr, false);
    SetSomeEntries(source);
    OwnFacet target(nullptr, false);
    target.SetFacetEntry(Key("old"), JsonValue(true));
    target = source;
    EXPECT_EQ(Built(target), SomeEntriesJson);

    source.GetFacetEntry(Key("b"))[Key("c")] = JsonValue(2LL);
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
    core.ContentFacet().SetFacetEntry(Key("sub"), JsonValue(true));
    Facet::Base& base = core;
    base = source;
    EXPECT_EQ(Built(core), R"({"a":"text","b":{"c":1},"sub":true})");
    EXPECT_STREQ(base.GetFacetName(), Facet::Core::FacetName());

    core.ContentFacet() = source;
    core.SetFacetEntry(Key("a"), JsonValue());
    core.SetFacetEntry(Key("b"), JsonValue());
    EXPECT_EQ(Built(core), SomeEntriesJson);
}

TEST(Facet, SettingAnEntryStoresItOrRemovesItForANullValue)
{
    for (const NamedFacet& row : FacetsOfEveryClass())
    {
        SCOPED_TRACE(row.name);
        Facet::Base& facet = *row.facet;
        facet.SetFacetEntry(Key("absent"), JsonValue());
        EXPECT_EQ(Built(facet), "null");

        facet.SetFacetEntry(Key("false"), JsonValue(false));
        facet.SetFacetEntry(Key("zero"), JsonValue(0LL));
        facet.SetFacetEntry(Key("empty"), String(""));
        EXPECT_EQ(Built(facet), R"({"false":false,"zero":0,"empty":""})");

        facet.SetFacetEntry(Key("zero"), String("replaced"));
        facet.SetFacetEntry(Key("false"), JsonValue());
        facet.SetFacetEntry(Key("empty"), String(nullptr));
        facet.SetFacetEntry(Key("absent"), JsonValue());
        EXPECT_EQ(Built(facet), R"({"zero":"replaced"})");
    }
}

TEST(Facet, ReadingAnEntryDoesNotCreateIt)
{
    OwnFacet facet(nullptr, false);
    const Facet::Base& reading = facet;
    EXPECT_TRUE(reading.GetFacetEntry(Key("a")).IsNull());
    EXPECT_TRUE(facet.Data().IsNull());

    SetSomeEntries(facet);
    EXPECT_EQ(Json(reading.GetFacetEntry(Key("b"))), R"({"c":1})");
    EXPECT_TRUE(reading.GetFacetEntry(Key("absent")).IsNull());
    EXPECT_EQ(Built(facet), SomeEntriesJson);
}

TEST(Facet, WritingAnEntryCreatesItAsNull)
{
    Facet::Component facet;
    EXPECT_TRUE(facet.GetFacetEntry(Key("a")).IsNull());
    EXPECT_EQ(Built(facet), R"({"a":null})");
    facet.GetFacetEntry(Key("a")) = JsonValue(true);
    EXPECT_EQ(Built(facet), R"({"a":true})");
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
    const std::vector<NamedFacet> facets = FacetsOfEveryClass();
    for (std::size_t i = 0; i < facets.size(); ++i)
    {
        EXPECT_STREQ(facets[i].facet->GetFacetName(), facets[i].name);
        EXPECT_STRNE(facets[i].name, "");
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_STRNE(facets[i].name, facets[j].name);
    }
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

        facet.GetFacetEntry(Key("b"))[Key("c")] = JsonValue(2LL);
        EXPECT_EQ(Built(clone), SomeEntriesJson);
        clone.SetFacetEntry(Key("a"), JsonValue());
        EXPECT_EQ(Built(facet), R"({"a":"text","b":{"c":2}})");
    }
}

TEST(Facet, CloneOutlivesItsSource)
{
    for (NamedFacet& row : FacetsOfEveryClass())
    {
        SetSomeEntries(*row.facet);
        const std::unique_ptr<Facet::Base> clone(row.facet->Clone());
        row.facet.reset();
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
    OwnFacet facet(nullptr, false);
    static_cast<Facet::Base&>(facet) = ContentWithTimer();
    SetSomeEntries(facet);
    facet.RemoveFacetEntries();
    EXPECT_EQ(Built(facet), "null");

    SetSomeEntries(facet);
    EXPECT_EQ(Built(facet), SomeEntriesJson);
}

TEST(CoreFacet, SubFacetIsCreatedOnceAndOfItsClass)
{
    Facet::Core core;
    for (const SubFacet& row : SubFacets())
    {
        Facet::Base& facet = (core.*row.get)();
        EXPECT_STREQ(facet.GetFacetName(), row.name);
        facet.SetFacetEntry(Key(row.name), JsonValue(true));
        EXPECT_EQ(Built(facet), std::string("{\"") + row.name + "\":true}") << "it shares nothing with the others";
    }
    for (const SubFacet& row : SubFacets())
    {
        Facet::Base& facet = (core.*row.get)();
        EXPECT_EQ(&(core.*row.get)(), &facet) << row.name;
        EXPECT_EQ(Built(facet), std::string("{\"") + row.name + "\":true}");
    }
}

TEST(CoreFacet, SubFacetBelongsToOneCore)
{
    Facet::Core core;
    Facet::Core other;
    for (const SubFacet& row : SubFacets())
    {
        (core.*row.get)().SetFacetEntry(Key("a"), JsonValue(true));
        EXPECT_NE(&(core.*row.get)(), &(other.*row.get)()) << row.name;
        EXPECT_EQ(Built((other.*row.get)()), "null") << row.name;
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
            (core.*row.get)();
            expected += std::string(",\"") + row.name + "\":0";
        }
        // The order in which entries are set does not matter.
        for (const SubFacet& row : SubFacets())
            (core.*row.get)().SetFacetEntry(Key(row.name), JsonValue(0LL));
        core.SetFacetEntry(Key("core"), JsonValue(0LL));
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
    core.EntitlementFacet().SetFacetEntry(Key("d"), String("first sub-facet"));
    core.EntitlementFacet().SetFacetEntry(Key("c"), String("first sub-facet"));
    core.ComponentFacet().SetFacetEntry(Key("d"), String("second sub-facet"));
    for (const char* key : {"b", "c", "d"})
        core.SetFacetEntry(Key(key), String("core"));
    EXPECT_EQ(Json(core.Build(event)), R"({"a":"event","b":"core","c":"first sub-facet","d":"second sub-facet"})");
    EXPECT_EQ(Json(event), R"({"a":"event","b":"event","c":"event","d":"event"})");
}

TEST(CoreFacet, CloneHasClonesOfTheSubFacets)
{
    Facet::Core core;
    SetSomeEntries(core);
    for (const SubFacet& row : SubFacets())
        (core.*row.get)().SetFacetEntry(Key(row.name), SomeEntries());
    const std::string before = Built(core);

    const std::unique_ptr<Facet::Base> clone(core.Clone());
    Facet::Core copy(core);
    EXPECT_EQ(Built(*clone), before);
    EXPECT_EQ(Built(copy), before);

    for (const SubFacet& row : SubFacets())
    {
        EXPECT_NE(&(copy.*row.get)(), &(core.*row.get)()) << row.name;
        EXPECT_STREQ((copy.*row.get)().GetFacetName(), row.name);
        (core.*row.get)().GetFacetEntry(Key(row.name))[Key("a")] = JsonValue(false);
    }
    EXPECT_EQ(Built(*clone), before);
    EXPECT_EQ(Built(copy), before);

    const std::string changed = Built(core);
    EXPECT_NE(changed, before);
    copy.ComponentFacet().SetFacetEntry(Key(Facet::Component::FacetName()), JsonValue());
    copy.Clear();
    EXPECT_EQ(Built(core), changed);

    core.Clear();
    EXPECT_EQ(Built(*clone), before);
}

TEST(CoreFacet, ClearDropsEntriesAndSubFacets)
{
    Facet::Core core;
    core.Clear();
    EXPECT_EQ(Built(core), "null");

    static_cast<Facet::Base&>(core) = ContentWithTimer();
    SetSomeEntries(core);
    for (const SubFacet& row : SubFacets())
        (core.*row.get)().SetFacetEntry(Key(row.name), JsonValue(true));
    core.Clear();
    EXPECT_EQ(Built(core), "null");
    for (const SubFacet& row : SubFacets())
        EXPECT_EQ(Built((core.*row.get)()), "null") << row.name;
}

TEST(CoreFacet, MayBeUsedAgainAfterClear)
{
    Facet::Core core;
    core.ProductFacet().SetFacetEntry(Key("product"), JsonValue(1LL));
    core.ContentFacet().SetFacetEntry(Key("content"), JsonValue(1LL));
    core.Clear();
    core.ContentFacet().SetFacetEntry(Key("content"), JsonValue(2LL));
    core.ProductFacet().SetFacetEntry(Key("product"), JsonValue(2LL));
    core.SetFacetEntry(Key("core"), JsonValue(2LL));
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
    const Facet::Content content = ContentWithTimer();
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
    const Facet::Content content = ContentWithTimer();
    EXPECT_TRUE(content.GetFacetEntry(Key("document_editing_length_ms")).IsNull());
}

TEST(EditTimer, RunsInNoOtherFacet)
{
    Facet::Core core;
    core.ContentFacet();
    const Facet::Content before;
    const Facet::Content running = ContentWithTimer();
    const Facet::Content after;
    EXPECT_TRUE(HasTimer(running));
    EXPECT_FALSE(HasTimer(before));
    EXPECT_FALSE(HasTimer(after));
    EXPECT_FALSE(HasTimer(core));
}

TEST(EditTimer, GoesAlongWithACopy)
{
    const Facet::Content content = ContentWithTimer();
    const long long earlier = EditingLength(content);

    EXPECT_GE(EditingLength(Facet::Content(content)), earlier);
    const std::unique_ptr<Facet::Base> clone(content.Clone());
    EXPECT_GE(EditingLength(*clone), earlier);
    OwnFacet assigned(nullptr, false);
    static_cast<Facet::Base&>(assigned) = content;
    EXPECT_GE(EditingLength(assigned), earlier);

    Facet::Core core;
    core.ContentFacet() = content;
    EXPECT_GE(EditingLength(core), earlier);
    EXPECT_GE(EditingLength(Facet::Core(core)), earlier);
    const std::unique_ptr<Facet::Base> clonedCore(core.Clone());
    EXPECT_GE(EditingLength(*clonedCore), earlier);
}

TEST(EditTimer, StopsWhenAFacetWithoutTimerIsAssigned)
{
    Facet::Content content = ContentWithTimer();
    const Facet::Content copy(content);
    content = Facet::Content();
    EXPECT_FALSE(HasTimer(content));
    EXPECT_TRUE(HasTimer(copy)) << "a copy's timer runs on";

    Facet::Core core;
    core.ContentFacet() = copy;
    core.ContentFacet() = content;
    EXPECT_FALSE(HasTimer(core));
}
