#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/AttributeMap.h>
#include <telemetry/CorvaneTavi.h>

#include "Differences.h"
#include "OutputCapture.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

using Call = std::function<void(CorvaneTavi&)>;
using Members = std::vector<std::pair<const char*, std::string>>;

// A call and what it has to send, without the description of the host product.
struct Report
{
    Call call;
    JsonValue expected;
};

constexpr std::int32_t Smallest32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Largest32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t Smallest64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t Largest64 = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t LargestUnsigned64 = std::numeric_limits<std::uint64_t>::max();

// The description of the host product, as its file beside the test program has it. Every payload carries it.
const Members Product = {
    {"product_line_name", "CVSTUDIO"}, {"product_release_id", "2027.0.F"}, {"product_master_id", "CVSTUDIO_2027_0_EN"},
    {"product_build_id", "27.0.214"},  {"product_id_provider", "upi1"},
};

JsonValue Object(const Members& members)
{
    JsonValue object;
    for (const auto& [key, text] : members)
        object[Key(key)] = String(text.c_str());
    return object;
}

JsonValue ComponentEvent(const char* componentType, const std::string& name, const Members& attributes)
{
    JsonValue event =
        Object({{"type", "C"}, {"scope", "C"}, {"component_type", componentType}, {"component_name", name}});
    if (!attributes.empty())
        event[Key("component_attributes")] = Object(attributes);
    return event;
}

JsonValue Waypoint(const std::string& name, const Members& attributes)
{
    return ComponentEvent("waypoint", name, attributes);
}

JsonValue FileInput(const std::string& extension, long long size, const Members& meta)
{
    JsonValue event = Object({{"type", "D"}, {"scope", "S"}, {"content_type", extension}});
    event[Key("content_size")] = JsonValue(size);
    event[Key("content_meta")] = Object(meta);
    return event;
}

JsonValue Entitlement(const Members& entries, const Members& properties)
{
    JsonValue event = Object(entries);
    event[Key("type")] = String("S");
    event[Key("scope")] = String("D");
    event[Key("entitlement_properties")] = Object(properties);
    return event;
}

// The event's name; for an event without one, its type and scope.
std::string NameOf(const JsonValue& event)
{
    if (!IsNull(event[Key("component_name")]))
        return "the event " + Json(event[Key("component_name")]);
    return "the event of type " + Json(event[Key("type")]) + " and scope " + Json(event[Key("scope")]);
}

// Sending prints nothing.
std::vector<JsonValue> PayloadsOf(const Call& call)
{
    const Corvane::PayloadRecorder recorder;
    const OutputCapture output;
    call(CorvaneTavi::Instance());
    EXPECT_EQ(output.Text(), "");
    return recorder.Payloads();
}

// The names of the first few events, a line each.
std::string NamesOf(const std::vector<JsonValue>& events)
{
    std::vector<std::string> names;
    for (const JsonValue& event : events)
        names.push_back(NameOf(event));
    return FirstFew(names);
}

// The only event of the call, without the description of the host product.
JsonValue EventOf(const Call& call)
{
    const std::vector<JsonValue> payloads = PayloadsOf(call);
    if (payloads.size() != 1)
        ADD_FAILURE() << "The call sends " << payloads.size() << " events, not one:\n" << NamesOf(payloads);
    if (payloads.empty())
        return {};
    JsonValue event = payloads.front();
    for (const auto& [key, text] : Product)
        EXPECT_TRUE(event.RemoveKey(Key(key))) << key;
    return event;
}

std::string EntryOf(const JsonValue& event, const char* key)
{
    return Text(TextValue(event[Key(key)]));
}

void ExpectEqual(const JsonValue& event, const JsonValue& expected)
{
    if (event.Compare(expected) != 0)
        ADD_FAILURE() << "Of " << NameOf(expected) << ":\n" << JsonTextDifferences(Json(expected), Json(event));
}

void ExpectReport(const Call& call, const JsonValue& expected)
{
    ExpectEqual(EventOf(call), expected);
}

template <typename Reports>
void ExpectReports(const Reports& reports)
{
    for (const Report& report : reports)
        ExpectReport(report.call, report.expected);
}

// Flags of which one is set, so that two that are swapped make a difference.
class OneFlag
{
public:
    explicit OneFlag(int numberOfTheSetOne) : set(numberOfTheSetOne) {}

    bool Is(int number) const { return number == set; }

    std::string Text(int number) const { return Is(number) ? "True" : "False"; }

private:
    int set;
};

// The calls with the same value for every number of one type.

JsonValue FileInputWithNumber(std::int32_t n)
{
    return EventOf([n](CorvaneTavi& tavi)
                   { tavi.TrackFileInput(L"", true, L"", L"", n, true, n, n, n, n, n, n, n, n, L"", L"", L""); });
}

JsonValue SteerWheelOptionsWithNumber(double n)
{
    return EventOf(
        [n](CorvaneTavi& tavi)
        {
            tavi.TrackSteerWheelLoadOption(false, false, 0, 0, n, n, false, false, false, false, n, false, false, false,
                                           false);
        });
}

JsonValue DorvelOptionsWithNumber(float n)
{
    return EventOf([n](CorvaneTavi& tavi)
                   { tavi.TrackDorvelLoadOption(L"", L"", n, false, false, false, false, n, n, false, false, false); });
}

void ExpectMembers(const JsonValue& event, const char* objectKey, const std::vector<const char*>& keys,
                   const std::string& text)
{
    for (const char* const key : keys)
    {
        const std::string sent = Json(event[Key(objectKey)][Key(key)]);
        if (sent != Json(String(text.c_str())))
            ADD_FAILURE() << '/' << objectKey << '/' << key << ": expected \"" << text << "\", sent " << sent;
    }
}

