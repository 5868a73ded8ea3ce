// How deeply values may be nested. A stack that overflows ends the tests.
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "SmallStack.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

// As TaviDesktopSDK/JsonValue.h has them.
constexpr int Levels = 1'000;
constexpr std::size_t StackSize = 1'048'576;

struct Event : Facet::Core
{
    explicit Event(const JsonValue& entries) { Data() = entries; }
};

} // namespace

TEST(Depth, ValuesOfTheStatedDepthFitTheStatedStack)
{
    bool isEqual = false;
    std::string text;
    std::string built;
    std::string cloned;
    RunOnStackOf(StackSize,
                 [&]
                 {
                     const JsonValue value = Nested(Levels, JsonValue(true));
                     JsonValue assigned(true);
                     assigned = JsonValue(value);
                     isEqual = assigned.Compare(value) == 0;
                     text = Json(assigned);
                     const Event event(value);
                     built = Json(event.Build(value));
                     const std::unique_ptr<Facet::Base> clone(event.Clone());
                     cloned = Json(clone->Build(JsonValue()));
                 });
    EXPECT_TRUE(isEqual);
    EXPECT_EQ(text, NestedText(Levels, "true"));
    EXPECT_EQ(built, NestedText(Levels, "true"));
    EXPECT_EQ(cloned, NestedText(Levels, "true"));
}
