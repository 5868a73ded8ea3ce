// Facets and functions of the stand-in: its choices, and what its headers promise beyond what the program needs of any
// library (contract/).
#include <chrono>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetAccess.h>
#include <telemetry/FacetHelpers.h>

#include "Text.h"

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

template <typename... Facets>
constexpr bool AreNeverCopied = (... && (!std::is_copy_constructible_v<Facets> && !std::is_copy_assignable_v<Facets>));

static_assert(AreNeverCopied<Facet::Core, Facet::Product, Facet::Content, Facet::Entitlement, Facet::Component>);
static_assert(std::has_virtual_destructor_v<Facet::Base> && std::is_copy_assignable_v<Facet::Base>);
static_assert(!std::is_default_constructible_v<Facet::Entitlement> &&
              !std::is_default_constructible_v<Facet::Component>);

JsonValue Integer(long long value)
{
    return JsonValue(value);
}

JsonValue Object(const char* key, const JsonValue& value)
{
    JsonValue object;
    object[Key(key)] = value;
    return object;
}

JsonValue EmptyObject()
{
    JsonValue object = Object("key", JsonValue());
    object.RemoveKey(Key("key"));
    return object;
}

// A facet class that is defined outside the library.
class OwnFacet : public Facet::Base
{
public:
    using Base::Base;
    using Base::Data;

    const char* GetFacetName() const override { return "own"; }
    Base* Clone() const override { return nullptr; }
};

class ContentWithTimer : public Facet::Content
{
public:
    using Content::RemoveFacetEntries;

    ContentWithTimer() { StartDocumentEditTimer(); }
};

// The core's sub-facets, in the order of this call for a new core.
std::vector<Facet::Base*> SubFacets(Facet::Core& core)
{
    return {&EntitlementFacet(core), &ComponentFacet(core), &ProductFacet(core), &ContentFacet(core)};
}

// What the facet alone would put into a payload.
std::string Built(const Facet::Base& facet)
{
    return Json(facet.Build(JsonValue()));
}

constexpr const char* SomeEntries = R"({"a":"text","b":{"c":1}})";

void SetSomeEntries(Facet::Base& facet)
{
    SetFacetEntry(facet, Key("a"), String("text"));
    SetFacetEntry(facet, Key("b"), Object("c", Integer(1)));
}

// Assigns entries and timer only.
void Assign(Facet::Base& target, const Facet::Base& source)
{
    target = source;
}

constexpr long long NoTimer = -1;

// The edit timer's time in the facet's payload.
long long EditingLength(const Facet::Base& facet)
{
    const JsonValue payload = facet.Build(JsonValue());
    const JsonValue& length = payload[Key("document_editing_length_ms")];
    if (IsNull(length))
        return NoTimer;
    const auto milliseconds = static_cast<long long>(length);
    EXPECT_EQ(Json(length), std::to_string(milliseconds)) << "no integer";
    EXPECT_GE(milliseconds, 0);
    return milliseconds;
}

} // namespace

TEST(Facet, WorksOnItsOwnEntriesOnTheCallersOrOnACopy)
{
    for (const bool shared : {false, true})
    {
        SCOPED_TRACE(shared);
        OwnFacet own(nullptr, shared);
        EXPECT_TRUE(IsNull(own.Data()));
        SetSomeEntries(own);
        EXPECT_EQ(Json(own.Data()), SomeEntries);

        JsonValue data = own.Data();
        OwnFacet facet(&data, shared);
        EXPECT_EQ(&facet.Data() == &data, shared);
        SetFacetEntry(facet, Key("a"), Integer(2));
        EXPECT_EQ(Json(data), shared ? R"({"a":2,"b":{"c":1}})" : SomeEntries);
        data = JsonValue();
        EXPECT_EQ(Built(facet), shared ? "null" : R"({"a":2,"b":{"c":1}})");

        facet = own;
        EXPECT_EQ(Built(facet), SomeEntries);
        EXPECT_EQ(Json(data), shared ? SomeEntries : "null") << "assignment writes the caller's value";
        OwnFacet target(nullptr, false);
        Assign(target, facet);
        data = JsonValue();
        FacetEntries(facet)[Key("b")][Key("c")] = Integer(3);
        EXPECT_EQ(Built(target), SomeEntries);
        Assign(target, target);
        EXPECT_EQ(Built(target), SomeEntries);
        SetFacetEntry(target, Key("a"), JsonValue());
        SetFacetEntry(target, Key("b"), JsonValue());
        EXPECT_EQ(Built(target), "null") << "an object without members adds nothing";
    }
}