// Reports whose parameters of each kind of text, which are converted in different ways, are this text.
std::vector<Report> ReportsOfText(const std::wstring& text, const std::string& utf8)
{
    const std::vector<NavBarToolState> tools = {{L"first", true}, {text, false}};
    return {
        {[text](CorvaneTavi& tavi) { tavi.TrackMeshPropertyChanged(L"name", text, L"new"); },
         Waypoint("CV.MESH_PROPERTY_CHANGED", {{"CV.MESH_PROPERTY_NAME", "name"},
                                               {"CV.MESH_PROPERTY_PREV_VALUE", utf8},
                                               {"CV.MESH_PROPERTY_NEW_VALUE", "new"}})},
        {[text, tools](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(true, false, text, true, tools); },
         Waypoint("COMMON.ZEPH_NB_STARTUP_CONDITIONS", {{"COMMON.ZEPH_NB_MORE_CONTROLS_VISIBLE", "True"},
                                                        {"COMMON.ZEPH_NB_LINKED_TO_DORVEL", "False"},
                                                        {"COMMON.ZEPH_NB_POSITION", utf8},
                                                        {"COMMON.ZEPH_NB_RIBBON_VISIBLE", "True"},
                                                        {"COMMON.ZEPH_NB_TOOL_NAME", utf8},
                                                        {"COMMON.ZEPH_NB_TOOL_HIDDEN", "False"},
                                                        {"COMMON.ZEPH_NB_TOOL_COUNT", "2"}})},
        {[text](CorvaneTavi& tavi) { tavi.TrackCommandInvoked(text, 1, 2, L"module", L"category", text); },
         ComponentEvent("command", "COMMON.COMMAND_INVOKED",
                        {{"COMMON.COMMAND_NAME", utf8},
                         {"COMMON.COMMAND_CONTEXT", "1"},
                         {"CV.COMMAND_FIRED_RESOURCE_ID", "2"},
                         {"CV.COMMAND_FIRED_RESOURCE_MODULE", "module"},
                         {"CV.COMMAND_FIRED_RESOURCE_CATEGORY", "category"},
                         {"CV.COMMAND_FIRED_COMMAND_DESCRIPTION", utf8}})},
        {[text](CorvaneTavi& tavi) { tavi.TrackUserEvent(text, text, 3, L"module", text, L"description"); },
         ComponentEvent(utf8.c_str(), utf8,
                        {{"CV.COMMAND_FIRED_RESOURCE_ID", "3"},
                         {"CV.COMMAND_FIRED_RESOURCE_MODULE", "module"},
                         {"CV.COMMAND_FIRED_RESOURCE_CATEGORY", utf8},
                         {"CV.COMMAND_FIRED_COMMAND_DESCRIPTION", "description"}})},
        {[text](CorvaneTavi& tavi)
         { tavi.TrackFileInput(text, true, L"mesh", text, 1, true, 2, 3, 4, 5, 6, 7, 8, 9, L"line", text, L"fn"); },
         FileInput(utf8, 1,
                   {{"CV.FILE_INPUT.IS_ADD_OR_IMPORT", utf8},
                    {"CV.FILE_IMPORT_SUCCESS", "True"},
                    {"CV.FILE_IMPORT_MESHTYPE", "mesh"},
                    {"COMMON.FILE_INPUT.IS_NETWORK_PATH", "True"},
                    {"COMMON.FILE_INPUT.NUM_2D_OBJECTS", "2"},
                    {"COMMON.FILE_INPUT.NUM_3D_OBJECTS", "3"},
                    {"COMMON.FILE_INPUT.NUM_ANNOTATION_OBJECTS", "4"},
                    {"COMMON.FILE_INPUT.NUM_UNKNOWN_OBJECTS", "5"},
                    {"COMMON.FILE_INPUT.NUM_DISTINCT_XREFS", "6"},
                    {"COMMON.FILE_INPUT.NUM_XREF_INSTANCES", "7"},
                    {"COMMON.FILE_INPUT.NUM_DISTINCT_IMAGE_REFS", "8"},
                    {"COMMON.FILE_INPUT.NUM_IMAGE_REF_INSTANCES", "9"},
                    {"COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LINE", "line"},
                    {"COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_RELEASE", utf8},
                    {"COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LICENSE_FN", "fn"}})},
        {[text](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(text, L"feature", text, text, 1, 2, 3); },
         Entitlement({{"entitlement_usage", "2"},
                      {"entitlement_license_id", utf8},
                      {"product_key", utf8},
                      {"product_suite_name", "feature"}},
                     {{"CV.FEATURE_VERSION", utf8}, {"CV.LICENSE_BEHAVIOR", "1"}, {"CV.EXPIRY_DAYS", "3"}})},
    };
}

} // namespace

