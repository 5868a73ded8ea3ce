#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/FacetHelpers.h>

#include "Text.h"

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

const char* const EnableCallback = "Testing_EnableCallback";

// What a callback was called with.
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
    return 0;
}

int NoteAndAnswer(const JsonValue& payload, void* context, JsonValue& reply)
{
    Note(payload, context, reply);
    reply[Key("answer")] = JsonValue(true);
    return 7;
}

JsonValue EmptyObject()
{
    JsonValue object;
    object[Key("a")];
    object.RemoveKey(Key("a"));
    return object;
}

JsonValue Flags(const char* name, const JsonValue& value)
{
    JsonValue flags;
    flags[Key(name)] = value;
    return flags;
}

int SetFlags(const JsonValue& flags)
{
    return Sdk::SetTestingFlags(Key("a&b&c&d"), flags);
}

int SetCallback(int (*callback)(const JsonValue& payload, void* context, JsonValue& reply), void* context)
{
    return Sdk::SetTestingCallback(Key("a&b&c&d"), callback, context);
}

// The identifier of a host product with this one entry.
TaviString HostProduct(const char* key = "product_line_name", const char* value = "PL")
{
    Facet::Product product;
    SetFacetEntry(product, Key(key), String(value));
    TaviString hostProduct;
    EXPECT_EQ(Sdk::Initialize(product, hostProduct), 0);
    return hostProduct;
}

// Sends an event with the one entry "event".
int Track(const TaviString& hostProduct, const char* event = "an event")
{
    Facet::Core core;
    SetFacetEntry(core, Key("event"), String(event));
    return Sdk::TrackEvent(hostProduct, core, nullptr);
}

// Of a callback that calls the library itself.
struct Reentrance
{
    TaviString hostProduct;
    Calls calls;
    Calls callsOfAnother;
    std::string payloadAfterwards;
};

int NoteAndReportFurther(const JsonValue& payload, void* context, JsonValue& reply)
{
    auto& reentrance = *static_cast<Reentrance*>(context);
    const bool isFirst = reentrance.calls.payloads.empty();
    NoteAndAnswer(payload, &reentrance.calls, reply);
    if (isFirst)
    {
        EXPECT_EQ(Track(reentrance.hostProduct, "a further event"), 0);
        reentrance.payloadAfterwards = Json(payload);
    }
    return 0;
}

int NoteAndRegisterAnother(const JsonValue& payload, void* context, JsonValue& reply)
{
    auto& reentrance = *static_cast<Reentrance*>(context);
    Note(payload, &reentrance.calls, reply);
    EXPECT_EQ(SetCallback(Note, &reentrance.callsOfAnother), 0);
    EXPECT_EQ(Track(reentrance.hostProduct, "a further event"), 0);
    reentrance.payloadAfterwards = Json(payload);
    return 0;
}

const std::string AnEvent = R"({"product_line_name":"PL","event":"an event"})";
const std::string AFurtherEvent = R"({"product_line_name":"PL","event":"a further event"})";

class TaviDesktopSDK : public testing::Test
{
protected:
    void TearDown() override
    {
        SetCallback(nullptr, nullptr);
        SetFlags(EmptyObject());
    }

    // Puts the library into test mode.
    void NoteCalls()
    {
        ASSERT_EQ(SetFlags(Flags(EnableCallback, JsonValue(true))), 0);
        ASSERT_EQ(SetCallback(Note, &calls), 0);
    }

    Calls calls;
};

// A host product that no Initialize gave out.
std::vector<TaviString> UnknownHostProducts()
{
    return {TaviString(), Key(""), Key("unknown"), HostProduct() + Key("x")};
}

} // namespace

TEST_F(TaviDesktopSDK, InitializeGivesAnIdentifier)
{
    TaviString hostProduct = Key("what was there before");
    EXPECT_EQ(Sdk::Initialize(Facet::Product(), hostProduct), 0);
    EXPECT_GT(hostProduct.size(), 0U);
    EXPECT_NE(Text(hostProduct), "what was there before");
    EXPECT_TRUE(Sdk::SetHostProduct(hostProduct));
}

TEST_F(TaviDesktopSDK, EachInitializeGivesAnIdentifierOfItsOwn)
{
    NoteCalls();
    const TaviString first = HostProduct("product", "first");
    const TaviString second = HostProduct("product", "second");
    EXPECT_NE(Text(first), Text(second));

    EXPECT_EQ(Track(first), 0);
    EXPECT_EQ(Track(second), 0);
    EXPECT_EQ(Track(first), 0);
    const char* const ofFirst = R"({"product":"first","event":"an event"})";
    const char* const ofSecond = R"({"product":"second","event":"an event"})";
    EXPECT_EQ(calls.payloads, (std::vector<std::string>{ofFirst, ofSecond, ofFirst}));
}

