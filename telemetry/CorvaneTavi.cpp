#include <telemetry/CorvaneTavi.h>

#include <iostream>
#include <utility>

#include <telemetry/Attributes.h>
#include <telemetry/EventCodes.h>
#include <telemetry/FacetAccess.h>
#include <telemetry/FacetFields.h>
#include <telemetry/FacetHelpers.h>
#include <telemetry/UpiProductInfo.h>
#include <telemetry/Vocabulary.h>

using namespace Corvane;
using namespace Corvane::Vocabulary;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;
namespace Sdk = Veltrane::TaviDesktopSDK;

CorvaneTavi& CorvaneTavi::Instance()
{
    static CorvaneTavi instance;
    instance.StartSdk();
    return instance;
}

int CorvaneTavi::StartSdk()
{
    if (!hostProduct.empty())
        return 0;

    const UpiProductInfo info(true);
    Facet::Product product;
    SetFacetEntry(product, TextOf(FacetFields::product_line_name), TextOf(info.GetProductLine()));
    SetFacetEntry(product, TextOf(FacetFields::product_release_id), TextOf(info.GetRelease()));
    SetFacetEntry(product, TextOf(FacetFields::product_master_id), TextOf(info.GetMaster()));
    SetFacetEntry(product, TextOf(FacetFields::product_build_id), TextOf(info.GetBuild()));
    SetFacetEntry(product, TextOf(FacetFields::product_id_provider), "upi1");

    TaviString identifier;
    const int status = Sdk::Initialize(product, identifier);
    if (status != 0)
        std::cout << "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize" << std::endl;
    Sdk::SetHostProduct(identifier);
    TaviString key;
    BuildProductKey(product, key);

    // Assigned last, when nothing can throw: running out of memory above leaves the wrapper not started.
    std::string startedHostProduct = StandardString(identifier);
    productKey = StandardString(key);
    hostProduct = std::move(startedHostProduct);
    return status;
}

std::string CorvaneTavi::GetProductKey() const
{
    return productKey;
}

void CorvaneTavi::TrackWaypoint(const TaviString& componentName, const AttributeMap& attributes)
{
    Facet::Core core;
    SetEventType(core, EventTypes::Component);
    SetEventScope(core, EventScopes::Component);
    Facet::Base& component = ComponentFacet(core);
    SetFacetEntry(component, TextOf(FacetFields::component_type), "waypoint");
    SetComponentName(component, componentName);
    SetComponentAttributes(component, attributes);
    Send(core, "CorvaneTavi::TrackWaypoint");
}

void CorvaneTavi::TrackWaypoint(const std::wstring& name, std::initializer_list<Attribute> attributes)
{
    // Two statements: in one, the compiler would choose which is converted first.
    const AttributeMap gathered = Attributes(attributes);
    TrackWaypoint(TextOf(name), gathered);
}

void CorvaneTavi::TrackExportPublish(const std::wstring& name, const std::wstring& extension)
{
    TrackWaypoint(CV_EXPORT_PUBLISH, {{CV_EXPORT_PUBLISH_NAME, name}, {CV_EXPORT_PUBLISH_EXTENSION, extension}});
}

void CorvaneTavi::TrackHelpDialog(const std::wstring& className, const std::wstring& context)
{
    TrackWaypoint(CV_HELP_FROM_DIALOG,
                  {{CV_HELP_FROM_DIALOG_CLASSNAME, className}, {CV_HELP_FROM_DIALOG_CONTEXT, context}});
}

void CorvaneTavi::TrackMaterialSelection(const std::wstring& file, const std::wstring& type, std::uint64_t materialId,
                                         const std::wstring& manufacturer, const std::wstring& tradeName,
                                         const std::wstring& familyName, const std::wstring& genericClass)
{
    TrackWaypoint(CV_UI_MATERIAL_SELECTION, {{CV_MATERIAL_SELECTION_FILE, file},
                                             {CV_MATERIAL_SELECTION_TYPE, type},
                                             {CV_MATERIAL_ID, materialId},
                                             {CV_MATERIAL_MANUFACTURER, manufacturer},
                                             {CV_MATERIAL_TRADE_NAME, tradeName},
                                             {CV_MATERIAL_FAMILY_NAME, familyName},
                                             {CV_MATERIAL_GENERIC_CLASS, genericClass}});
}