TEST(CorvaneTavi, OutputHelpAndMaterialWaypointsAreSentWhole)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.TrackExportPublish(L"a", L"b"); },
         Waypoint("CV.EXPORT_PUBLISH", {{"CV.EXPORT_PUBLISH_NAME", "a"}, {"CV.EXPORT_PUBLISH_EXTENSION", "b"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackHelpDialog(L"a", L"b"); },
         Waypoint("CV.HELP_FROM_DIALOG",
                  {{"CV.HELP_FROM_DIALOG_CLASSNAME", "a"}, {"CV.HELP_FROM_DIALOG_CONTEXT", "b"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackMaterialSelection(L"a", L"b", 300, L"c", L"d", L"e", L"f"); },
         Waypoint("CV.UI.MATERIAL_SELECTION", {{"CV.MATERIAL_SELECTION_FILE", "a"},
                                               {"CV.MATERIAL_SELECTION_TYPE", "b"},
                                               {"CV.MATERIAL_ID", "300"},
                                               {"CV.MATERIAL_MANUFACTURER", "c"},
                                               {"CV.MATERIAL_TRADE_NAME", "d"},
                                               {"CV.MATERIAL_FAMILY_NAME", "e"},
                                               {"CV.MATERIAL_GENERIC_CLASS", "f"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackReport(L"a", L"b", 22, 3); },
         Waypoint("CV.REPORT", {{"CV.REPORT_NAME", "a"},
                                {"CV.REPORT_EXTENSION", "b"},
                                {"CV.REPORT_STUDY_COUNTS", "22"},
                                {"CV.REPORT_ANALYSIS_COUNTS", "3"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackResultsUsage(L"a", L"b"); },
         Waypoint("CV.RESULT_USAGE", {{"CV.RESULTS_USAGE_NAME", "a"}, {"CV.RESULTS_USAGE_PLOTNAME", "b"}})},
    };
    ExpectReports(reports);
}

TEST(CorvaneTavi, AnalysisMeshAndMoldWaypointsAreSentWhole)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.TrackAnalysisPropertyChanged(L"a", L"b"); },
         Waypoint("SIMULATION.SOLVE_PROPERTY_CHANGED",
                  {{"SIMULATION.SOLVE_PROPERTY_PREV_VALUE", "a"}, {"SIMULATION.SOLVE_PROPERTY_NEW_VALUE", "b"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackAnalysisDetails(L"a", L"b", 2, L"c", 4); },
         Waypoint("SIMULATION.SOLVE", {{"SIMULATION.SOLVE_MOLDING_PROCESS_NAME", "a"},
                                       {"SIMULATION.SOLVE_SEQUENCE_NAME", "b"},
                                       {"SIMULATION.SOLVE_PARALLEL_TYPE", "2"},
                                       {"SIMULATION.SOLVE_PARALLEL_TYPEDESC", "c"},
                                       {"SIMULATION.SOLVE_PARALLEL_CUSTOM_THREADNUM", "4"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackMeshSize(3000, 99999); },
         Waypoint("CV.MESH_SIZE_COUNT", {{"CV.MESH_SIZE_ELEMENTS", "3000"}, {"CV.MESH_SIZE_NODES", "99999"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackMeshPropertyChanged(L"a", L"b", L"c"); },
         Waypoint("CV.MESH_PROPERTY_CHANGED", {{"CV.MESH_PROPERTY_NAME", "a"},
                                               {"CV.MESH_PROPERTY_PREV_VALUE", "b"},
                                               {"CV.MESH_PROPERTY_NEW_VALUE", "c"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackMoldPropertyChanged(L"a", L"b", L"c"); },
         Waypoint("CV.MOLD_PROPERTY_CHANGED", {{"CV.MOLD_PROPERTY_NAME", "a"},
                                               {"CV.MOLD_PROPERTY_PREV_VALUE", "b"},
                                               {"CV.MOLD_PROPERTY_NEW_VALUE", "c"}})},
    };
    ExpectReports(reports);
}

TEST(CorvaneTavi, DeviceWaypointsAreSentWhole)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.Track3DCKeyPressed(L"a"); },
         Waypoint("COMMON.ZEPH_3DC_KEY_PRESSED", {{"COMMON.ZEPH_3DC_KEY", "a"}})},
        {[](CorvaneTavi& tavi) { tavi.Track3DCModeActivated(L"a"); },
         Waypoint("COMMON.ZEPH_3DC_MODE_ACTIVATED", {{"COMMON.ZEPH_3DC_ACTIVE_MODE", "a"}})},
        {[](CorvaneTavi& tavi) { tavi.Track3DCUsed(L"a"); },
         Waypoint("COMMON.ZEPH_3DC_USED", {{"COMMON.ZEPH_3DC_DEVICE_TYPE", "a"}})},
    };
    ExpectReports(reports);
}

TEST(CorvaneTavi, WaypointsWithoutArgumentsCarryNoAttributes)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.TrackNavBarClosed(); }, Waypoint("COMMON.ZEPH_NB_CLOSED", {})},
        {[](CorvaneTavi& tavi) { tavi.TrackNavBarCustomizationClicked(); },
         Waypoint("COMMON.ZEPH_NB_CUSTOMIZATION_CLICKED", {})},
        {[](CorvaneTavi& tavi) { tavi.TrackNavBarMoreControlsClicked(); },
         Waypoint("COMMON.ZEPH_NB_MORE_CONTROLS_CLICKED", {})},
    };
    ExpectReports(reports);
}

TEST(CorvaneTavi, NavigationBarWaypointsAreSentWhole)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.TrackNavBarToolClicked(L"a", true); },
         Waypoint("COMMON.ZEPH_NB_TOOL_CLICKED",
                  {{"COMMON.ZEPH_NB_TOOL_NAME", "a"}, {"COMMON.ZEPH_NB_TOOL_ACTIVATED", "True"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackNavBarToolClicked(L"a", false); },
         Waypoint("COMMON.ZEPH_NB_TOOL_CLICKED",
                  {{"COMMON.ZEPH_NB_TOOL_NAME", "a"}, {"COMMON.ZEPH_NB_TOOL_ACTIVATED", "False"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackNavBarToolRightClicked(L"a", L"b"); },
         Waypoint("COMMON.ZEPH_NB_TOOL_RIGHT_CLICKED",
                  {{"COMMON.ZEPH_NB_TOOL_NAME", "a"}, {"COMMON.ZEPH_NB_MENU_ITEM", "b"}})},
    };
    ExpectReports(reports);

    for (int set = 0; set < 4; ++set)
    {
        const OneFlag flag(set);
        ExpectReport([&](CorvaneTavi& tavi)
                     { tavi.TrackNavBarDragMove("COMMON.ZEPH_NB_DRAGGED", flag.Is(0), L"a", flag.Is(1)); },
                     Waypoint("COMMON.ZEPH_NB_DRAGGED", {{"COMMON.ZEPH_NB_LINKED_TO_DORVEL", flag.Text(0)},
                                                         {"COMMON.ZEPH_NB_POSITION", "a"},
                                                         {"COMMON.ZEPH_NB_RIBBON_VISIBLE", flag.Text(1)}}));
        const std::vector<NavBarToolState> tools = {{L"b", flag.Is(3)}};
        ExpectReport(
            [&](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(flag.Is(0), flag.Is(1), L"a", flag.Is(2), tools); },
            Waypoint("COMMON.ZEPH_NB_STARTUP_CONDITIONS", {{"COMMON.ZEPH_NB_MORE_CONTROLS_VISIBLE", flag.Text(0)},
                                                           {"COMMON.ZEPH_NB_LINKED_TO_DORVEL", flag.Text(1)},
                                                           {"COMMON.ZEPH_NB_POSITION", "a"},
                                                           {"COMMON.ZEPH_NB_RIBBON_VISIBLE", flag.Text(2)},
                                                           {"COMMON.ZEPH_NB_TOOL_NAME", "b"},
                                                           {"COMMON.ZEPH_NB_TOOL_HIDDEN", flag.Text(3)},
                                                           {"COMMON.ZEPH_NB_TOOL_COUNT", "1"}}));
    }
}

TEST(CorvaneTavi, SteeringWheelWaypointsAreSentWhole)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.TrackSteerWheelActivated(L"a"); },
         Waypoint("COMMON.ZEPH_SW_ACTIVATED", {{"COMMON.ZEPH_SW_TYPE", "a"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackSteerWheelClicked(L"a", L"b"); },
         Waypoint("COMMON.ZEPH_SW_CLICKED", {{"COMMON.ZEPH_SW_TYPE", "a"}, {"COMMON.ZEPH_SW_ZONE", "b"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackSteerWheelDragBegin(L"a", L"b"); },
         Waypoint("COMMON.ZEPH_SW_DRAG_BEGIN", {{"COMMON.ZEPH_SW_TYPE", "a"}, {"COMMON.ZEPH_SW_ZONE", "b"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackSteerWheelKeyUp(L"a"); },
         Waypoint("COMMON.ZEPH_SW_KEY_UP", {{"COMMON.ZEPH_KEY_ID", "a"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackSteerWheelWelcomeClicked(L"a"); },
         Waypoint("COMMON.ZEPH_SW_WELCOME_CLICKED", {{"COMMON.ZEPH_SW_WELCOME_PART", "a"}})},
    };
    ExpectReports(reports);

    for (int set = 0; set < 10; ++set)
    {
        const OneFlag flag(set);
        ExpectReport(
            [&](CorvaneTavi& tavi)
            {
                tavi.TrackSteerWheelLoadOption(flag.Is(0), flag.Is(1), 4000, 9001, 0.45, 0.39, flag.Is(2), flag.Is(3),
                                               flag.Is(4), flag.Is(5), 1.12, flag.Is(6), flag.Is(7), flag.Is(8),
                                               flag.Is(9));
            },
            Waypoint("COMMON.ZEPH_SW_LOAD_OPTS", {{"COMMON.ZEPH_SW_OPTS_ALWAYSSHOWWELCOME", flag.Text(0)},
                                                  {"COMMON.ZEPH_SW_OPTS_HAVESHOWNWELCOME", flag.Text(1)},
                                                  {"COMMON.ZEPH_SW_OPTS_MINIWHEELSIZE", "4000"},
                                                  {"COMMON.ZEPH_SW_OPTS_LARGEWHEELSIZE", "9001"},
                                                  {"COMMON.ZEPH_SW_OPTS_LARGEWHEELOPACITYFACTOR", "0.45"},
                                                  {"COMMON.ZEPH_SW_OPTS_MINIWHEELOPACITYFACTOR", "0.39"},
                                                  {"COMMON.ZEPH_SW_OPTS_SHOWHUDMESSAGES", flag.Text(2)},
                                                  {"COMMON.ZEPH_SW_OPTS_SHOWTOOLTIPS", flag.Text(3)},
                                                  {"COMMON.ZEPH_SW_OPTS_SHOWTOOLCURSORTEXT", flag.Text(4)},
                                                  {"COMMON.ZEPH_SW_OPTS_INVERTVERTICALAXIS", flag.Text(5)},
                                                  {"COMMON.ZEPH_SW_OPTS_SPEEDFACTOR", "1.12"},
                                                  {"COMMON.ZEPH_SW_OPTS_INCREMENTALZOOM", flag.Text(6)},
                                                  {"COMMON.ZEPH_SW_OPTS_PRESERVESCENEUP", flag.Text(7)},
                                                  {"COMMON.ZEPH_SW_OPTS_SELECTIONSENSITIVITY", flag.Text(8)},
                                                  {"COMMON.ZEPH_SW_OPTS_FLYPLANARMOTION", flag.Text(9)}}));
    }
}

TEST(CorvaneTavi, ViewCubeWaypointsAreSentWhole)
{
    const Report reports[] = {
        {[](CorvaneTavi& tavi) { tavi.TrackDorvelClicked(L"a"); },
         Waypoint("COMMON.ZEPH_VC_CLICKED", {{"COMMON.ZEPH_VC_PART", "a"}})},
        {[](CorvaneTavi& tavi) { tavi.TrackDorvelDragBegin(L"a"); },
         Waypoint("COMMON.ZEPH_VC_DRAG_BEGIN", {{"COMMON.ZEPH_VC_PART", "a"}})},
    };
    ExpectReports(reports);

    for (int set = 0; set < 7; ++set)
    {
        const OneFlag flag(set);
        ExpectReport(
            [&](CorvaneTavi& tavi)
            {
                tavi.TrackDorvelLoadOption(L"a", L"b", 0.0F, flag.Is(0), flag.Is(1), flag.Is(2), flag.Is(3), 0.044F,
                                           0.66F, flag.Is(4), flag.Is(5), flag.Is(6));
            },
            Waypoint("COMMON.ZEPH_VC_LOAD_OPTS", {{"COMMON.ZEPH_VC_OPTS_SIZE", "a"},
                                                  {"COMMON.ZEPH_VC_OPTS_SCREENLOCATION", "b"},
                                                  {"COMMON.ZEPH_VC_OPTS_MINOPACITY", "0"},
                                                  {"COMMON.ZEPH_VC_OPTS_VISIBLE", flag.Text(0)},
                                                  {"COMMON.ZEPH_VC_OPTS_DRAWUCSMENU", flag.Text(1)},
                                                  {"COMMON.ZEPH_VC_OPTS_DRAWCOMPASS", flag.Text(2)},
                                                  {"COMMON.ZEPH_VC_OPTS_DRAGSNAP", flag.Text(3)},
                                                  {"COMMON.ZEPH_VC_OPTS_COMPASSANGLE", "0.044"},
                                                  {"COMMON.ZEPH_VC_OPTS_TRANSITIONDURATION", "0.66"},
                                                  {"COMMON.ZEPH_VC_OPTS_ZOOMTOFITSCENE", flag.Text(4)},
                                                  {"COMMON.ZEPH_VC_OPTS_PRESERVESCENEUP", flag.Text(5)},
                                                  {"COMMON.ZEPH_VC_OPTS_ORIENTTOUCS", flag.Text(6)}}));
    }
}

TEST(CorvaneTavi, LicenceModeWaypointsAreSentWhole)
{
    for (int set = 0; set < 4; ++set)
    {
        const OneFlag flag(set);
        ExpectReport([&](CorvaneTavi& tavi)
                     { tavi.TrackPPR(L"a", flag.Is(0), flag.Is(1), flag.Is(2), flag.Is(3), 3, 4, 5); },
                     Waypoint("CV.PPR", {{"CV.LICENSE_MODE", "a"},
                                         {"CV.SCM_SHOW_USE_LICENSE", flag.Text(0)},
                                         {"CV.SCM_SHOW_USE_PPR", flag.Text(1)},
                                         {"CV.SCM_SHOW_CUSTOM_INFO", flag.Text(2)},
                                         {"CV.SCM_SHOULD_MONETIZE", flag.Text(3)},
                                         {"CV.MERIDOR_JOB_LIMIT", "3"},
                                         {"CV.CONCURRENT_JOBS_MERIDOR", "4"},
                                         {"CV.CONCURRENT_JOBS_HALDEN", "5"}}));
    }
}

TEST(CorvaneTavi, CommandsAreSentWhole)
{
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackCommandInvoked(L"a", -1, 2, L"b", L"c", L"d"); },
                 ComponentEvent("command", "COMMON.COMMAND_INVOKED",
                                {{"COMMON.COMMAND_NAME", "a"},
                                 {"COMMON.COMMAND_CONTEXT", "-1"},
                                 {"CV.COMMAND_FIRED_RESOURCE_ID", "2"},
                                 {"CV.COMMAND_FIRED_RESOURCE_MODULE", "b"},
                                 {"CV.COMMAND_FIRED_RESOURCE_CATEGORY", "c"},
                                 {"CV.COMMAND_FIRED_COMMAND_DESCRIPTION", "d"}}));
}

TEST(CorvaneTavi, UserEventsAreSentWhole)
{
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackUserEvent(L"a", L"b", 2, L"c", L"d", L"e"); },
                 ComponentEvent("b", "a",
                                {{"CV.COMMAND_FIRED_RESOURCE_ID", "2"},
                                 {"CV.COMMAND_FIRED_RESOURCE_MODULE", "c"},
                                 {"CV.COMMAND_FIRED_RESOURCE_CATEGORY", "d"},
                                 {"CV.COMMAND_FIRED_COMMAND_DESCRIPTION", "e"}}));
}

TEST(CorvaneTavi, FileInputIsSentWhole)
{
    for (int set = 0; set <= 2; ++set) // at last with both flags unset
    {
        const OneFlag flag(set);
        ExpectReport(
            [&](CorvaneTavi& tavi)
            {
                // Each text and number has a value of its own; of the flags, one is set in each row.
                tavi.TrackFileInput(L"a", flag.Is(0), L"b", L"c", 4042, flag.Is(1), 2, 3, 4, 5, 6, 7, 8, 9, L"d", L"e",
                                    L"f");
            },
            FileInput("c", 4042,
                      {{"CV.FILE_INPUT.IS_ADD_OR_IMPORT", "a"},
                       {"CV.FILE_IMPORT_SUCCESS", flag.Text(0)},
                       {"CV.FILE_IMPORT_MESHTYPE", "b"},
                       {"COMMON.FILE_INPUT.IS_NETWORK_PATH", flag.Text(1)},
                       {"COMMON.FILE_INPUT.NUM_2D_OBJECTS", "2"},
                       {"COMMON.FILE_INPUT.NUM_3D_OBJECTS", "3"},
                       {"COMMON.FILE_INPUT.NUM_ANNOTATION_OBJECTS", "4"},
                       {"COMMON.FILE_INPUT.NUM_UNKNOWN_OBJECTS", "5"},
                       {"COMMON.FILE_INPUT.NUM_DISTINCT_XREFS", "6"},
                       {"COMMON.FILE_INPUT.NUM_XREF_INSTANCES", "7"},
                       {"COMMON.FILE_INPUT.NUM_DISTINCT_IMAGE_REFS", "8"},
                       {"COMMON.FILE_INPUT.NUM_IMAGE_REF_INSTANCES", "9"},
                       {"COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LINE", "d"},
                       {"COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_RELEASE", "e"},
                       {"COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LICENSE_FN", "f"}}));
    }
}

TEST(CorvaneTavi, LicenceUpdatesAreSentWhole)
{
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(L"a", L"b", L"c", L"d", 13, 14, 15); },
                 Entitlement({{"entitlement_usage", "14"},
                              {"entitlement_license_id", "d"},
                              {"product_key", "a"},
                              {"product_suite_name", "b"}},
                             {{"CV.FEATURE_VERSION", "c"}, {"CV.LICENSE_BEHAVIOR", "13"}, {"CV.EXPIRY_DAYS", "15"}}));
}