TEST(Facet, ACloneIsADeepCopyOfTheSameClass)
{
    Facet::Core core;
    for (Facet::Base* const facet : SubFacets(core))
    {
        SetSomeEntries(*facet);
        const std::unique_ptr<Facet::Base> clone(facet->Clone());
        const Facet::Base& cloned = *clone;
        EXPECT_EQ(typeid(cloned), typeid(*facet));
        FacetEntries(*facet)[Key("b")][Key("c")] = Integer(2);
        EXPECT_EQ(Built(*clone), SomeEntries) << facet->GetFacetName();
    }

    SetSomeEntries(core);
    SetFacetEntry(ContentFacet(core), Key("content"), Object("inner", Integer(1)));
    const std::string before = Built(core);
    const std::unique_ptr<Facet::Base> clone(core.Clone());
    FacetEntries(ContentFacet(core))[Key("content")] = Integer(2);
    EXPECT_EQ(Built(*clone), before) << "the clone has clones of the sub-facets";
    core.Clear();
    EXPECT_EQ(Built(core), "null");
    EXPECT_EQ(Built(*clone), before);
    Assign(core, *clone);
    EXPECT_EQ(Built(core), SomeEntries) << "an assignment leaves the sub-facets alone";
}

TEST(Facet, AnEditTimerGoesAlongWithACloneAndAnAssignmentAndShowsInContentsOnly)
{
    const auto begin = std::chrono::steady_clock::now();
    ContentWithTimer content;
    EXPECT_TRUE(IsNull(FacetEntries(std::as_const(content)))) << "the timer is no entry";
    // Until a timer that started anew would show less.
    constexpr long long Passed = 5;
    while (EditingLength(content) < Passed)
    {
    }
    const long long length = EditingLength(content);
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    EXPECT_LE(std::chrono::milliseconds(length), elapsed);

    const std::unique_ptr<Facet::Base> clone(content.Clone());
    EXPECT_GE(EditingLength(*clone), Passed);
    Facet::Core core;
    for (Facet::Base* const facet : SubFacets(core))
    {
        EXPECT_EQ(EditingLength(*facet), NoTimer);
        Assign(*facet, content);
    }
    Assign(core, content);
    EXPECT_GE(EditingLength(ContentFacet(core)), Passed);
    for (const Facet::Base* const facet : {&ProductFacet(core), &ComponentFacet(core), &EntitlementFacet(core)})
        EXPECT_EQ(EditingLength(*facet), NoTimer) << facet->GetFacetName();
    const std::unique_ptr<Facet::Base> clonedCore(core.Clone());
    EXPECT_GE(EditingLength(*clonedCore), Passed);

    content.StartDocumentEditTimer();
    const long long restarted = EditingLength(content);
    EXPECT_GE(EditingLength(*clone), restarted + Passed);

    Assign(ContentFacet(core), Facet::Content());
    EXPECT_EQ(EditingLength(core), NoTimer);
    content.RemoveFacetEntries();
    EXPECT_EQ(Built(content), "null");
}

// The library's functions

namespace
{

// What a callback was called with, as JSON text.
struct Calls
{
    std::vector<std::string> payloads;
    std::vector<std::string> replies;
};

int Note(const JsonValue& payload, void* context, JsonValue& reply)
{
    auto& calls = *static_cast<Calls*>(context);
    calls.payloads.push_back(Json(payload));
    calls.replies.push_back(Json(reply));
    reply[Key("answer")] = JsonValue(true);
    return 7; // is not used
}

int SetFlags(const JsonValue& flags)
{
    return Sdk::SetTestingFlags(Key("a&b&c&d"), flags);
}

int SetCallback(int (*callback)(const JsonValue& payload, void* context, JsonValue& reply), void* context)
{
    return Sdk::SetTestingCallback(Key("a&b&c&d"), callback, context);
}

JsonValue Enabled(const JsonValue& value)
{
    return Object("Testing_EnableCallback", value);
}

// The identifier of a host product with this one entry.
TaviString HostProduct(const char* name = "PL")
{
    Facet::Product product;
    SetFacetEntry(product, Key("product"), String(name));
    TaviString hostProduct;
    EXPECT_EQ(Sdk::Initialize(product, hostProduct), 0);
    SetFacetEntry(product, Key("product"), String("changed later"));
    return hostProduct;
}

// Sends an event with the one entry "event".
int Track(const TaviString& hostProduct, const char* event = "an event")
{
    Facet::Core core;
    SetFacetEntry(core, Key("event"), String(event));
    return Sdk::TrackEvent(hostProduct, core, nullptr);
}

// A callback that registers another and reports a further event.
struct Reentrance
{
    TaviString hostProduct;
    Calls calls;
    Calls callsOfAnother;
};

int NoteAndReportFurther(const JsonValue& payload, void* context, JsonValue& reply)
{
    auto& reentrance = *static_cast<Reentrance*>(context);
    EXPECT_EQ(SetCallback(Note, &reentrance.callsOfAnother), 0);
    EXPECT_EQ(Track(reentrance.hostProduct, "a further event"), 0);
    return Note(payload, &reentrance.calls, reply);
}

class TaviDesktopSDK : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(SetFlags(Enabled(JsonValue(true))), 0);
        ASSERT_EQ(SetCallback(Note, &calls), 0);
    }
    void TearDown() override
    {
        SetCallback(nullptr, nullptr);
        SetFlags(EmptyObject());
    }

    // How many calls an event makes.
    std::size_t CallsOfAnEvent()
    {
        calls = Calls();
        EXPECT_EQ(Track(hostProduct), 0);
        return calls.payloads.size();
    }

    const TaviString hostProduct = HostProduct();
    Calls calls;
};

} // namespace

