// What the sanitizers must see, however the library manages its memory.
#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

using namespace Veltrane::TaviDesktopSDK;

namespace
{

class Misuse : public testing::Test
{
protected:
    // From then on the library keeps memory, where it does.
    Misuse() { Initialize(Facet::Product(), hostProduct); }

    TaviString hostProduct;
};

using MisuseDeathTest = Misuse;

constexpr const char* seen = "AddressSanitizer: (heap-use-after-free|use-after-poison)";

} // namespace

TEST_F(MisuseDeathTest, OfATextAfterItsStringIsSeen)
{
    TaviString text("a text");
    const char* const kept = text.c_str();
    text.SetString("another text");
    EXPECT_DEATH(EXPECT_EQ(*kept, 'a'), seen);
}

TEST_F(MisuseDeathTest, OfAMemberAfterItsObjectIsSeen)
{
    JsonValue object;
    const JsonValue& member = object[Key("key")];
    object = JsonValue();
    EXPECT_DEATH(EXPECT_TRUE(member.IsNull()), seen);
}

TEST_F(MisuseDeathTest, OfAMemberThatWasRemovedIsSeen)
{
    JsonValue object;
    object[Key("other")] = JsonValue(true);
    const JsonValue& member = object[Key("key")];
    object.RemoveKey(Key("key"));
    EXPECT_DEATH(EXPECT_TRUE(member.IsNull()), seen);
    object[Key("next")] = JsonValue(1LL);
    EXPECT_EQ(object.GetCount(), 2);
}

TEST_F(MisuseDeathTest, OfASubFacetAfterItsEventWasClearedIsSeen)
{
    Facet::Core core;
    const Facet::Base& facet = core.ComponentFacet();
    core.Clear();
    EXPECT_DEATH(EXPECT_TRUE(facet.GetFacetEntry(Key("key")).IsNull()), seen);
}

TEST_F(MisuseDeathTest, OfAPayloadAfterItsCallbackIsSeen)
{
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
    core.SetFacetEntry(Key("type"), String("C"));
    TrackEvent(hostProduct, core, nullptr);
    SetTestingCallback(TaviString(), nullptr, nullptr);
    ASSERT_NE(kept, nullptr);
    EXPECT_DEATH(EXPECT_FALSE(kept->IsNull()), seen);
}
