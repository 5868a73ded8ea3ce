// Facets, and the library's functions from its start to the payload. Needed: the program cannot work on a library that
// does otherwise. Assumed: it works, but what it sends, or how it judges a payload, would be different.

#include <atomic>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetHelpers.h>

#include "Values.h"

using Corvane::ComponentFacet;
using Corvane::ContentFacet;
using Corvane::EntitlementFacet;
using Corvane::FacetEntries;
using Corvane::ProductFacet;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

void SetEntries(Facet::Base& facet, const Members& entries)
{
    for (const auto& [key, value] : entries)
        SetFacetEntry(facet, Text(key), value);
}

const JsonValue& Entry(const Facet::Base& facet, const char* key)
{
    return Member(FacetEntries(facet), key);
}

std::string Entries(const Facet::Base& facet)
{
    return Json(FacetEntries(facet));
}

// The identity of the program's own product file: a library may know no other.
constexpr const char* Line = "CVSTUDIO";
constexpr const char* Release = "2027.0.F";
constexpr const char* Master = "CVSTUDIO_2027_0_EN";
constexpr const char* Build = "27.0.214";

TaviString ProductKey()
{
    const TaviString separator = Text("&");
    return Text(Line) + separator + Text(Release) + separator + Text(Master) + separator + Text(Build);
}

struct Start
{
    int status;
    std::string hostProduct; // kept as the program keeps it
};

// A library may let itself be started only once in a process.
const Start& Started()
{
    static const Start start = []
    {
        Facet::Product product;
        SetEntries(product, {{"product_line_name", String(Line)},
                             {"product_release_id", String(Release)},
                             {"product_master_id", String(Master)},
                             {"product_build_id", String(Build)},
                             {"product_id_provider", String("upi1")}});
        TaviString hostProduct;
        const int status = Sdk::Initialize(product, hostProduct);
        Sdk::SetHostProduct(hostProduct);
        return Start{status, Narrow(hostProduct)};
    }();
    return start;
}

// What one of the callbacks below was called with.
struct Call
{
    int callback;
    JsonValue payload;
    const void* context;
};

// The calls since the present test began. Not passed as the context, whose handing over is itself tested.
std::vector<Call> calls;

// Calls on the tests' own thread are kept. Calls on another, which there should not be, are only counted.
thread_local bool isTestsThread = false;
std::atomic<unsigned> callsElsewhere = 0;

template <int Number>
int Note(const JsonValue& payload, void* context, JsonValue&)
{
    if (isTestsThread)
        calls.push_back({Number, payload, context});
    else
        ++callsElsewhere;
    return 0;
}

JsonValue TestingFlags()
{
    return Object({{"Testing_EnableCallback", JsonValue(true)},
                   {"Testing_EnableWhitelistDownload", JsonValue(true)},
                   {"Testing_EnableUpload", JsonValue(false)}});
}

// The library is started and in test mode, with Note<1>() as the callback.
class TestMode
{
public:
    explicit TestMode(void* context = nullptr)
    {
        isTestsThread = true;
        Started();
        flagsStatus = Sdk::SetTestingFlags(ProductKey(), TestingFlags());
        callbackStatus = Sdk::SetTestingCallback(ProductKey(), Note<1>, context);
    }
    ~TestMode()
    {
        calls.clear();
        callsElsewhere = 0;
    }
    TestMode(const TestMode&) = delete;
    TestMode& operator=(const TestMode&) = delete;

    int flagsStatus;
    int callbackStatus;
};

int Track(const Facet::Core& core)
{
    return Sdk::TrackEvent(Text(Started().hostProduct.c_str()), core, nullptr);
}

// The event's payload as a copy that was made during the call.
JsonValue PayloadOf(const Facet::Core& core)
{
    const std::size_t before = calls.size();
    const int status = Track(core);
    if (calls.size() > before)
        return calls.back().payload;
    ADD_FAILURE() << "There is no payload to look at: TrackEvent() returned " << status
                  << " and had not called the callback.";
    return JsonValue();
}

testing::AssertionResult Holds(const JsonValue& payload, const Members& entries)
{
    for (const auto& [key, value] : entries)
    {
        const testing::AssertionResult areEqual = AreEqual(value, Member(payload, key));
        if (!areEqual)
            return testing::AssertionFailure()
                   << "for \"" << key << "\" " << areEqual.message() << "; the whole payload is " << Json(payload);
    }
    return testing::AssertionSuccess();
}

// The entries of the program's events, by facet.

Members CoreEntries()
{
    return {{"type", String("C")}, {"scope", String("C")}};
}