TEST(CorvaneTavi, EveryPayloadDescribesTheHostProduct)
{
    const Call calls[] = {
        [](CorvaneTavi& tavi) { tavi.TrackNavBarClosed(); },
        [](CorvaneTavi& tavi) { tavi.TrackCommandInvoked(L"", 0, 0, L"", L"", L""); },
        [](CorvaneTavi& tavi) { tavi.TrackUserEvent(L"", L"", 0, L"", L"", L""); },
        [](CorvaneTavi& tavi)
        { tavi.TrackFileInput(L"", false, L"", L"", 0, false, 0, 0, 0, 0, 0, 0, 0, 0, L"", L"", L""); },
        [](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(L"", L"", L"", L"", 0, 0, 0); },
    };
    for (const Call& call : calls)
    {
        const std::vector<JsonValue> payloads = PayloadsOf(call);
        ASSERT_EQ(payloads.size(), 1U);
        for (const auto& [key, text] : Product)
            EXPECT_EQ(EntryOf(payloads.front(), key), text) << key;
    }
}

TEST(CorvaneTavi, TheProductOfALicenceUpdateStandsBesideTheHostProduct)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(L"licensed key", L"suite", L"version", L"serial", 1, 2, 3); });
    ASSERT_EQ(payloads.size(), 1U);
    // In the order of the facets: a product facet of the event's own comes after the entitlement facet.
    EXPECT_EQ(Json(payloads.front()),
              R"({"product_line_name":"CVSTUDIO","product_release_id":"2027.0.F",)"
              R"("product_master_id":"CVSTUDIO_2027_0_EN","product_build_id":"27.0.214","product_id_provider":"upi1",)"
              R"("type":"S","scope":"D","entitlement_usage":"2","entitlement_license_id":"serial",)"
              R"("entitlement_properties":)"
              R"({"CV.EXPIRY_DAYS":"3","CV.FEATURE_VERSION":"version","CV.LICENSE_BEHAVIOR":"1"},)"
              R"("product_key":"licensed key","product_suite_name":"suite"})");

    const std::vector<JsonValue> next = PayloadsOf([](CorvaneTavi& tavi) { tavi.TrackNavBarClosed(); });
    ASSERT_EQ(next.size(), 1U);
    EXPECT_EQ(Json(next.front()[Key("product_key")]), "null");
    EXPECT_EQ(Json(next.front()[Key("product_suite_name")]), "null");
}