void CorvaneTavi::TrackReport(const std::wstring& name, const std::wstring& extension, std::uint64_t studyCount,
                              std::uint64_t analysisCount)
{
    TrackWaypoint(CV_REPORT, {{CV_REPORT_NAME, name},
                              {CV_REPORT_EXTENSION, extension},
                              {CV_REPORT_STUDY_COUNTS, studyCount},
                              {CV_REPORT_ANALYSIS_COUNTS, analysisCount}});
}

void CorvaneTavi::TrackResultsUsage(const std::wstring& resultName, const std::wstring& plotName)
{
    TrackWaypoint(CV_RESULT_USAGE, {{CV_RESULTS_USAGE_NAME, resultName}, {CV_RESULTS_USAGE_PLOTNAME, plotName}});
}

void CorvaneTavi::TrackAnalysisPropertyChanged(const std::wstring& previousValue, const std::wstring& newValue)
{
    TrackWaypoint(SIMULATION_SOLVE_PROPERTY_CHANGED, {{SIMULATION_SOLVE_PROPERTY_PREV_VALUE, previousValue},
                                                      {SIMULATION_SOLVE_PROPERTY_NEW_VALUE, newValue}});
}

void CorvaneTavi::TrackAnalysisDetails(const std::wstring& processName, const std::wstring& sequenceName,
                                       std::int32_t parallelType, const std::wstring& parallelTypeDescription,
                                       std::int32_t customThreadNumber)
{
    TrackWaypoint(SIMULATION_SOLVE, {{SIMULATION_SOLVE_MOLDING_PROCESS_NAME, processName},
                                     {SIMULATION_SOLVE_SEQUENCE_NAME, sequenceName},
                                     {SIMULATION_SOLVE_PARALLEL_TYPE, parallelType},
                                     {SIMULATION_SOLVE_PARALLEL_TYPEDESC, parallelTypeDescription},
                                     {SIMULATION_SOLVE_PARALLEL_CUSTOM_THREADNUM, customThreadNumber}});
}

void CorvaneTavi::TrackMeshSize(std::uint64_t elementCount, std::uint64_t nodeCount)
{
    TrackWaypoint(CV_MESH_SIZE_COUNT, {{CV_MESH_SIZE_ELEMENTS, elementCount}, {CV_MESH_SIZE_NODES, nodeCount}});
}

void CorvaneTavi::TrackMeshPropertyChanged(const std::wstring& propertyName, const std::wstring& previousValue,
                                           const std::wstring& newValue)
{
    TrackWaypoint(CV_MESH_PROPERTY_CHANGED, {{CV_MESH_PROPERTY_NAME, propertyName},
                                             {CV_MESH_PROPERTY_PREV_VALUE, previousValue},
                                             {CV_MESH_PROPERTY_NEW_VALUE, newValue}});
}

void CorvaneTavi::TrackMoldPropertyChanged(const std::wstring& propertyName, const std::wstring& previousValue,
                                           const std::wstring& newValue)
{
    TrackWaypoint(CV_MOLD_PROPERTY_CHANGED, {{CV_MOLD_PROPERTY_NAME, propertyName},
                                             {CV_MOLD_PROPERTY_PREV_VALUE, previousValue},
                                             {CV_MOLD_PROPERTY_NEW_VALUE, newValue}});
}

void CorvaneTavi::Track3DCKeyPressed(const std::wstring& key)
{
    TrackWaypoint(COMMON_ZEPH_3DC_KEY_PRESSED, {{COMMON_ZEPH_3DC_KEY, key}});
}

void CorvaneTavi::Track3DCModeActivated(const std::wstring& activeMode)
{
    TrackWaypoint(COMMON_ZEPH_3DC_MODE_ACTIVATED, {{COMMON_ZEPH_3DC_ACTIVE_MODE, activeMode}});
}

void CorvaneTavi::Track3DCUsed(const std::wstring& deviceType)
{
    TrackWaypoint(COMMON_ZEPH_3DC_USED, {{COMMON_ZEPH_3DC_DEVICE_TYPE, deviceType}});
}

void CorvaneTavi::TrackNavBarClosed()
{
    TrackWaypoint(COMMON_ZEPH_NB_CLOSED, {});
}

void CorvaneTavi::TrackNavBarCustomizationClicked()
{
    TrackWaypoint(COMMON_ZEPH_NB_CUSTOMIZATION_CLICKED, {});
}