Members ComponentEntries()
{
    return {
        {"component_type", String("waypoint")},
        {"component_name", String("CV.MESH_SIZE_COUNT")},
        {"component_attributes",
         Object({{"CV.MESH_SIZE_ELEMENTS", String("3000")}, {"CV.MESH_SIZE_NODES", String("99999")}})},
    };
}

Members ContentEntries()
{
    return {
        {"content_name", String("fileName1")},
        {"content_type", String("fileExtension1")},
        {"content_meta", Object({{"COMMON.FILE.NAME", String("fileName1")}, {"COMMON.FILE.SIZE", String("12")}})},
    };
}

Members EntitlementEntries()
{
    return {
        {"entitlement_license_id", String("serialNumber")},
        {"entitlement_usage", String("14")},
        {"entitlement_properties",
         Object({{"CV.FEATURE_VERSION", String("featureVersion")}, {"CV.EXPIRY_DAYS", String("15")}})},
    };
}

Members ProductEntries()
{
    return {{"product_key", String("productKey")}, {"product_suite_name", String("featureName")}};
}

void MakeWaypoint(Facet::Core& core)
{
    SetEntries(core, CoreEntries());
    SetEntries(ComponentFacet(core), ComponentEntries());
}

} // namespace

// Facets

TEST(Needed, AnEntryIsStoredAndReplacesTheEarlier)
{
    Facet::Content facet;
    SetFacetEntry(facet, Text("content_name"), "earlier");
    SetFacetEntry(facet, Text("content_name"), "fileName1");
    SetFacetEntry(facet, Text("content_type"), Text("fileExtension1"));
    SetFacetEntry(facet, Text("content_size"), JsonValue(0LL));
    SetFacetEntry(facet, Text("content_meta"), Object({{"COMMON.FILE.NAME", String("fileName1")}}));
    EXPECT_TRUE(AreEqual(FacetEntries(std::as_const(facet)),
                         Object({{"content_name", String("fileName1")},
                                 {"content_type", String("fileExtension1")},
                                 {"content_size", JsonValue(0LL)},
                                 {"content_meta", Object({{"COMMON.FILE.NAME", String("fileName1")}})}})))
        << "The entries of a facet are not those that were set last.";
}

TEST(Needed, ANullValueRemovesAnEntry)
{
    Facet::Core facet;
    SetEntries(
        facet,
        {{"by_value", String("a")}, {"by_pointer", String("b")}, {"by_string", String("c")}, {"scope", String("S")}});
    SetFacetEntry(facet, Text("by_value"), JsonValue());
    SetFacetEntry(facet, Text("by_pointer"), nullptr);
    SetFacetEntry(facet, Text("by_string"), TaviString());
    EXPECT_TRUE(AreEqual(FacetEntries(std::as_const(facet)), Object({{"scope", String("S")}})))
        << "An entry that was set to null, to a null pointer as text or to a string without text is still there, or "
           "another is gone.";
}

TEST(Assumed, AnEmptyTextIsText)
{
    TaviString string;
    string.SetString("");
    EXPECT_NE(string.c_str(), nullptr) << "TaviString::SetString() takes \"\" for no text: c_str() is null. An "
                                          "attribute whose text is empty would not be sent.";
    EXPECT_TRUE(Differ(String(""), JsonValue()))
        << "JsonValue::SetString() takes \"\" for no text: the value is null. An attribute whose text is empty would "
           "not be sent.";
    Facet::Content facet;
    SetFacetEntry(facet, Text("content_name"), "");
    EXPECT_EQ(FacetEntries(std::as_const(facet)).GetCount(), 1)
        << "An entry whose text is empty is not stored. A document without a name would be sent without that entry.";
}

TEST(Needed, AnEntryIsACopyOfTheValue)
{
    JsonValue value = Object({{"outer", Object({{"inner", String("text")}})}});
    Facet::Core facet;
    SetFacetEntry(facet, Text("key"), value);
    value[Text("outer")][Text("inner")].SetString("changed");
    EXPECT_EQ(TextIn(Member(Member(Entry(facet, "key"), "outer"), "inner")), "text")
        << "Changing a value changes the facet's entry that was set from it: " << Entries(facet);
}

TEST(Needed, EntriesCanBeChangedInPlace)
{
    Facet::Content facet;
    FacetEntries(facet)[Text("content_meta")][Text("COMMON.FILE.NAME")].SetString("fileName1");
    FacetEntries(facet)[Text("content_meta")][Text("COMMON.FILE.TYPE")].SetString("fileExtension1");
    EXPECT_TRUE(AreEqual(Entry(facet, "content_meta"), Object({{"COMMON.FILE.NAME", String("fileName1")},
                                                               {"COMMON.FILE.TYPE", String("fileExtension1")}})))
        << "What was written through FacetEntries() is not what is read through it: the object that it gives for "
           "writing is not the facet's own.";
}