TEST(CorvaneTavi, Signed32BitNumbersAreSentAsDecimalText)
{
    const std::pair<std::int32_t, std::string> numbers[] = {
        {Smallest32, "-2147483648"}, {-1, "-1"}, {0, "0"}, {1, "1"}, {Largest32, "2147483647"}, {-10, "-10"}};
    for (const auto& [n, text] : numbers)
    {
        const auto number = n;
        ExpectMembers(EventOf([=](CorvaneTavi& tavi) { tavi.TrackAnalysisDetails(L"", L"", number, L"", number); }),
                      "component_attributes",
                      {"SIMULATION.SOLVE_PARALLEL_TYPE", "SIMULATION.SOLVE_PARALLEL_CUSTOM_THREADNUM"}, text);
        ExpectMembers(EventOf(
                          [=](CorvaneTavi& tavi)
                          {
                              tavi.TrackSteerWheelLoadOption(false, false, number, number, 0, 0, false, false, false,
                                                             false, 0, false, false, false, false);
                          }),
                      "component_attributes",
                      {"COMMON.ZEPH_SW_OPTS_MINIWHEELSIZE", "COMMON.ZEPH_SW_OPTS_LARGEWHEELSIZE"}, text);
        ExpectMembers(FileInputWithNumber(number), "content_meta",
                      {"COMMON.FILE_INPUT.NUM_2D_OBJECTS", "COMMON.FILE_INPUT.NUM_3D_OBJECTS",
                       "COMMON.FILE_INPUT.NUM_ANNOTATION_OBJECTS", "COMMON.FILE_INPUT.NUM_UNKNOWN_OBJECTS",
                       "COMMON.FILE_INPUT.NUM_DISTINCT_XREFS", "COMMON.FILE_INPUT.NUM_XREF_INSTANCES",
                       "COMMON.FILE_INPUT.NUM_DISTINCT_IMAGE_REFS", "COMMON.FILE_INPUT.NUM_IMAGE_REF_INSTANCES"},
                      text);
        const JsonValue update =
            EventOf([=](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(L"", L"", L"", L"", number, number, number); });
        ExpectMembers(update, "entitlement_properties", {"CV.LICENSE_BEHAVIOR", "CV.EXPIRY_DAYS"}, text);
        EXPECT_EQ(Json(update[Key("entitlement_usage")]), '"' + text + '"');
    }
}