void CorvaneTavi::TrackNavBarDragMove(const std::string& waypointName, bool linkedToDorvel,
                                      const std::wstring& position, bool ribbonVisible)
{
    const AttributeMap attributes = Attributes({{COMMON_ZEPH_NB_LINKED_TO_DORVEL, linkedToDorvel},
                                                {COMMON_ZEPH_NB_POSITION, position},
                                                {COMMON_ZEPH_NB_RIBBON_VISIBLE, ribbonVisible}});
    TrackWaypoint(TextOf(waypointName), attributes);
}

void CorvaneTavi::TrackNavBarMoreControlsClicked()
{
    TrackWaypoint(COMMON_ZEPH_NB_MORE_CONTROLS_CLICKED, {});
}

void CorvaneTavi::TrackNavBarStartup(bool moreControlsVisible, bool linkedToDorvel, const std::wstring& position,
                                     bool ribbonVisible, const std::vector<NavBarToolState>& tools)
{
    AttributeMap attributes = Attributes({{COMMON_ZEPH_NB_MORE_CONTROLS_VISIBLE, moreControlsVisible},
                                          {COMMON_ZEPH_NB_LINKED_TO_DORVEL, linkedToDorvel},
                                          {COMMON_ZEPH_NB_POSITION, position},
                                          {COMMON_ZEPH_NB_RIBBON_VISIBLE, ribbonVisible}});
    const std::size_t count = tools.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        // The keys carry no index, so that each tool replaces the one before: only the last is sent.
        const NavBarToolState& tool = tools.at(i);
        attributes[TextOf(COMMON_ZEPH_NB_TOOL_NAME)] = TextOf(tool.name);
        attributes[TextOf(COMMON_ZEPH_NB_TOOL_HIDDEN)] = TextOf(tool.hidden);
    }
    attributes[TextOf(COMMON_ZEPH_NB_TOOL_COUNT)] = TextOf(std::uint64_t{count});
    TrackWaypoint(TextOf(COMMON_ZEPH_NB_STARTUP_CONDITIONS), attributes);
}

void CorvaneTavi::TrackNavBarToolClicked(const std::wstring& toolName, bool activated)
{
    TrackWaypoint(COMMON_ZEPH_NB_TOOL_CLICKED,
                  {{COMMON_ZEPH_NB_TOOL_NAME, toolName}, {COMMON_ZEPH_NB_TOOL_ACTIVATED, activated}});
}

void CorvaneTavi::TrackNavBarToolRightClicked(const std::wstring& toolName, const std::wstring& menuItem)
{
    TrackWaypoint(COMMON_ZEPH_NB_TOOL_RIGHT_CLICKED,
                  {{COMMON_ZEPH_NB_TOOL_NAME, toolName}, {COMMON_ZEPH_NB_MENU_ITEM, menuItem}});
}

void CorvaneTavi::TrackSteerWheelActivated(const std::wstring& wheelType)
{
    TrackWaypoint(COMMON_ZEPH_SW_ACTIVATED, {{COMMON_ZEPH_SW_TYPE, wheelType}});
}

void CorvaneTavi::TrackSteerWheelClicked(const std::wstring& wheelType, const std::wstring& zone)
{
    TrackWaypoint(COMMON_ZEPH_SW_CLICKED, {{COMMON_ZEPH_SW_TYPE, wheelType}, {COMMON_ZEPH_SW_ZONE, zone}});
}

void CorvaneTavi::TrackSteerWheelDragBegin(const std::wstring& wheelType, const std::wstring& zone)
{
    TrackWaypoint(COMMON_ZEPH_SW_DRAG_BEGIN, {{COMMON_ZEPH_SW_TYPE, wheelType}, {COMMON_ZEPH_SW_ZONE, zone}});
}

void CorvaneTavi::TrackSteerWheelKeyUp(const std::wstring& keyId)
{
    TrackWaypoint(COMMON_ZEPH_SW_KEY_UP, {{COMMON_ZEPH_KEY_ID, keyId}});
}