TEST(Needed, ReadingAnEntryCreatesNone)
{
    Facet::Content facet;
    EXPECT_TRUE(IsNull(Entry(facet, "absent"))) << "An entry that was never set is not null.";
    EXPECT_EQ(FacetEntries(std::as_const(facet)).GetCount(), 0) << "A new facet has entries: " << Entries(facet);
    SetFacetEntry(facet, Text("content_name"), "fileName1");
    EXPECT_TRUE(IsNull(Entry(facet, "absent"))) << "An entry that was never set is not null, beside one that was.";
    EXPECT_EQ(FacetEntries(std::as_const(facet)).GetCount(), 1) << "Reading an entry creates it: " << Entries(facet);
}

TEST(Needed, ASubFacetIsTheSameOnEachRequest)
{
    Facet::Core core;
    const Facet::Base* const first[] = {&ComponentFacet(core), &ContentFacet(core), &EntitlementFacet(core),
                                        &ProductFacet(core)};
    SetEntries(ComponentFacet(core), ComponentEntries());
    const Facet::Base* const second[] = {&ComponentFacet(core), &ContentFacet(core), &EntitlementFacet(core),
                                         &ProductFacet(core)};
    const char* const kinds[] = {"component", "content", "entitlement", "product"};
    for (std::size_t i = 0; i < std::size(kinds); ++i)
        EXPECT_EQ(first[i], second[i]) << "The second request for the " << kinds[i]
                                       << " facet gives another object than the first; what was set is lost.";
}

TEST(Needed, SubFacetsAreSeparate)
{
    Facet::Core core;
    const std::pair<const char*, Facet::Base*> facets[] = {{"core", &core},
                                                           {"component", &ComponentFacet(core)},
                                                           {"content", &ContentFacet(core)},
                                                           {"entitlement", &EntitlementFacet(core)},
                                                           {"product", &ProductFacet(core)}};
    for (const auto& [kind, facet] : facets)
        SetFacetEntry(*facet, Text(kind), "text");
    for (const auto& [kind, facet] : facets)
        EXPECT_TRUE(AreEqual(FacetEntries(std::as_const(*facet)), Object({{kind, String("text")}})))
            << "The " << kind << " facet has not exactly the entry that was set in it.";
}

TEST(Needed, AContentIsCopiedIntoTheEventsContentFacet)
{
    Facet::Core core;
    {
        Facet::Content content;
        SetEntries(content, ContentEntries());
        content.StartDocumentEditTimer();
        ContentFacet(core) = content;
        FacetEntries(content)[Text("content_meta")][Text("COMMON.FILE.NAME")].SetString("changed");
    }
    EXPECT_TRUE(Holds(FacetEntries(std::as_const(ContentFacet(core))), ContentEntries()))
        << "The event's content facet does not hold the entries of the Content that was assigned to it.";
}

TEST(Needed, ClearDropsTheEntriesAndTheSubFacets)
{
    Facet::Core core;
    MakeWaypoint(core);
    core.Clear();
    EXPECT_EQ(FacetEntries(std::as_const(core)).GetCount(), 0)
        << "After Clear() the core still has entries: " << Entries(core);
    EXPECT_EQ(FacetEntries(std::as_const(ComponentFacet(core))).GetCount(), 0)
        << "After Clear() the component facet still has entries: " << Entries(ComponentFacet(core));
}

// Start and test mode

TEST(Needed, TheUserTakesPart)
{
    EXPECT_NE(Sdk::IsOptedIn(nullptr), 4)
        << "IsOptedIn(nullptr) returned 4, which the program takes for a user who has not opted in to the usage-data "
           "programme: it ends at once.";
}

TEST(Needed, TheStartSucceedsAndGivesAnIdentifier)
{
    EXPECT_EQ(Started().status, 0) << "Initialize() did not return 0, which is taken for success, for the product "
                                   << Narrow(ProductKey()) << '.';
    EXPECT_NE(Started().hostProduct, "") << "Initialize() gave no text that identifies the host product.";
}

TEST(Needed, TestModeIsAccepted)
{
    const TestMode testMode;
    EXPECT_EQ(testMode.flagsStatus, 0) << "SetTestingFlags() did not return 0 for " << Json(TestingFlags())
                                       << " under the product key " << Narrow(ProductKey()) << ": the program ends.";
    EXPECT_EQ(testMode.callbackStatus, 0) << "SetTestingCallback() did not return 0 under the product key "
                                          << Narrow(ProductKey()) << ": the program ends.";
}

// Events

