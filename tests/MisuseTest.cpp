// Sanitizers detect that memory of the library is used after it was freed: it pools no blocks where they watch.
#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;

TEST(MisuseDeathTest, UseOfAMemberAfterItsRemovalIsDetected)
{
    JsonValue object;
    const JsonValue& member = object[Key("key")];
    object.RemoveKey(Key("key"));
    EXPECT_DEATH(EXPECT_TRUE(IsNull(member)), "AddressSanitizer: (heap-use-after-free|use-after-poison)");
}