void CorvaneTavi::TrackSteerWheelLoadOption(bool alwaysShowWelcome, bool haveShownWelcome, std::int32_t miniWheelSize,
                                            std::int32_t largeWheelSize, double largeWheelOpacityFactor,
                                            double miniWheelOpacityFactor, bool showHudMessages, bool showTooltips,
                                            bool showToolCursorText, bool invertVerticalAxis, double speedFactor,
                                            bool incrementalZoom, bool preserveSceneUp, bool selectionSensitivity,
                                            bool flyPlanarMotion)
{
    TrackWaypoint(COMMON_ZEPH_SW_LOAD_OPTS, {{COMMON_ZEPH_SW_OPTS_ALWAYSSHOWWELCOME, alwaysShowWelcome},
                                             {COMMON_ZEPH_SW_OPTS_HAVESHOWNWELCOME, haveShownWelcome},
                                             {COMMON_ZEPH_SW_OPTS_MINIWHEELSIZE, miniWheelSize},
                                             {COMMON_ZEPH_SW_OPTS_LARGEWHEELSIZE, largeWheelSize},
                                             {COMMON_ZEPH_SW_OPTS_LARGEWHEELOPACITYFACTOR, largeWheelOpacityFactor},
                                             {COMMON_ZEPH_SW_OPTS_MINIWHEELOPACITYFACTOR, miniWheelOpacityFactor},
                                             {COMMON_ZEPH_SW_OPTS_SHOWHUDMESSAGES, showHudMessages},
                                             {COMMON_ZEPH_SW_OPTS_SHOWTOOLTIPS, showTooltips},
                                             {COMMON_ZEPH_SW_OPTS_SHOWTOOLCURSORTEXT, showToolCursorText},
                                             {COMMON_ZEPH_SW_OPTS_INVERTVERTICALAXIS, invertVerticalAxis},
                                             {COMMON_ZEPH_SW_OPTS_SPEEDFACTOR, speedFactor},
                                             {COMMON_ZEPH_SW_OPTS_INCREMENTALZOOM, incrementalZoom},
                                             {COMMON_ZEPH_SW_OPTS_PRESERVESCENEUP, preserveSceneUp},
                                             {COMMON_ZEPH_SW_OPTS_SELECTIONSENSITIVITY, selectionSensitivity},
                                             {COMMON_ZEPH_SW_OPTS_FLYPLANARMOTION, flyPlanarMotion}});
}

void CorvaneTavi::TrackSteerWheelWelcomeClicked(const std::wstring& welcomePart)
{
    TrackWaypoint(COMMON_ZEPH_SW_WELCOME_CLICKED, {{COMMON_ZEPH_SW_WELCOME_PART, welcomePart}});
}

void CorvaneTavi::TrackDorvelClicked(const std::wstring& part)
{
    TrackWaypoint(COMMON_ZEPH_VC_CLICKED, {{COMMON_ZEPH_VC_PART, part}});
}

void CorvaneTavi::TrackDorvelDragBegin(const std::wstring& part)
{
    TrackWaypoint(COMMON_ZEPH_VC_DRAG_BEGIN, {{COMMON_ZEPH_VC_PART, part}});
}

void CorvaneTavi::TrackDorvelLoadOption(const std::wstring& size, const std::wstring& screenLocation,
                                        float minimumOpacity, bool visible, bool drawUcsMenu, bool drawCompass,
                                        bool dragSnap, float compassAngle, float transitionDuration,
                                        bool zoomToFitScene, bool preserveSceneUp, bool orientToUcs)
{
    TrackWaypoint(COMMON_ZEPH_VC_LOAD_OPTS, {{COMMON_ZEPH_VC_OPTS_SIZE, size},
                                             {COMMON_ZEPH_VC_OPTS_SCREENLOCATION, screenLocation},
                                             {COMMON_ZEPH_VC_OPTS_MINOPACITY, minimumOpacity},
                                             {COMMON_ZEPH_VC_OPTS_VISIBLE, visible},
                                             {COMMON_ZEPH_VC_OPTS_DRAWUCSMENU, drawUcsMenu},
                                             {COMMON_ZEPH_VC_OPTS_DRAWCOMPASS, drawCompass},
                                             {COMMON_ZEPH_VC_OPTS_DRAGSNAP, dragSnap},
                                             {COMMON_ZEPH_VC_OPTS_COMPASSANGLE, compassAngle},
                                             {COMMON_ZEPH_VC_OPTS_TRANSITIONDURATION, transitionDuration},
                                             {COMMON_ZEPH_VC_OPTS_ZOOMTOFITSCENE, zoomToFitScene},
                                             {COMMON_ZEPH_VC_OPTS_PRESERVESCENEUP, preserveSceneUp},
                                             {COMMON_ZEPH_VC_OPTS_ORIENTTOUCS, orientToUcs}});
}