TEST_F(TaviDesktopSDK, ProductIsDescribedAsItWasAtInitialize)
{
    NoteCalls();
    TaviString hostProduct;
    {
        Facet::Product product;
        SetFacetEntry(product, Key("product"), String("then"));
        ASSERT_EQ(Sdk::Initialize(product, hostProduct), 0);
        SetFacetEntry(product, Key("product"), String("now"));
    }
    Track(hostProduct);
    EXPECT_EQ(calls.payloads, (std::vector<std::string>{R"({"product":"then","event":"an event"})"}));
}

TEST_F(TaviDesktopSDK, SetHostProductTellsWhetherTheIdentifierIsKnown)
{
    EXPECT_TRUE(Sdk::SetHostProduct(HostProduct()));
    for (const TaviString& unknown : UnknownHostProducts())
        EXPECT_FALSE(Sdk::SetHostProduct(unknown)) << Text(unknown);
}

TEST_F(TaviDesktopSDK, UserIsOptedIn)
{
    EXPECT_EQ(Sdk::IsOptedIn(nullptr), 0);
    JsonValue details;
    EXPECT_EQ(Sdk::IsOptedIn(&details), 0);
}

TEST_F(TaviDesktopSDK, FlagsAreAnObject)
{
    JsonValue three = Flags(EnableCallback, JsonValue(true));
    three[Key("Testing_EnableWhitelistDownload")] = JsonValue(false);
    three[Key("Testing_EnableUpload")] = JsonValue(false);
    for (const JsonValue& flags : {EmptyObject(), three, Flags("unknown", JsonValue(true))})
        EXPECT_EQ(SetFlags(flags), 0) << Json(flags);
}

TEST_F(TaviDesktopSDK, FlagsThatAreNoObjectAreRefusedAndChangeNothing)
{
    const TaviString hostProduct = HostProduct();
    NoteCalls();
    for (const JsonValue& flags : {JsonValue(), JsonValue(true), JsonValue(1LL), String(""), String("{}"),
                                   EmptyObject().GetKeyList(), Flags(EnableCallback, JsonValue(false)).GetKeyList()})
    {
        SCOPED_TRACE(Json(flags));
        EXPECT_NE(SetFlags(flags), 0);
        calls = Calls();
        Track(hostProduct);
        EXPECT_EQ(calls.payloads.size(), 1U);
    }
}

TEST_F(TaviDesktopSDK, CallbackIsCalledOnlyWhenItsFlagIsTrue)
{
    const struct
    {
        JsonValue flags;
        std::size_t calls;
    } rows[] = {
        {EmptyObject(), 0},
        {Flags(EnableCallback, JsonValue(false)), 0},
        {Flags(EnableCallback, JsonValue(true)), 1},
        {Flags(EnableCallback, JsonValue()), 0},
        {Flags(EnableCallback, JsonValue(1LL)), 0},
        {Flags(EnableCallback, String("true")), 0},
        {Flags(EnableCallback, Flags(EnableCallback, JsonValue(true))), 0},
        {Flags("Testing_EnableUpload", JsonValue(true)), 0},
        {Flags("testing_enablecallback", JsonValue(true)), 0},
    };
    const TaviString hostProduct = HostProduct();
    for (const auto& row : rows)
    {
        SCOPED_TRACE(Json(row.flags));
        // Flags that were set before do not matter.
        for (const bool before : {false, true})
        {
            NoteCalls();
            ASSERT_EQ(SetFlags(Flags(EnableCallback, JsonValue(before))), 0);
            ASSERT_EQ(SetFlags(row.flags), 0);
            calls = Calls();
            EXPECT_EQ(Track(hostProduct), 0);
            EXPECT_EQ(calls.payloads.size(), row.calls);
        }
    }
}

TEST_F(TaviDesktopSDK, CallbackAndFlagsMayBeSetInEitherOrder)
{
    const TaviString hostProduct = HostProduct();
    ASSERT_EQ(SetCallback(Note, &calls), 0);
    Track(hostProduct);
    EXPECT_EQ(calls.payloads.size(), 0U);
    ASSERT_EQ(SetFlags(Flags(EnableCallback, JsonValue(true))), 0);
    Track(hostProduct);
    EXPECT_EQ(calls.payloads.size(), 1U);
}