TEST_F(TaviDesktopSDK, EachInitializeGivesAnIdentifierForTheProductAsItIsThen)
{
    const TaviString second = HostProduct("second");
    EXPECT_TRUE(Sdk::SetHostProduct(second));
    Track(hostProduct);
    Track(second);
    EXPECT_EQ(calls.payloads, (std::vector<std::string>{R"({"product":"PL","event":"an event"})",
                                                        R"({"product":"second","event":"an event"})"}));
    SetFlags(EmptyObject());
    EXPECT_EQ(Track(second), 0);
    for (const TaviString& unknown : {TaviString(), Key(""), Key("unknown"), second + Key("x")})
    {
        EXPECT_NE(Track(unknown), 0) << "outside test mode too: " << Text(unknown);
        EXPECT_FALSE(Sdk::SetHostProduct(unknown)) << Text(unknown);
    }
}

TEST_F(TaviDesktopSDK, FlagsThatAreNoObjectAreRefusedAndChangeNothing)
{
    for (const JsonValue& flags :
         {JsonValue(), JsonValue(true), Integer(1), String("{}"), Enabled(JsonValue(false)).GetKeyList()})
    {
        EXPECT_NE(SetFlags(flags), 0) << Json(flags);
        EXPECT_EQ(CallsOfAnEvent(), 1U) << Json(flags);
    }
}

TEST_F(TaviDesktopSDK, TheCallbackIsCalledWhileItsFlagIsTrue)
{
    for (const JsonValue& flags :
         {EmptyObject(), Enabled(JsonValue(false)), Enabled(JsonValue()), Enabled(Integer(1)), Enabled(String("true")),
          Object("Testing_EnableUpload", JsonValue(true)), Object("testing_enablecallback", JsonValue(true))})
    {
        EXPECT_EQ(SetFlags(Enabled(JsonValue(true))), 0);
        EXPECT_EQ(CallsOfAnEvent(), 1U);
        EXPECT_EQ(SetFlags(flags), 0);
        EXPECT_EQ(CallsOfAnEvent(), 0U) << Json(flags);
    }
    SetCallback(nullptr, &calls);
    SetFlags(Enabled(JsonValue(true)));
    EXPECT_EQ(CallsOfAnEvent(), 0U) << "withdrawn";
    SetCallback(Note, &calls);
    EXPECT_EQ(CallsOfAnEvent(), 1U);
    Track(hostProduct);
    EXPECT_EQ(calls.replies, (std::vector<std::string>{"null", "null"})) << "each reply is a new one";
}

TEST_F(TaviDesktopSDK, TheCallbackMayRegisterAnotherAndReportFurtherEvents)
{
    Reentrance reentrance{hostProduct, {}, {}};
    ASSERT_EQ(SetCallback(NoteAndReportFurther, &reentrance), 0);
    EXPECT_EQ(Track(hostProduct), 0);
    EXPECT_EQ(reentrance.calls.payloads, (std::vector<std::string>{R"({"product":"PL","event":"an event"})"}));
    EXPECT_EQ(reentrance.calls.replies, (std::vector<std::string>{"null"}));
    EXPECT_EQ(reentrance.callsOfAnother.payloads,
              (std::vector<std::string>{R"({"product":"PL","event":"a further event"})"}));
}

TEST_F(TaviDesktopSDK, APayloadIsTheProductThenTheCoreThenItsSubFacetsAsTheyWereCreatedThenTheExtraMembers)
{
    Facet::Core core;
    SubFacets(core);
    // The order in which entries are set does not matter. A later facet's entry replaces an earlier one's.
    for (Facet::Base* const facet :
         {&ContentFacet(core), &ProductFacet(core), &ComponentFacet(core), &EntitlementFacet(core)})
        SetFacetEntry(*facet, Key(facet->GetFacetName()), Integer(4));
    SetFacetEntry(EntitlementFacet(core), Key("component"), Integer(3));
    SetFacetEntry(core, Key("component"), Integer(2));
    SetFacetEntry(core, Key("product"), Integer(2));
    const std::string before = Built(core);
    const JsonValue extra = Object("component", Object("inner", Integer(5)));
    const JsonValue null;
    for (const JsonValue* const added : {&extra, &null, static_cast<const JsonValue*>(nullptr)})
        EXPECT_EQ(Sdk::TrackEvent(hostProduct, core, added), 0);

    const char* const without = R"({"product":4,"component":4,"entitlement":4,"content":4})";
    EXPECT_EQ(calls.payloads,
              (std::vector<std::string>{R"({"product":4,"component":{"inner":5},"entitlement":4,"content":4})", without,
                                        without}));
    EXPECT_EQ(Built(core), before);
    EXPECT_EQ(Json(extra), R"({"component":{"inner":5}})");
}
