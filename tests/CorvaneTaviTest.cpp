// What the prober's calls leave open: those prove each reporting method by itself, with arguments of every kind.
#include <functional>
#include <string>
#include <vector>

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

using Call = std::function<void(CorvaneTavi&)>;

// Sending prints nothing.
std::vector<JsonValue> PayloadsOf(const Call& call)
{
    const Corvane::PayloadRecorder recorder;
    const OutputCapture output;
    call(CorvaneTavi::Instance());
    EXPECT_EQ(output.Text(), "");
    return recorder.Payloads();
}

// The call's only one.
JsonValue PayloadOf(const Call& call)
{
    const std::vector<JsonValue> payloads = PayloadsOf(call);
    EXPECT_EQ(payloads.size(), 1U);
    return payloads.empty() ? JsonValue() : payloads.front();
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
    std::string allBytes;
    for (int byte = 1; byte < 256; ++byte)
        allBytes += static_cast<char>(byte);
    for (const std::string& name : {std::string("\xE4\xFF\xC3 no UTF-8"), allBytes, std::string(100'000, 'x')})
    {
        const JsonValue event =
            PayloadOf([&name](CorvaneTavi& tavi) { tavi.TrackNavBarDragMove(name, true, L"a", false); });
        EXPECT_EQ(Text(TextValue(event[Key("component_name")])), name);
    }
}

TEST(CorvaneTavi, ToolsOfAnyNumberAreCounted)
{
    const std::vector<NavBarToolState> tools(100'000, {L"tool", false});
    const JsonValue event =
        PayloadOf([&tools](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(true, false, L"a", true, tools); });
    EXPECT_EQ(Json(event[Key("component_attributes")][Key("COMMON.ZEPH_NB_TOOL_COUNT")]), R"("100000")");
}

TEST(CorvaneTavi, TwoEqualCallsSendTwoEqualEvents)
{
    const std::vector<NavBarToolState> tools = {{L"b", true}};
    const Call calls[] = {
        [](CorvaneTavi& tavi) { tavi.TrackMeshSize(1, 2); },
        [&tools](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(true, false, L"a", true, tools); },
        [](CorvaneTavi& tavi) { tavi.TrackCommandInvoked(L"a", -1, 2, L"b", L"c", L"d"); },
        [](CorvaneTavi& tavi) { tavi.TrackUserEvent(L"a", L"b", 2, L"c", L"d", L"e"); },
        [](CorvaneTavi& tavi)
        { tavi.TrackFileInput(L"a", true, L"b", L"c", 1, true, 2, 3, 4, 5, 6, 7, 8, 9, L"d", L"e", L"f"); },
        [](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(L"a", L"b", L"c", L"d", 1, 2, 3); },
    };
    for (const Call& call : calls)
    {
        const std::vector<JsonValue> payloads = PayloadsOf(
            [&call](CorvaneTavi& tavi)
            {
                call(tavi);
                call(tavi);
            });
        ASSERT_EQ(payloads.size(), 2U);
        EXPECT_EQ(Json(payloads[0]), Json(payloads[1]));
    }
}