TEST_F(TaviDesktopSDK, CallbackIsCalledOnceBeforeTheEventReturns)
{
    NoteCalls();
    const TaviString hostProduct = HostProduct();
    for (std::size_t events = 1; events <= 3; ++events)
    {
        EXPECT_EQ(Track(hostProduct), 0);
        EXPECT_EQ(calls.payloads.size(), events);
    }
}

TEST_F(TaviDesktopSDK, CallbackGetsAFreshReplyAndItsResultIsNotUsed)
{
    NoteCalls();
    ASSERT_EQ(SetCallback(NoteAndAnswer, &calls), 0);
    const TaviString hostProduct = HostProduct();
    EXPECT_EQ(Track(hostProduct), 0);
    EXPECT_EQ(Track(hostProduct), 0);
    EXPECT_EQ(calls.replies, (std::vector<std::string>{"null", "null"}));
}

TEST_F(TaviDesktopSDK, LaterRegistrationReplacesTheEarlierOne)
{
    NoteCalls();
    const TaviString hostProduct = HostProduct();
    Calls later;
    ASSERT_EQ(SetCallback(NoteAndAnswer, &later), 0);
    Track(hostProduct);
    EXPECT_EQ(calls.payloads.size(), 0U);
    EXPECT_EQ(later.payloads.size(), 1U);

    ASSERT_EQ(SetCallback(NoteAndAnswer, &calls), 0);
    Track(hostProduct);
    EXPECT_EQ(calls.payloads.size(), 1U) << "the same function, with another context";
    EXPECT_EQ(later.payloads.size(), 1U);
}

TEST_F(TaviDesktopSDK, NullCallbackWithdrawsTheEarlierOne)
{
    NoteCalls();
    const TaviString hostProduct = HostProduct();
    EXPECT_EQ(SetCallback(nullptr, &calls), 0);
    EXPECT_EQ(Track(hostProduct), 0);
    EXPECT_EQ(calls.payloads.size(), 0U);
}

TEST_F(TaviDesktopSDK, CallbackMayReportFurtherEvents)
{
    NoteCalls();
    Reentrance reentrance{HostProduct(), {}, {}, ""};
    ASSERT_EQ(SetCallback(NoteAndReportFurther, &reentrance), 0);
    EXPECT_EQ(Track(reentrance.hostProduct), 0);
    EXPECT_EQ(reentrance.calls.payloads, (std::vector<std::string>{AnEvent, AFurtherEvent}));
    EXPECT_EQ(reentrance.calls.replies, (std::vector<std::string>{"null", "null"}));
    EXPECT_EQ(reentrance.payloadAfterwards, AnEvent);
}

TEST_F(TaviDesktopSDK, CallbackMayRegisterAnotherForTheEventsFromThenOn)
{
    NoteCalls();
    Reentrance reentrance{HostProduct(), {}, {}, ""};
    ASSERT_EQ(SetCallback(NoteAndRegisterAnother, &reentrance), 0);
    EXPECT_EQ(Track(reentrance.hostProduct), 0);
    EXPECT_EQ(Track(reentrance.hostProduct), 0);
    EXPECT_EQ(reentrance.calls.payloads, (std::vector<std::string>{AnEvent}));
    EXPECT_EQ(reentrance.callsOfAnother.payloads, (std::vector<std::string>{AFurtherEvent, AnEvent}));
    EXPECT_EQ(reentrance.payloadAfterwards, AnEvent);
}

TEST_F(TaviDesktopSDK, EventForAnUnknownHostProductFailsAndTheNextOneWorks)
{
    NoteCalls();
    const TaviString hostProduct = HostProduct();
    for (const TaviString& unknown : UnknownHostProducts())
    {
        SCOPED_TRACE(Text(unknown));
        calls = Calls();
        EXPECT_NE(Track(unknown), 0);
        EXPECT_EQ(calls.payloads.size(), 0U);
        EXPECT_FALSE(Sdk::SetHostProduct(unknown)) << "the event did not make it known";

        EXPECT_EQ(Track(hostProduct), 0);
        EXPECT_EQ(calls.payloads.size(), 1U);
    }
}

TEST_F(TaviDesktopSDK, StatusOfAnEventIsTheSameOutsideTestMode)
{
    EXPECT_EQ(Track(HostProduct()), 0);
    for (const TaviString& unknown : UnknownHostProducts())
        EXPECT_NE(Track(unknown), 0) << Text(unknown);
}