void CorvaneTavi::TrackPPR(const std::wstring& licenseMode, bool showUseLicense, bool showUsePpr, bool showCustomInfo,
                           bool shouldMonetize, std::uint64_t meridorJobLimit, std::uint64_t concurrentMeridorJobs,
                           std::uint64_t concurrentHaldenJobs)
{
    TrackWaypoint(CV_PPR, {{CV_LICENSE_MODE, licenseMode},
                           {CV_SCM_SHOW_USE_LICENSE, showUseLicense},
                           {CV_SCM_SHOW_USE_PPR, showUsePpr},
                           {CV_SCM_SHOW_CUSTOM_INFO, showCustomInfo},
                           {CV_SCM_SHOULD_MONETIZE, shouldMonetize},
                           {CV_MERIDOR_JOB_LIMIT, meridorJobLimit},
                           {CV_CONCURRENT_JOBS_MERIDOR, concurrentMeridorJobs},
                           {CV_CONCURRENT_JOBS_HALDEN, concurrentHaldenJobs}});
}

void CorvaneTavi::TrackCommandInvoked(const std::wstring& commandName, std::int64_t commandContext,
                                      std::uint64_t resourceId, const std::wstring& resourceModule,
                                      const std::wstring& resourceCategory, const std::wstring& commandDescription)
{
    Facet::Core core;
    SetEventType(core, EventTypes::Component);
    SetEventScope(core, EventScopes::Component);
    Facet::Base& component = ComponentFacet(core);
    SetFacetEntry(component, TextOf(FacetFields::component_type), "command");
    SetComponentName(component, TextOf(COMMON_COMMAND_INVOKED));
    const AttributeMap attributes = Attributes({{COMMON_COMMAND_NAME, commandName},
                                                {COMMON_COMMAND_CONTEXT, commandContext},
                                                {CV_COMMAND_FIRED_RESOURCE_ID, resourceId},
                                                {CV_COMMAND_FIRED_RESOURCE_MODULE, resourceModule},
                                                {CV_COMMAND_FIRED_RESOURCE_CATEGORY, resourceCategory},
                                                {CV_COMMAND_FIRED_COMMAND_DESCRIPTION, commandDescription}});
    SetComponentAttributes(component, attributes);
    Send(core, "CorvaneTavi::TrackCommandInvoked");
}

void CorvaneTavi::TrackUserEvent(const std::wstring& componentName, const std::wstring& componentType,
                                 std::uint64_t resourceId, const std::wstring& resourceModule,
                                 const std::wstring& resourceCategory, const std::wstring& commandDescription)
{
    Facet::Core core;
    SetEventType(core, EventTypes::Component);
    SetEventScope(core, EventScopes::Component);
    Facet::Base& component = ComponentFacet(core);
    SetComponentName(component, TextOf(componentName));
    SetFacetEntry(component, TextOf(FacetFields::component_type), TextOf(componentType));
    const AttributeMap attributes = Attributes({{CV_COMMAND_FIRED_RESOURCE_ID, resourceId},
                                                {CV_COMMAND_FIRED_RESOURCE_MODULE, resourceModule},
                                                {CV_COMMAND_FIRED_RESOURCE_CATEGORY, resourceCategory},
                                                {CV_COMMAND_FIRED_COMMAND_DESCRIPTION, commandDescription}});
    SetComponentAttributes(component, attributes);
    Send(core, "CorvaneTavi::TrackUserEvent");
}