TEST(CorvaneTavi, TheSizeOfAFileIsSentAsAnInteger)
{
    const std::pair<std::int32_t, std::string> sizes[] = {
        {Smallest32, "-2147483648"}, {-1, "-1"}, {0, "0"}, {Largest32, "2147483647"}};
    for (const auto& [size, text] : sizes)
        EXPECT_EQ(Json(FileInputWithNumber(size)[Key("content_size")]), text);
}

TEST(CorvaneTavi, Signed64BitNumbersAreSentAsDecimalText)
{
    const std::pair<std::int64_t, std::string> numbers[] = {{Smallest64, "-9223372036854775808"},
                                                            {std::int64_t{Smallest32} - 1, "-2147483649"},
                                                            {-1, "-1"},
                                                            {0, "0"},
                                                            {std::int64_t{Largest32} + 1, "2147483648"},
                                                            {Largest64, "9223372036854775807"}};
    for (const auto& [n, text] : numbers)
    {
        const auto number = n;
        ExpectMembers(EventOf([=](CorvaneTavi& tavi) { tavi.TrackCommandInvoked(L"", number, 0, L"", L"", L""); }),
                      "component_attributes", {"COMMON.COMMAND_CONTEXT"}, text);
    }
}

TEST(CorvaneTavi, Unsigned64BitNumbersAreSentAsDecimalText)
{
    const std::pair<std::uint64_t, std::string> numbers[] = {{0, "0"},
                                                             {10, "10"},
                                                             {std::uint64_t{1} << 32U, "4294967296"},
                                                             {std::uint64_t{1} << 63U, "9223372036854775808"},
                                                             {LargestUnsigned64, "18446744073709551615"}};
    for (const auto& [n, text] : numbers)
    {
        const auto number = n;
        const std::pair<Call, std::vector<const char*>> reports[] = {
            {[=](CorvaneTavi& tavi) { tavi.TrackMaterialSelection(L"", L"", number, L"", L"", L"", L""); },
             {"CV.MATERIAL_ID"}},
            {[=](CorvaneTavi& tavi) { tavi.TrackReport(L"", L"", number, number); },
             {"CV.REPORT_STUDY_COUNTS", "CV.REPORT_ANALYSIS_COUNTS"}},
            {[=](CorvaneTavi& tavi) { tavi.TrackMeshSize(number, number); },
             {"CV.MESH_SIZE_ELEMENTS", "CV.MESH_SIZE_NODES"}},
            {[=](CorvaneTavi& tavi) { tavi.TrackPPR(L"", false, false, false, false, number, number, number); },
             {"CV.MERIDOR_JOB_LIMIT", "CV.CONCURRENT_JOBS_MERIDOR", "CV.CONCURRENT_JOBS_HALDEN"}},
            {[=](CorvaneTavi& tavi) { tavi.TrackCommandInvoked(L"", 0, number, L"", L"", L""); },
             {"CV.COMMAND_FIRED_RESOURCE_ID"}},
            {[=](CorvaneTavi& tavi) { tavi.TrackUserEvent(L"", L"", number, L"", L"", L""); },
             {"CV.COMMAND_FIRED_RESOURCE_ID"}},
        };
        for (const auto& [call, keys] : reports)
            ExpectMembers(EventOf(call), "component_attributes", keys, text);
    }
}

