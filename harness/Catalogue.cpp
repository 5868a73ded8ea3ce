#include <harness/Catalogue.h>

#include <iostream>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/ExpectedPayload.h>
#include <harness/FacetKeys.h>
#include <harness/NarrowText.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/Vocabulary.h>

using namespace Corvane;
using namespace Corvane::Vocabulary;
using Veltrane::TaviDesktopSDK::JsonValue;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

void PrintTitle(const char* name)
{
    std::cout << std::endl;
    std::cout << "Testing " << name << std::endl;
}

JsonValue ExpectEntitlement()
{
    JsonValue expected = ExpectObject({{FacetKeys::entitlement_license_id, L"serialNumber"},
                                       {FacetKeys::product_suite_name, L"featureName"},
                                       {FacetKeys::entitlement_usage, 14}});
    expected[NarrowText(FacetKeys::entitlement_properties)] =
        ExpectObject({{CV_FEATURE_VERSION, L"featureVersion"}, {CV_LICENSE_BEHAVIOR, 13}, {CV_EXPIRY_DAYS, 15}});
    return expected;
}

void RunTest(TestResultList& results, const char* name, const JsonValue& expected, void (*call)(CorvaneTavi& tavi))
{
    results.push_back({expected, false});
    PrintTitle(name);
    call(CorvaneTavi::Instance());
}

} // namespace