void CorvaneTavi::TrackFileInput(const std::wstring& fileAddOrImport, bool importSucceeded,
                                 const std::wstring& meshType, const std::wstring& fileExtension,
                                 std::int32_t contentSize, bool isNetworkPath, std::int32_t num2dObjects,
                                 std::int32_t num3dObjects, std::int32_t numAnnotationObjects,
                                 std::int32_t numUnknownObjects, std::int32_t numDistinctXrefs,
                                 std::int32_t numXrefInstances, std::int32_t numDistinctImageRefs,
                                 std::int32_t numImageRefInstances, const std::wstring& prevOpenProductLine,
                                 const std::wstring& prevOpenProductRelease,
                                 const std::wstring& prevOpenProductLicenseFeatureName)
{
    Facet::Core core;
    SetEventType(core, EventTypes::Content);
    SetEventScope(core, EventScopes::Content);
    Facet::Base& content = ContentFacet(core);
    SetFacetEntry(content, TextOf(FacetFields::content_type), TextOf(fileExtension));
    SetFacetEntry(content, TextOf(FacetFields::content_size), JsonValue(static_cast<long long>(contentSize)));
    const AttributeMap attributes =
        Attributes({{CV_FILE_INPUT_IS_ADD_OR_IMPORT, fileAddOrImport},
                    {CV_FILE_IMPORT_SUCCESS, importSucceeded},
                    {CV_FILE_IMPORT_MESHTYPE, meshType},
                    {COMMON_FILE_INPUT_IS_NETWORK_PATH, isNetworkPath},
                    {COMMON_FILE_INPUT_NUM_2D_OBJECTS, num2dObjects},
                    {COMMON_FILE_INPUT_NUM_3D_OBJECTS, num3dObjects},
                    {COMMON_FILE_INPUT_NUM_ANNOTATION_OBJECTS, numAnnotationObjects},
                    {COMMON_FILE_INPUT_NUM_UNKNOWN_OBJECTS, numUnknownObjects},
                    {COMMON_FILE_INPUT_NUM_DISTINCT_XREFS, numDistinctXrefs},
                    {COMMON_FILE_INPUT_NUM_XREF_INSTANCES, numXrefInstances},
                    {COMMON_FILE_INPUT_NUM_DISTINCT_IMAGE_REFS, numDistinctImageRefs},
                    {COMMON_FILE_INPUT_NUM_IMAGE_REF_INSTANCES, numImageRefInstances},
                    {COMMON_FILE_INPUT_PREV_OPEN_PRODUCT_LINE, prevOpenProductLine},
                    {COMMON_FILE_INPUT_PREV_OPEN_PRODUCT_RELEASE, prevOpenProductRelease},
                    {COMMON_FILE_INPUT_PREV_OPEN_PRODUCT_LICENSE_FN, prevOpenProductLicenseFeatureName}});
    SetFacetObjectMembers(content, FacetFields::content_meta, attributes);
    Send(core, "CorvaneTavi::TrackFileInput");
}

void CorvaneTavi::TrackUpdateLicense(const std::wstring& licensedProductKey, const std::wstring& featureName,
                                     const std::wstring& featureVersion, const std::wstring& serialNumber,
                                     std::int32_t licenseBehavior, std::int32_t entitlementUsage,
                                     std::int32_t expiryDays)
{
    Facet::Core core;
    SetEventType(core, EventTypes::Entitlement);
    SetEventScope(core, EventScopes::Entitlement);
    Facet::Base& entitlement = EntitlementFacet(core);
    SetFacetEntry(entitlement, TextOf(FacetFields::entitlement_usage), TextOf(entitlementUsage));
    SetFacetEntry(entitlement, TextOf(FacetFields::entitlement_license_id), TextOf(serialNumber));
    Facet::Base& product = ProductFacet(core);
    SetFacetEntry(product, TextOf(FacetFields::product_key), TextOf(licensedProductKey));
    SetFacetEntry(product, TextOf(FacetFields::product_suite_name), TextOf(featureName));
    const AttributeMap attributes = Attributes(
        {{CV_FEATURE_VERSION, featureVersion}, {CV_LICENSE_BEHAVIOR, licenseBehavior}, {CV_EXPIRY_DAYS, expiryDays}});
    SetFacetObjectMembers(entitlement, FacetFields::entitlement_properties, attributes);
    Send(core, "CorvaneTavi::TrackUpdateLicense");
}

void CorvaneTavi::AddDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                              std::uint32_t source)
{
    documents[name] = std::make_shared<TaviDocument>(name, extension, size, source);
}

void CorvaneTavi::StartTrackFileChange(const std::wstring& name)
{
    const auto found = documents.find(name);
    if (found == documents.end())
        return;
    // A callback may replace the document: this keeps it until its event has been handed over.
    const std::shared_ptr<TaviDocument> document = found->second;
    document->TrackEvent(*this);
}

void CorvaneTavi::Send(const Facet::Core& core, const char* method) const
{
    if (Sdk::TrackEvent(TextOf(hostProduct), core, nullptr) != 0)
        std::cout << method << " TaviDesktopSDK::TrackEvent" << std::endl;
}