TEST(CorvaneTavi, DoublesAreSentWithSixDecimalsAtMost)
{
    const std::pair<double, std::string> numbers[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1.0, "1"},
        {-100.0, "-100"},
        {0.45, "0.45"},
        {-1.5, "-1.5"},
        {0.000001, "0.000001"},
        {0.0000001, "0"},
        {2.0 / 3.0, "0.666667"},
        {1e22, "10000000000000000000000"},
        {1e300, "1000000000000000052504760255204420248704468581108159154915854115511802457988908195786371375080447864"
                "0437044438328838781769425232353604305756447921847867069828483872009265758037378302337947880900593689"
                "5323497079994508111903896764088007465274278014249457925878882005684283811566947219638686545940054016"
                "0"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
    };
    for (const auto& [number, text] : numbers)
        ExpectMembers(SteerWheelOptionsWithNumber(number), "component_attributes",
                      {"COMMON.ZEPH_SW_OPTS_LARGEWHEELOPACITYFACTOR", "COMMON.ZEPH_SW_OPTS_MINIWHEELOPACITYFACTOR",
                       "COMMON.ZEPH_SW_OPTS_SPEEDFACTOR"},
                      text);
}

TEST(CorvaneTavi, FloatsAreSentAsTheDoublesOfTheirValue)
{
    const std::pair<float, std::string> numbers[] = {
        {0.0F, "0"},
        {-0.0F, "-0"},
        {0.044F, "0.044"},
        {0.66F, "0.66"},
        {-2.25F, "-2.25"},
        {16777216.0F, "16777216"},
        {0.1F + 16384.0F, "16384.099609"},
        {std::numeric_limits<float>::max(), "340282346638528859811704183484516925440"},
        {std::numeric_limits<float>::denorm_min(), "0"},
        {std::numeric_limits<float>::quiet_NaN(), "nan"},
    };
    for (const auto& [number, text] : numbers)
        ExpectMembers(DorvelOptionsWithNumber(number), "component_attributes",
                      {"COMMON.ZEPH_VC_OPTS_MINOPACITY", "COMMON.ZEPH_VC_OPTS_COMPASSANGLE",
                       "COMMON.ZEPH_VC_OPTS_TRANSITIONDURATION"},
                      text);
}

TEST(CorvaneTavi, AnEmptyTextIsSentAsAnEmptyString)
{
    ExpectReports(ReportsOfText(L"", ""));
}

TEST(CorvaneTavi, TextOutsideAsciiIsSentAsUtf8)
{
    ExpectReports(ReportsOfText(L"\u00E4\u00F6\u00DF", "\xC3\xA4\xC3\xB6\xC3\x9F"));
    ExpectReports(ReportsOfText(L"\u6A21\u5177\u5206\u6790", "\xE6\xA8\xA1\xE5\x85\xB7\xE5\x88\x86\xE6\x9E\x90"));
    ExpectReports(ReportsOfText(L"\U0001F600 \U0010FFFF", "\xF0\x9F\x98\x80 \xF4\x8F\xBF\xBF"));
}

TEST(CorvaneTavi, ALoneSurrogateIsSentAsTheReplacementCharacter)
{
    constexpr wchar_t High = 0xD83D;
    constexpr wchar_t Low = 0xDE00;
    ExpectReports(ReportsOfText({L'a', High, L'b'}, "a\xEF\xBF\xBD"
                                                    "b"));
    ExpectReports(ReportsOfText({Low, L'b'}, "\xEF\xBF\xBD"
                                             "b"));
    ExpectReports(ReportsOfText({L'a', High}, "a\xEF\xBF\xBD"));
    ExpectReports(ReportsOfText({Low, High}, "\xEF\xBF\xBD\xEF\xBF\xBD"));
    ExpectReports(ReportsOfText({High, Low}, "\xF0\x9F\x98\x80"));
}

TEST(CorvaneTavi, TextOfAnyLengthIsSentWhole)
{
    for (std::size_t length = 0; length < 140; ++length)
    {
        SCOPED_TRACE(length);
        ExpectReports(ReportsOfText(std::wstring(length, L'x'), std::string(length, 'x')));
        ExpectReports(ReportsOfText(std::wstring(length, L'x') + L'\u00FC', std::string(length, 'x') + "\xC3\xBC"));
    }
}

TEST(CorvaneTavi, TextEndsAtItsFirstNullCharacter)
{
    using namespace std::string_literals;
    ExpectReports(ReportsOfText(L"before\0after"s, "before"));
    ExpectReports(ReportsOfText(L"\0after"s, ""));
}

TEST(CorvaneTavi, QuotesAndControlCharactersAreKept)
{
    ExpectReports(ReportsOfText(L"\"'\\/\b\f\n\r\t\x01\x1F\x7F<&>{}[]:,%s", "\"'\\/\b\f\n\r\t\x01\x1F\x7F<&>{}[]:,%s"));
}

TEST(CorvaneTavi, ATextOfAMillionCharactersIsSentWhole)
{
    const std::size_t length = 1'000'000;
    std::string utf8;
    for (std::size_t i = 0; i < length; ++i)
        utf8 += "\xC3\xBC";
    for (const Report& report : ReportsOfText(std::wstring(length, L'\u00FC'), utf8))
        ExpectReport(report.call, report.expected);
}