TEST(Needed, AnEventIsPassedToTheCallbackOnceBeforeItsCallEnds)
{
    const TestMode testMode;
    Facet::Core core;
    MakeWaypoint(core);
    EXPECT_EQ(Track(core), 0) << "TrackEvent() did not return 0 for the host product \"" << Started().hostProduct
                              << "\"; the identifier is passed in another string than Initialize() wrote.";
    EXPECT_EQ(calls.size(), 1U) << "When TrackEvent() returned, the callback had not been called exactly once.";
    EXPECT_EQ(callsElsewhere.load(), 0U) << "The callback was called on another thread than TrackEvent().";
}

TEST(Needed, TheLastRegistrationHolds)
{
    int firstContext = 0;
    int secondContext = 0;
    const TestMode testMode(&firstContext);
    Sdk::SetTestingCallback(ProductKey(), Note<2>, &secondContext);
    Facet::Core core;
    MakeWaypoint(core);
    Track(core);
    ASSERT_EQ(calls.size(), 1U) << "After a second registration an event does not make exactly one call.";
    EXPECT_EQ(calls.back().callback, 2) << "After a second registration the first callback is called still.";
    EXPECT_EQ(calls.back().context, &secondContext) << "The second callback is called with the first one's context.";
}

TEST(Needed, ThePayloadHoldsTheEntriesOfEveryFacet)
{
    const TestMode testMode;
    Facet::Core core;
    MakeWaypoint(core);
    Facet::Content content;
    SetEntries(content, ContentEntries());
    content.StartDocumentEditTimer();
    ContentFacet(core) = content;
    SetEntries(EntitlementFacet(core), EntitlementEntries());
    SetEntries(ProductFacet(core), ProductEntries());
    const JsonValue payload = PayloadOf(core);
    const std::pair<const char*, Members> rows[] = {{"core", CoreEntries()},
                                                    {"component", ComponentEntries()},
                                                    {"content", ContentEntries()},
                                                    {"entitlement", EntitlementEntries()},
                                                    {"product", ProductEntries()}};
    for (const auto& [kind, entries] : rows)
        EXPECT_TRUE(Holds(payload, entries))
            << "The " << kind << " facet's entries are not members of the payload, at its top.";
}

TEST(Assumed, AnIntegerIsSentAsAnInteger)
{
    const TestMode testMode;
    Facet::Core core;
    SetEntries(core, {{"type", String("D")}, {"scope", String("S")}});
    SetEntries(ContentFacet(core), {{"content_size", JsonValue(9007199254740993LL)}});
    EXPECT_TRUE(Holds(PayloadOf(core), {{"content_size", JsonValue(9007199254740993LL)}}))
        << "A file's size, a 64-bit integer in the content facet, is another value in the payload.";
}

TEST(Needed, AnEventsEntriesAreInThatEventAlone)
{
    const TestMode testMode;
    Facet::Core core;
    MakeWaypoint(core);
    const JsonValue first = PayloadOf(core);
    Facet::Core next;
    SetEntries(next, {{"type", String("S")}});
    SetEntries(EntitlementFacet(next), EntitlementEntries());
    const JsonValue payload = PayloadOf(next);
    for (const char* const key : {"component_name", "component_attributes"})
        EXPECT_TRUE(IsNull(Member(payload, key)))
            << "The payload has \"" << key << "\" of the event before: " << Json(payload);
    EXPECT_TRUE(Holds(first, ComponentEntries())) << "A copy of a payload changes with the next event.";
    const JsonValue again = PayloadOf(core);
    EXPECT_TRUE(Holds(again, CoreEntries())) << "The core's entries are others when an event is sent again.";
    EXPECT_TRUE(Holds(again, ComponentEntries())) << "The component's entries are others when an event is sent again.";
}

TEST(Assumed, TheProductKeyIsTheFourIdentifiersJoined)
{
    ASSERT_EQ(Narrow(ProductKey()), "CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214");
    const TestMode testMode;
    Facet::Core core;
    MakeWaypoint(core);
    Track(core);
    EXPECT_EQ(calls.size(), 1U)
        << "Flags and callback were set under the product key " << Narrow(ProductKey()) << ", with statuses "
        << testMode.flagsStatus << " and " << testMode.callbackStatus
        << ", but do not hold for events of the product that was started with these four identifiers.";
}

TEST(Assumed, AnEventOfAnUnknownProductFailsAndCallsNobody)
{
    const TestMode testMode;
    Facet::Core core;
    MakeWaypoint(core);
    EXPECT_NE(Sdk::TrackEvent(Text("no such host product"), core, nullptr), 0)
        << "TrackEvent() returned 0 for a host product that Initialize() did not give; the program would print no "
           "diagnostic.";
    EXPECT_EQ(calls.size(), 0U) << "An event of a host product that Initialize() did not give was passed to the "
                                   "callback.";
}