TEST_F(TaviDesktopSDK, PayloadIsTheProductThenTheCoreThenItsSubFacets)
{
    NoteCalls();
    Facet::Product product;
    SetFacetEntry(product, Key("product_line_name"), String("of the description"));
    SetFacetEntry(product, Key("release_id"), String("1"));
    SetFacetEntry(product, Key("master"), String("of the description"));
    TaviString hostProduct;
    ASSERT_EQ(Sdk::Initialize(product, hostProduct), 0);

    Facet::Core core;
    SetFacetEntry(ProductFacet(core), Key("product_line_name"), String("of the event"));
    SetFacetEntry(ContentFacet(core), Key("document"), JsonValue(3LL));
    SetFacetEntry(ContentFacet(core), Key("operation"), String("of the content"));
    SetFacetEntry(ComponentFacet(core), Key("attributes"), Flags("inner", JsonValue(true)));
    SetFacetEntry(core, Key("operation"), String("of the core"));
    SetFacetEntry(core, Key("type"), JsonValue(false));
    SetFacetEntry(core, Key("master"), String("of the core"));
    const std::string before = Json(core.Build(JsonValue()));

    EXPECT_EQ(Sdk::TrackEvent(hostProduct, core, nullptr), 0);
    EXPECT_EQ(calls.payloads, (std::vector<std::string>{
                                  R"({"product_line_name":"of the event","release_id":"1","master":"of the core",)"
                                  R"("operation":"of the content","type":false,"document":3,)"
                                  R"("attributes":{"inner":true}})"}));
    EXPECT_EQ(Json(core.Build(JsonValue())), before) << "the event is left as it was";
}

TEST_F(TaviDesktopSDK, ExtraMembersAreAddedLast)
{
    NoteCalls();
    const TaviString hostProduct = HostProduct();
    Facet::Core core;
    SetFacetEntry(core, Key("core"), String("core"));
    SetFacetEntry(ComponentFacet(core), Key("component"), String("component"));

    JsonValue extra;
    extra[Key("extra")] = Flags("inner", JsonValue(true));
    extra[Key("component")] = String("extra");
    extra[Key("core")] = JsonValue(1LL);
    const std::string before = Json(extra);
    const JsonValue null;
    for (const JsonValue* added :
         {static_cast<const JsonValue*>(&extra), &null, static_cast<const JsonValue*>(nullptr)})
        EXPECT_EQ(Sdk::TrackEvent(hostProduct, core, added), 0);

    const char* const without = R"({"product_line_name":"PL","core":"core","component":"component"})";
    EXPECT_EQ(calls.payloads, (std::vector<std::string>{
                                  R"({"product_line_name":"PL","core":1,"component":"extra","extra":{"inner":true}})",
                                  without, without}));
    EXPECT_EQ(Json(extra), before);
}

TEST_F(TaviDesktopSDK, RunningEditTimerOfTheContentIsInThePayload)
{
    const PayloadRecorder recorder;
    const TaviString hostProduct = HostProduct();
    Facet::Content document;
    document.StartDocumentEditTimer();
    Facet::Core core;
    ContentFacet(core) = document;
    ASSERT_EQ(Sdk::TrackEvent(hostProduct, core, nullptr), 0);
    Track(hostProduct);

    ASSERT_EQ(recorder.Payloads().size(), 2U);
    const JsonValue& length = recorder.Payloads()[0][Key("document_editing_length_ms")];
    const auto milliseconds = static_cast<long long>(length);
    EXPECT_EQ(Json(length), std::to_string(milliseconds));
    EXPECT_GE(milliseconds, 0);
    EXPECT_TRUE(IsNull(recorder.Payloads()[1][Key("document_editing_length_ms")]));
}

TEST_F(TaviDesktopSDK, CopyOfAPayloadStaysValid)
{
    const PayloadRecorder recorder;
    const TaviString hostProduct = HostProduct();
    {
        auto core = std::make_unique<Facet::Core>();
        SetFacetEntry(ComponentFacet(*core), Key("attributes"), Flags("inner", JsonValue(true)));
        ASSERT_EQ(Sdk::TrackEvent(hostProduct, *core, nullptr), 0);
        core->Clear();
    }
    ASSERT_EQ(Track(hostProduct), 0);

    ASSERT_EQ(recorder.Payloads().size(), 2U);
    EXPECT_EQ(Json(recorder.Payloads()[0]), R"({"product_line_name":"PL","attributes":{"inner":true}})");
    EXPECT_EQ(Json(recorder.Payloads()[1]), R"({"product_line_name":"PL","event":"an event"})");
}