TEST(CorvaneTavi, OfTheToolsAtStartupOnlyTheLastOneAndTheirNumberAreSent)
{
    const auto expected = [](const char* name, const char* hidden, const char* count)
    {
        return Waypoint("COMMON.ZEPH_NB_STARTUP_CONDITIONS", {{"COMMON.ZEPH_NB_MORE_CONTROLS_VISIBLE", "True"},
                                                              {"COMMON.ZEPH_NB_LINKED_TO_DORVEL", "False"},
                                                              {"COMMON.ZEPH_NB_POSITION", "a"},
                                                              {"COMMON.ZEPH_NB_RIBBON_VISIBLE", "False"},
                                                              {"COMMON.ZEPH_NB_TOOL_NAME", name},
                                                              {"COMMON.ZEPH_NB_TOOL_HIDDEN", hidden},
                                                              {"COMMON.ZEPH_NB_TOOL_COUNT", count}});
    };
    const auto startUpWith = [](const std::vector<NavBarToolState>& tools)
    { return [&tools](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(true, false, L"a", false, tools); }; };

    std::vector<NavBarToolState> tools = {{L"tool1", true}};
    ExpectReport(startUpWith(tools), expected("tool1", "True", "1"));
    tools = {{L"tool1", true}, {L"tool2", true}, {L"tool3", false}};
    ExpectReport(startUpWith(tools), expected("tool3", "False", "3"));
    tools = {{L"tool1", false}, {L"tool2", false}, {L"tool3", true}};
    ExpectReport(startUpWith(tools), expected("tool3", "True", "3"));
    tools.assign(100'000, {L"tool", false});
    tools.back() = {L"last", true};
    ExpectReport(startUpWith(tools), expected("last", "True", "100000"));
}

TEST(CorvaneTavi, WithoutToolsAtStartupOnlyTheirNumberIsSent)
{
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(false, true, L"a", true, {}); },
                 Waypoint("COMMON.ZEPH_NB_STARTUP_CONDITIONS", {{"COMMON.ZEPH_NB_MORE_CONTROLS_VISIBLE", "False"},
                                                                {"COMMON.ZEPH_NB_LINKED_TO_DORVEL", "True"},
                                                                {"COMMON.ZEPH_NB_POSITION", "a"},
                                                                {"COMMON.ZEPH_NB_RIBBON_VISIBLE", "True"},
                                                                {"COMMON.ZEPH_NB_TOOL_COUNT", "0"}}));
}

TEST(CorvaneTavi, TheNameOfADragIsSentByteForByte)
{
    std::string allBytes;
    for (int byte = 1; byte < 256; ++byte)
        allBytes += static_cast<char>(byte);
    const std::string names[] = {"COMMON.ZEPH_NB_MOVED",  "",       "M\xC3\xBCnchen",
                                 "\xE4\xFF\xC3 no UTF-8", allBytes, std::string(100'000, 'x')};
    for (const std::string& name : names)
    {
        const JsonValue event =
            EventOf([&name](CorvaneTavi& tavi) { tavi.TrackNavBarDragMove(name, true, L"a", false); });
        EXPECT_EQ(EntryOf(event, "component_name"), name);
        ExpectEqual(event, Waypoint(name, {{"COMMON.ZEPH_NB_LINKED_TO_DORVEL", "True"},
                                           {"COMMON.ZEPH_NB_POSITION", "a"},
                                           {"COMMON.ZEPH_NB_RIBBON_VISIBLE", "False"}}));
    }
}

TEST(CorvaneTavi, AnEmptyAttributeMapSendsNoAttributes)
{
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), {}); }, Waypoint("X", {}));
}

TEST(CorvaneTavi, AttributesAreSentInTheOrderOfTheirKeys)
{
    const AttributeMap attributes = {{Key("b"), Key("2")}, {Key("B"), Key("")}, {Key("a"), Key("1")}};
    const JsonValue event = EventOf([&](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), attributes); });
    EXPECT_EQ(Json(event[Key("component_attributes")]), R"({"B":"","a":"1","b":"2"})");
}

TEST(CorvaneTavi, AnAttributeNeverSetIsLeftOut)
{
    const AttributeMap attributes = {{Key("a"), Key("1")}, {Key("b"), TaviString()}, {Key("c"), Key("")}};
    ExpectReport([&](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), attributes); },
                 Waypoint("X", {{"a", "1"}, {"c", ""}}));
}

TEST(CorvaneTavi, OnlyAttributesNeverSetSendNoAttributes)
{
    const AttributeMap attributes = {{Key("a"), TaviString()}};
    ExpectReport([&](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), attributes); }, Waypoint("X", {}));
}

TEST(CorvaneTavi, AnAttributeWithAnEmptyKeyIsLeftOutAndTheOthersAreKept)
{
    const TaviString emptyKeys[] = {TaviString(), Key("")};
    for (const TaviString& key : emptyKeys)
    {
        const AttributeMap attributes = {{Key("a"), Key("1")}, {key, Key("lost")}, {Key("b"), Key("2")}};
        ExpectReport([&](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), attributes); },
                     Waypoint("X", {{"a", "1"}, {"b", "2"}}));
    }
}

TEST(CorvaneTavi, TheLastTextStoredUnderAnAttributeKeyIsSent)
{
    AttributeMap attributes;
    attributes[Key("a")] = Key("first");
    attributes[Key("b")] = Key("2");
    attributes[Key("a")] = Key("last");
    ExpectReport([&](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), attributes); },
                 Waypoint("X", {{"a", "last"}, {"b", "2"}}));
}

TEST(CorvaneTavi, AWaypointNameNeverSetIsLeftOutAndAnEmptyOneIsSent)
{
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackWaypoint(TaviString(), {}); },
                 Object({{"type", "C"}, {"scope", "C"}, {"component_type", "waypoint"}}));
    ExpectReport([](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key(""), {}); }, Waypoint("", {}));
}

TEST(CorvaneTavi, TwoEqualCallsSendTwoEqualEventsAndPrintNothing)
{
    const AttributeMap attributes = {{Key("a"), Key("1")}};
    const std::vector<NavBarToolState> tools = {{L"b", true}};
    const Call calls[] = {
        [&](CorvaneTavi& tavi) { tavi.TrackWaypoint(Key("X"), attributes); },
        [](CorvaneTavi& tavi) { tavi.TrackNavBarClosed(); },
        [](CorvaneTavi& tavi) { tavi.TrackMeshPropertyChanged(L"a", L"b", L"c"); },
        [&](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(true, false, L"a", true, tools); },
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

TEST(CorvaneTavi, TheInstanceIsAlwaysTheSame)
{
    EXPECT_EQ(&CorvaneTavi::Instance(), &CorvaneTavi::Instance());
}

TEST(CorvaneTavi, AStartedWrapperStartsNoMore)
{
    const OutputCapture output;
    EXPECT_EQ(CorvaneTavi::Instance().StartSdk(), 0);
    EXPECT_EQ(CorvaneTavi::Instance().StartSdk(), 0);
    EXPECT_EQ(output.Text(), "");
}

TEST(CorvaneTavi, TheProductKeyJoinsTheIdentifiersOfTheProductFile)
{
    EXPECT_EQ(CorvaneTavi::Instance().GetProductKey(), "CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214");
}
