// Misuse of memory that the sanitizers must detect, although the library keeps freed memory in other builds.
#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetHelpers.h>

#include "Text.h"

using namespace Corvane;
using namespace Veltrane::TaviDesktopSDK;

namespace
{

constexpr const char* seen = "AddressSanitizer: (heap-use-after-free|use-after-poison)";

} // namespace

TEST(MisuseDeathTest, OfATextAfterItsStringIsSeen)
{
    TaviString text = Key("a text");
    const char* const kept = text.c_str();
    text.SetString("another text");
    EXPECT_DEATH(EXPECT_EQ(*kept, 'a'), seen);
}

TEST(MisuseDeathTest, OfAMemberAfterItsObjectIsSeen)
{
    JsonValue object;
    const JsonValue& member = object[Key("key")];
    object = JsonValue();
    EXPECT_DEATH(EXPECT_TRUE(IsNull(member)), seen);
}

TEST(MisuseDeathTest, OfAMemberThatWasRemovedIsSeen)
{
    JsonValue object;
    object[Key("other")] = JsonValue(true);
    const JsonValue& member = object[Key("key")];
    object.RemoveKey(Key("key"));
    EXPECT_DEATH(EXPECT_TRUE(IsNull(member)), seen);
    object[Key("next")] = JsonValue(1LL);
    EXPECT_EQ(object.GetCount(), 2);
}

TEST(MisuseDeathTest, OfASubFacetAfterItsEventWasClearedIsSeen)
{
    Facet::Core core;
    const Facet::Base& facet = ComponentFacet(core);
    core.Clear();
    EXPECT_DEATH(EXPECT_TRUE(IsNull(FacetEntries(facet)[Key("key")])), seen);
}

TEST(MisuseDeathTest, OfAPayloadAfterItsCallbackIsSeen)
{
    TaviString hostProduct;
    Initialize(Facet::Product(), hostProduct);
    JsonValue flags;
    flags[Key("Testing_EnableCallback")] = JsonValue(true);
    SetTestingFlags(TaviString(), flags);
    const JsonValue* kept = nullptr;
    const auto keep = [](const JsonValue& payload, void* context, JsonValue&)
    {
        *static_cast<const JsonValue**>(context) = &payload[Key("type")];
        return 0;
    };
    SetTestingCallback(TaviString(), keep, &kept);
    Facet::Core core;
    SetFacetEntry(core, Key("type"), String("C"));
    TrackEvent(hostProduct, core, nullptr);
    SetTestingCallback(TaviString(), nullptr, nullptr);
    ASSERT_NE(kept, nullptr);
    EXPECT_DEATH(EXPECT_FALSE(IsNull(*kept)), seen);
}