void RunTests(TestResultList& results)
{
    RunTest(results, "CommandInvoked",
            ExpectWaypoint(COMMON_COMMAND_INVOKED, {{COMMON_COMMAND_NAME, L"Material Data"},
                                                    {COMMON_COMMAND_CONTEXT, 0},
                                                    {CV_COMMAND_FIRED_RESOURCE_ID, 1},
                                                    {CV_COMMAND_FIRED_RESOURCE_MODULE, L"resourceModule"},
                                                    {CV_COMMAND_FIRED_RESOURCE_CATEGORY, L"resourceCategory"},
                                                    {CV_COMMAND_FIRED_COMMAND_DESCRIPTION, L"resourceCategory"}}),
            [](CorvaneTavi& tavi)
            {
                // The description is the category's text, on purpose.
                tavi.TrackCommandInvoked(L"Material Data", 0, 1, L"resourceModule", L"resourceCategory",
                                         L"resourceCategory");
            });

    RunTest(results, "FileInput",
            ExpectContent({{CV_FILE_INPUT_IS_ADD_OR_IMPORT, L"fileAddOrImport"},
                           {CV_FILE_IMPORT_SUCCESS, true},
                           {CV_FILE_IMPORT_MESHTYPE, L"meshType"},
                           {COMMON_FILE_INPUT_IS_NETWORK_PATH, false},
                           {COMMON_FILE_INPUT_NUM_2D_OBJECTS, 2},
                           {COMMON_FILE_INPUT_NUM_3D_OBJECTS, 3},
                           {COMMON_FILE_INPUT_NUM_ANNOTATION_OBJECTS, 4},
                           {COMMON_FILE_INPUT_NUM_UNKNOWN_OBJECTS, 5},
                           {COMMON_FILE_INPUT_NUM_DISTINCT_XREFS, 6},
                           {COMMON_FILE_INPUT_NUM_XREF_INSTANCES, 7},
                           {COMMON_FILE_INPUT_NUM_DISTINCT_IMAGE_REFS, 8},
                           {COMMON_FILE_INPUT_NUM_IMAGE_REF_INSTANCES, 9},
                           {COMMON_FILE_INPUT_PREV_OPEN_PRODUCT_LINE, L"prevOpenProductLine"},
                           {COMMON_FILE_INPUT_PREV_OPEN_PRODUCT_RELEASE, L"prevOpenProductRelease"},
                           {COMMON_FILE_INPUT_PREV_OPEN_PRODUCT_LICENSE_FN, L"prevOpenProductLicenseFeatureName"}}),
            [](CorvaneTavi& tavi)
            {
                tavi.TrackFileInput(L"fileAddOrImport", true, L"meshType", L"fileExtension", 4042, false, 2, 3, 4, 5, 6,
                                    7, 8, 9, L"prevOpenProductLine", L"prevOpenProductRelease",
                                    L"prevOpenProductLicenseFeatureName");
            });

    RunTest(results, "UpdateLicense", ExpectEntitlement(),
            [](CorvaneTavi& tavi)
            {
                // The product key is sent, and is not among the expected keys.
                tavi.TrackUpdateLicense(L"productKey", L"featureName", L"featureVersion", L"serialNumber", 13, 14, 15);
            });

    RunTest(results, "UserEvent",
            ExpectWaypoint(CV_COMMAND_FIRED, {{CV_COMMAND_FIRED_RESOURCE_ID, 20},
                                              {CV_COMMAND_FIRED_RESOURCE_MODULE, L"resourceModule"},
                                              {CV_COMMAND_FIRED_RESOURCE_CATEGORY, L"resourceCategory"},
                                              {CV_COMMAND_FIRED_COMMAND_DESCRIPTION, L"commandDescription"}}),
            [](CorvaneTavi& tavi)
            {
                tavi.TrackUserEvent(L"CV.COMMAND_FIRED", L"componentType", 20, L"resourceModule", L"resourceCategory",
                                    L"commandDescription");
            });

    RunTest(results, "ExportPublish",
            ExpectWaypoint(CV_EXPORT_PUBLISH, {{CV_EXPORT_PUBLISH_NAME, L"exportPublishName"},
                                               {CV_EXPORT_PUBLISH_EXTENSION, L"exportPublishExtension"}}),
            [](CorvaneTavi& tavi) { tavi.TrackExportPublish(L"exportPublishName", L"exportPublishExtension"); });

    RunTest(results, "HelpDialog",
            ExpectWaypoint(CV_HELP_FROM_DIALOG, {{CV_HELP_FROM_DIALOG_CLASSNAME, L"helpClassName"},
                                                 {CV_HELP_FROM_DIALOG_CONTEXT, L"helpContext"}}),
            [](CorvaneTavi& tavi) { tavi.TrackHelpDialog(L"helpClassName", L"helpContext"); });

    RunTest(results, "MaterialSelection",
            ExpectWaypoint(CV_UI_MATERIAL_SELECTION, {{CV_MATERIAL_SELECTION_FILE, L"fileName"},
                                                      {CV_MATERIAL_SELECTION_TYPE, L"fileType"},
                                                      {CV_MATERIAL_ID, 300},
                                                      {CV_MATERIAL_MANUFACTURER, L"manufacturer"},
                                                      {CV_MATERIAL_TRADE_NAME, L"tradeName"},
                                                      {CV_MATERIAL_FAMILY_NAME, L"familyName"},
                                                      {CV_MATERIAL_GENERIC_CLASS, L"familyAbbre"}}),
            [](CorvaneTavi& tavi)
            {
                tavi.TrackMaterialSelection(L"fileName", L"fileType", 300, L"manufacturer", L"tradeName", L"familyName",
                                            L"familyAbbre");
            });

    RunTest(results, "Report",
            ExpectWaypoint(CV_REPORT, {{CV_REPORT_NAME, L"reportName"},
                                       {CV_REPORT_EXTENSION, L"reportExtension"},
                                       {CV_REPORT_STUDY_COUNTS, 22},
                                       {CV_REPORT_ANALYSIS_COUNTS, 3}}),
            [](CorvaneTavi& tavi) { tavi.TrackReport(L"reportName", L"reportExtension", 22, 3); });

    RunTest(results, "ResultsUsage",
            ExpectWaypoint(CV_RESULT_USAGE,
                           {{CV_RESULTS_USAGE_NAME, L"usageName"}, {CV_RESULTS_USAGE_PLOTNAME, L"usagePlotName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackResultsUsage(L"usageName", L"usagePlotName"); });

    RunTest(results, "AnalysisPropertyChanged",
            ExpectWaypoint(SIMULATION_SOLVE_PROPERTY_CHANGED, {{SIMULATION_SOLVE_PROPERTY_PREV_VALUE, L"prevType"},
                                                               {SIMULATION_SOLVE_PROPERTY_NEW_VALUE, L"newType"}}),
            [](CorvaneTavi& tavi) { tavi.TrackAnalysisPropertyChanged(L"prevType", L"newType"); });

    RunTest(results, "AnalysisDetails",
            ExpectWaypoint(SIMULATION_SOLVE, {{SIMULATION_SOLVE_MOLDING_PROCESS_NAME, L"processName"},
                                              {SIMULATION_SOLVE_SEQUENCE_NAME, L"sequenceName"},
                                              {SIMULATION_SOLVE_PARALLEL_TYPE, 2},
                                              {SIMULATION_SOLVE_PARALLEL_TYPEDESC, L"parallelDescription"},
                                              {SIMULATION_SOLVE_PARALLEL_CUSTOM_THREADNUM, 4}}),
            [](CorvaneTavi& tavi)
            { tavi.TrackAnalysisDetails(L"processName", L"sequenceName", 2, L"parallelDescription", 4); });

    RunTest(results, "MeshSize",
            ExpectWaypoint(CV_MESH_SIZE_COUNT, {{CV_MESH_SIZE_ELEMENTS, 3000}, {CV_MESH_SIZE_NODES, 99999}}),
            [](CorvaneTavi& tavi) { tavi.TrackMeshSize(3000, 99999); });

    RunTest(results, "MeshPropertyChanged",
            ExpectWaypoint(CV_MESH_PROPERTY_CHANGED, {{CV_MESH_PROPERTY_NAME, L"propertyName"},
                                                      {CV_MESH_PROPERTY_PREV_VALUE, L"prevValue"},
                                                      {CV_MESH_PROPERTY_NEW_VALUE, L"newValue"}}),
            [](CorvaneTavi& tavi) { tavi.TrackMeshPropertyChanged(L"propertyName", L"prevValue", L"newValue"); });

    RunTest(results, "MoldPropertyChanged",
            ExpectWaypoint(CV_MOLD_PROPERTY_CHANGED, {{CV_MOLD_PROPERTY_NAME, L"propertyName"},
                                                      {CV_MOLD_PROPERTY_PREV_VALUE, L"prevType"},
                                                      {CV_MOLD_PROPERTY_NEW_VALUE, L"newType"}}),
            [](CorvaneTavi& tavi) { tavi.TrackMoldPropertyChanged(L"propertyName", L"prevType", L"newType"); });

    RunTest(results, "3DCKeyPressed", ExpectWaypoint(COMMON_ZEPH_3DC_KEY_PRESSED, {{COMMON_ZEPH_3DC_KEY, L"keyName"}}),
            [](CorvaneTavi& tavi) { tavi.Track3DCKeyPressed(L"keyName"); });

    RunTest(results, "3DCModeActivated",
            ExpectWaypoint(COMMON_ZEPH_3DC_MODE_ACTIVATED, {{COMMON_ZEPH_3DC_ACTIVE_MODE, L"newMode"}}),
            [](CorvaneTavi& tavi) { tavi.Track3DCModeActivated(L"newMode"); });

    RunTest(results, "3DCUsed", ExpectWaypoint(COMMON_ZEPH_3DC_USED, {{COMMON_ZEPH_3DC_DEVICE_TYPE, L"deviceName"}}),
            [](CorvaneTavi& tavi) { tavi.Track3DCUsed(L"deviceName"); });

    RunTest(results, "NavBarClosed", ExpectWaypoint(COMMON_ZEPH_NB_CLOSED, {}),
            [](CorvaneTavi& tavi) { tavi.TrackNavBarClosed(); });

    RunTest(results, "NavBarCustomizationClicked", ExpectWaypoint(COMMON_ZEPH_NB_CUSTOMIZATION_CLICKED, {}),
            [](CorvaneTavi& tavi) { tavi.TrackNavBarCustomizationClicked(); });

    RunTest(results, "NavBarDragMove",
            ExpectWaypoint(COMMON_ZEPH_NB_DRAGGED, {{COMMON_ZEPH_NB_LINKED_TO_DORVEL, false},
                                                    {COMMON_ZEPH_NB_POSITION, L"positionName"},
                                                    {COMMON_ZEPH_NB_RIBBON_VISIBLE, true}}),
            [](CorvaneTavi& tavi)
            { tavi.TrackNavBarDragMove("COMMON.ZEPH_NB_DRAGGED", false, L"positionName", true); });

    RunTest(results, "NavBarMoreControlsClicked", ExpectWaypoint(COMMON_ZEPH_NB_MORE_CONTROLS_CLICKED, {}),
            [](CorvaneTavi& tavi) { tavi.TrackNavBarMoreControlsClicked(); });

    // The last tool's name and flag are sent, and the number of tools.
    RunTest(results, "NavBarStartup",
            ExpectWaypoint(COMMON_ZEPH_NB_STARTUP_CONDITIONS, {{COMMON_ZEPH_NB_MORE_CONTROLS_VISIBLE, true},
                                                               {COMMON_ZEPH_NB_LINKED_TO_DORVEL, false},
                                                               {COMMON_ZEPH_NB_POSITION, L"positionName"},
                                                               {COMMON_ZEPH_NB_RIBBON_VISIBLE, false},
                                                               {COMMON_ZEPH_NB_TOOL_NAME, L"tool3"},
                                                               {COMMON_ZEPH_NB_TOOL_HIDDEN, true},
                                                               {COMMON_ZEPH_NB_TOOL_COUNT, 3}}),
            [](CorvaneTavi& tavi)
            {
                tavi.TrackNavBarStartup(true, false, L"positionName", false,
                                        {{L"tool1", false}, {L"tool2", false}, {L"tool3", true}});
            });

    RunTest(results, "NavBarToolClicked",
            ExpectWaypoint(COMMON_ZEPH_NB_TOOL_CLICKED,
                           {{COMMON_ZEPH_NB_TOOL_NAME, L"toolName"}, {COMMON_ZEPH_NB_TOOL_ACTIVATED, true}}),
            [](CorvaneTavi& tavi) { tavi.TrackNavBarToolClicked(L"toolName", true); });

    RunTest(results, "NavBarToolRightClicked",
            ExpectWaypoint(COMMON_ZEPH_NB_TOOL_RIGHT_CLICKED,
                           {{COMMON_ZEPH_NB_TOOL_NAME, L"toolName"}, {COMMON_ZEPH_NB_MENU_ITEM, L"menuItemName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackNavBarToolRightClicked(L"toolName", L"menuItemName"); });

    RunTest(results, "SteerWheelActivated",
            ExpectWaypoint(COMMON_ZEPH_SW_ACTIVATED, {{COMMON_ZEPH_SW_TYPE, L"wheelName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackSteerWheelActivated(L"wheelName"); });

    RunTest(results, "SteerWheelClicked",
            ExpectWaypoint(COMMON_ZEPH_SW_CLICKED,
                           {{COMMON_ZEPH_SW_TYPE, L"wheelName"}, {COMMON_ZEPH_SW_ZONE, L"zoneName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackSteerWheelClicked(L"wheelName", L"zoneName"); });

    RunTest(results, "SteerWheelDragBegin",
            ExpectWaypoint(COMMON_ZEPH_SW_DRAG_BEGIN,
                           {{COMMON_ZEPH_SW_TYPE, L"wheelName"}, {COMMON_ZEPH_SW_ZONE, L"zoneName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackSteerWheelDragBegin(L"wheelName", L"zoneName"); });

    RunTest(results, "SteerWheelKeyUp", ExpectWaypoint(COMMON_ZEPH_SW_KEY_UP, {{COMMON_ZEPH_KEY_ID, L"keyName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackSteerWheelKeyUp(L"keyName"); });

    // Mini before large for the sizes, large before mini for the opacities.
    RunTest(results, "SteerWheelLoadOption",
            ExpectWaypoint(COMMON_ZEPH_SW_LOAD_OPTS, {{COMMON_ZEPH_SW_OPTS_ALWAYSSHOWWELCOME, false},
                                                      {COMMON_ZEPH_SW_OPTS_HAVESHOWNWELCOME, true},
                                                      {COMMON_ZEPH_SW_OPTS_MINIWHEELSIZE, 4000},
                                                      {COMMON_ZEPH_SW_OPTS_LARGEWHEELSIZE, 9001},
                                                      {COMMON_ZEPH_SW_OPTS_LARGEWHEELOPACITYFACTOR, 0.45},
                                                      {COMMON_ZEPH_SW_OPTS_MINIWHEELOPACITYFACTOR, 0.39},
                                                      {COMMON_ZEPH_SW_OPTS_SHOWHUDMESSAGES, true},
                                                      {COMMON_ZEPH_SW_OPTS_SHOWTOOLTIPS, false},
                                                      {COMMON_ZEPH_SW_OPTS_SHOWTOOLCURSORTEXT, false},
                                                      {COMMON_ZEPH_SW_OPTS_INVERTVERTICALAXIS, false},
                                                      {COMMON_ZEPH_SW_OPTS_SPEEDFACTOR, 1.12},
                                                      {COMMON_ZEPH_SW_OPTS_INCREMENTALZOOM, true},
                                                      {COMMON_ZEPH_SW_OPTS_PRESERVESCENEUP, false},
                                                      {COMMON_ZEPH_SW_OPTS_SELECTIONSENSITIVITY, false},
                                                      {COMMON_ZEPH_SW_OPTS_FLYPLANARMOTION, true}}),
            [](CorvaneTavi& tavi)
            {
                tavi.TrackSteerWheelLoadOption(false, true, 4000, 9001, 0.45, 0.39, true, false, false, false, 1.12,
                                               true, false, false, true);
            });

    RunTest(results, "SteerWheelWelcomeClicked",
            ExpectWaypoint(COMMON_ZEPH_SW_WELCOME_CLICKED, {{COMMON_ZEPH_SW_WELCOME_PART, L"partName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackSteerWheelWelcomeClicked(L"partName"); });

    RunTest(results, "DorvelClicked", ExpectWaypoint(COMMON_ZEPH_VC_CLICKED, {{COMMON_ZEPH_VC_PART, L"partName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackDorvelClicked(L"partName"); });

    RunTest(results, "DorvelDragBegin", ExpectWaypoint(COMMON_ZEPH_VC_DRAG_BEGIN, {{COMMON_ZEPH_VC_PART, L"partName"}}),
            [](CorvaneTavi& tavi) { tavi.TrackDorvelDragBegin(L"partName"); });

    RunTest(results, "DorvelLoadOption",
            ExpectWaypoint(COMMON_ZEPH_VC_LOAD_OPTS, {{COMMON_ZEPH_VC_OPTS_SIZE, L"size"},
                                                      {COMMON_ZEPH_VC_OPTS_SCREENLOCATION, L"location"},
                                                      {COMMON_ZEPH_VC_OPTS_MINOPACITY, 0.0F},
                                                      {COMMON_ZEPH_VC_OPTS_VISIBLE, true},
                                                      {COMMON_ZEPH_VC_OPTS_DRAWUCSMENU, true},
                                                      {COMMON_ZEPH_VC_OPTS_DRAWCOMPASS, true},
                                                      {COMMON_ZEPH_VC_OPTS_DRAGSNAP, true},
                                                      {COMMON_ZEPH_VC_OPTS_COMPASSANGLE, 0.044F},
                                                      {COMMON_ZEPH_VC_OPTS_TRANSITIONDURATION, 0.66F},
                                                      {COMMON_ZEPH_VC_OPTS_ZOOMTOFITSCENE, true},
                                                      {COMMON_ZEPH_VC_OPTS_PRESERVESCENEUP, true},
                                                      {COMMON_ZEPH_VC_OPTS_ORIENTTOUCS, false}}),
            [](CorvaneTavi& tavi)
            {
                // Opacity, angle and duration differ in their number of decimals.
                tavi.TrackDorvelLoadOption(L"size", L"location", 0.0F, true, true, true, true, 0.044F, 0.66F, true,
                                           true, false);
            });

    RunTest(results, "PPR",
            ExpectWaypoint(CV_PPR, {{CV_LICENSE_MODE, L"NETWORK"},
                                    {CV_SCM_SHOW_USE_LICENSE, true},
                                    {CV_SCM_SHOW_USE_PPR, false},
                                    {CV_SCM_SHOW_CUSTOM_INFO, false},
                                    {CV_SCM_SHOULD_MONETIZE, false},
                                    {CV_MERIDOR_JOB_LIMIT, 3},
                                    {CV_CONCURRENT_JOBS_MERIDOR, 0},
                                    {CV_CONCURRENT_JOBS_HALDEN, 0}}),
            [](CorvaneTavi& tavi) { tavi.TrackPPR(L"NETWORK", true, false, false, false, 3, 0, 0); });

    // Documents are judged by another callback, which stays registered: so this is the last test. Its record joins the
    // list after the call.
    CorvaneTavi::Instance().AddDocument(L"fileName1", L"fileExtension1", 12, 12);
    CorvaneTavi::Instance().AddDocument(L"fileName2", L"fileExtension2", 24, 24);
    const JsonValue expected = ExpectContent({{COMMON_FILE_NAME, L"fileName1"},
                                              {COMMON_FILE_TYPE, L"fileExtension1"},
                                              {COMMON_FILE_SIZE, 12},
                                              {COMMON_FILE_SOURCE, 12}});
    TestResult result{expected, false};
    const std::string productKey = CorvaneTavi::Instance().GetProductKey();
    if (Sdk::SetTestingCallback(NarrowText(productKey.c_str()), VerifyFileInputPayload, &result) != 0)
    {
        // "flags", although it is the callback that was refused: the text is fixed.
        std::cout << "Error occurred setting testing flags" << std::endl;
    }
    else
    {
        PrintTitle("StartTrackFileChange");
        CorvaneTavi::Instance().StartTrackFileChange(L"fileName1");
    }
    results.push_back(result);
}
