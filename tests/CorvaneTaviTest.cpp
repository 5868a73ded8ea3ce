// Covers what the prober's calls leave open: those prove each reporting method with arguments of every kind.
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/Attributes.h>
#include <telemetry/CorvaneTavi.h>

#include "OutputCapture.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

// The call's only one. Sending prints nothing.
JsonValue PayloadOf(const std::function<void(CorvaneTavi&)>& call)
{
    const Corvane::PayloadRecorder recorder;
    const OutputCapture output;
    call(CorvaneTavi::Instance());
    EXPECT_EQ(output.Text(), "");
    EXPECT_EQ(recorder.Payloads().size(), 1U);
    return recorder.Payloads().empty() ? JsonValue() : recorder.Payloads().front();
}

} // namespace

TEST(CorvaneTavi, IsTheSameAtEachAccessAndStartsNoMore)
{
    const OutputCapture output;
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    EXPECT_EQ(&tavi, &CorvaneTavi::Instance());
    EXPECT_EQ(tavi.StartSdk(), 0);
    EXPECT_EQ(output.Text(), "");
}

TEST(CorvaneTavi, AHostsWaypointHasTheAttributesThatHaveKeyAndText)
{
    const std::string waypoint = R"("type":"C","scope":"C","component_type":"waypoint")";
    const struct
    {
        TaviString name;
        AttributeMap attributes;
        std::string sent; // behind what all have
    } rows[] = {
        {Key("X"),
         {{TaviString(), Key("lost")}, {Key("b"), Key("2")}, {Key("B"), Key("")}, {Key("a"), TaviString()}},
         R"(,"component_name":"X","component_attributes":{"B":"","b":"2"}})"},
        {Key("X"),
         {{Key(""), Key("lost")}, {Key("a"), Key("1")}},
         R"(,"component_name":"X","component_attributes":{"a":"1"}})"},
        {Key("X"), {{Key("a"), TaviString()}}, R"(,"component_name":"X"})"},
        {Key(""), {}, R"(,"component_name":""})"},
        {TaviString(), {}, "}"},
    };
    for (const auto& row : rows)
    {
        const std::string sent =
            Json(PayloadOf([&row](CorvaneTavi& tavi) { tavi.TrackWaypoint(row.name, row.attributes); }));
        EXPECT_TRUE(sent.ends_with(waypoint + row.sent)) << "expected " << row.sent << ", sent " << sent;
    }
}

TEST(CorvaneTavi, TheNameOfADragIsSentByteForByte)
{
    std::string name;
    for (int byte = 1; byte < 256; ++byte)
        name += static_cast<char>(byte);
    const JsonValue event = PayloadOf([&](CorvaneTavi& tavi) { tavi.TrackNavBarDragMove(name, true, L"a", false); });
    EXPECT_EQ(Text(TextValue(event[Key("component_name")])), name);
}
