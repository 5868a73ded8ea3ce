// The host product's telemetry wrapper: one object per process, through which every event is reported. One thread at a
// time may use the wrapper and the library: two at once can crash the host.
//
// Each reporting method translates its arguments into one event and hands it to the telemetry library before it
// returns. Methods return nothing and keep nothing; when the library refuses an event, one line on standard output
// names the sender and the library function, and the host goes on. The sender is the method itself, as in
// "CorvaneTavi::TrackFileInput TaviDesktopSDK::TrackEvent", except for waypoints (CorvaneTavi::TrackWaypoint) and
// documents (TaviDocument::TrackEvent). Only exhausted memory throws. The wrapper does not ask whether the user has
// opted in: call the library's IsOptedIn first.
//
// Wide text is UTF-16 or UTF-32, as wide as wchar_t, and ends at its first null character; it is sent as UTF-8, with
// U+FFFD for what is ill-formed. An empty text is sent as an empty string. Numbers and flags are sent as text unless
// said otherwise: flags as "True" and "False", integers in plain decimal, floating-point numbers as TaviString(double)
// writes them.
//
// Values pass unchecked; meaning and unit are the host's unless named below. Vocabulary.h has the names of events and
// attributes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/Attributes.h>
#include <telemetry/TaviDocument.h>

// A tool of the navigation bar.
struct NavBarToolState
{
    std::wstring name;
    bool hidden = false;
};

class CorvaneTavi
{
public:
    // The process's one wrapper, which lives until the process exits. Every call runs StartSdk() and drops its status.
    //
    // A static object of the host may report from its destructor if its construction ended after the first call. One
    // that is constructed before main() may report at all only if it is defined outside functions and below an
    // inclusion of Vocabulary.h: otherwise names and keys may be missing, or be read from freed memory.
    static CorvaneTavi& Instance();

    CorvaneTavi(const CorvaneTavi&) = delete;
    CorvaneTavi& operator=(const CorvaneTavi&) = delete;

    // Reads the product file (UpiProductInfo.h) and starts the telemetry library. Returns the library's status; any
    // except 0 prints "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize". Once the library has given an identifier
    // of the host product, whatever the status, further calls do nothing and return 0. Until then each tries again, and
    // events carry an empty identifier.
    int StartSdk();

    // Product line, release, master and build identifier joined by "&", for the library's testing functions; empty when
    // one of them is empty.
    std::string GetProductKey() const;

    // Reports a waypoint, the event that TrackExportPublish to TrackPPR send. A name or an attribute that was never
    // given text is left out, and so is an attribute whose key is empty; without attributes there is no
    // "component_attributes".
    void TrackWaypoint(const Veltrane::TaviDesktopSDK::TaviString& componentName, const AttributeMap& attributes);

    // Output, help and material
    void TrackExportPublish(const std::wstring& name, const std::wstring& extension);
    void TrackHelpDialog(const std::wstring& className, const std::wstring& context);
    void TrackMaterialSelection(const std::wstring& file, const std::wstring& type, std::uint64_t materialId,
                                const std::wstring& manufacturer, const std::wstring& tradeName,
                                const std::wstring& familyName, const std::wstring& genericClass);
    void TrackReport(const std::wstring& name, const std::wstring& extension, std::uint64_t studyCount,
                     std::uint64_t analysisCount);
    void TrackResultsUsage(const std::wstring& resultName, const std::wstring& plotName);

    // Analysis, mesh and mould. The change of an analysis property carries no property name. `parallelType` and
    // `customThreadNumber` are the host's own numbers.
    void TrackAnalysisPropertyChanged(const std::wstring& previousValue, const std::wstring& newValue);
    void TrackAnalysisDetails(const std::wstring& processName, const std::wstring& sequenceName,
                              std::int32_t parallelType, const std::wstring& parallelTypeDescription,
                              std::int32_t customThreadNumber);
    void TrackMeshSize(std::uint64_t elementCount, std::uint64_t nodeCount);
    void TrackMeshPropertyChanged(const std::wstring& propertyName, const std::wstring& previousValue,
                                  const std::wstring& newValue);
    void TrackMoldPropertyChanged(const std::wstring& propertyName, const std::wstring& previousValue,
                                  const std::wstring& newValue);

    // 3Dconnexion device
    void Track3DCKeyPressed(const std::wstring& key);
    void Track3DCModeActivated(const std::wstring& activeMode);
    void Track3DCUsed(const std::wstring& deviceType);

    // Navigation bar. A drag is reported under the caller's name for it, 8-bit text sent byte for byte. Of the tools at
    // start-up only their number and the last one's name and hidden flag are sent; without tools, the number 0 alone.
    // `linkedToDorvel` is whether the bar is linked to the view cube.
    void TrackNavBarClosed();
    void TrackNavBarCustomizationClicked();
    void TrackNavBarDragMove(const std::string& waypointName, bool linkedToDorvel, const std::wstring& position,
                             bool ribbonVisible);
    void TrackNavBarMoreControlsClicked();
    void TrackNavBarStartup(bool moreControlsVisible, bool linkedToDorvel, const std::wstring& position,
                            bool ribbonVisible, const std::vector<NavBarToolState>& tools);
    void TrackNavBarToolClicked(const std::wstring& toolName, bool activated);
    void TrackNavBarToolRightClicked(const std::wstring& toolName, const std::wstring& menuItem);

    // Steering wheel. Mini before large for the sizes, large before mini for the opacities, because the host passes
    // them in that order. Sizes and factors are in the host's own units.
    void TrackSteerWheelActivated(const std::wstring& wheelType);
    void TrackSteerWheelClicked(const std::wstring& wheelType, const std::wstring& zone);
    void TrackSteerWheelDragBegin(const std::wstring& wheelType, const std::wstring& zone);
    void TrackSteerWheelKeyUp(const std::wstring& keyId);
    void TrackSteerWheelLoadOption(bool alwaysShowWelcome, bool haveShownWelcome, std::int32_t miniWheelSize,
                                   std::int32_t largeWheelSize, double largeWheelOpacityFactor,
                                   double miniWheelOpacityFactor, bool showHudMessages, bool showTooltips,
                                   bool showToolCursorText, bool invertVerticalAxis, double speedFactor,
                                   bool incrementalZoom, bool preserveSceneUp, bool selectionSensitivity,
                                   bool flyPlanarMotion);
    void TrackSteerWheelWelcomeClicked(const std::wstring& welcomePart);

    // View cube. The methods call it Dorvel. Opacity, angle and duration are in the host's own units.
    void TrackDorvelClicked(const std::wstring& part);
    void TrackDorvelDragBegin(const std::wstring& part);
    void TrackDorvelLoadOption(const std::wstring& size, const std::wstring& screenLocation, float minimumOpacity,
                               bool visible, bool drawUcsMenu, bool drawCompass, bool dragSnap, float compassAngle,
                               float transitionDuration, bool zoomToFitScene, bool preserveSceneUp, bool orientToUcs);

    // Licence-mode settings. The three numbers count jobs.
    void TrackPPR(const std::wstring& licenseMode, bool showUseLicense, bool showUsePpr, bool showCustomInfo,
                  bool shouldMonetize, std::uint64_t meridorJobLimit, std::uint64_t concurrentMeridorJobs,
                  std::uint64_t concurrentHaldenJobs);

    // Commands and user events. The numbers are the host's own; a user event carries the caller's name and type.
    void TrackCommandInvoked(const std::wstring& commandName, std::int64_t commandContext, std::uint64_t resourceId,
                             const std::wstring& resourceModule, const std::wstring& resourceCategory,
                             const std::wstring& commandDescription);
    void TrackUserEvent(const std::wstring& componentName, const std::wstring& componentType, std::uint64_t resourceId,
                        const std::wstring& resourceModule, const std::wstring& resourceCategory,
                        const std::wstring& commandDescription);

    // File input. A file was opened, added or imported. `contentSize` is sent as an integer; may be negative. The other
    // numbers are counts.
    void TrackFileInput(const std::wstring& fileAddOrImport, bool importSucceeded, const std::wstring& meshType,
                        const std::wstring& fileExtension, std::int32_t contentSize, bool isNetworkPath,
                        std::int32_t num2dObjects, std::int32_t num3dObjects, std::int32_t numAnnotationObjects,
                        std::int32_t numUnknownObjects, std::int32_t numDistinctXrefs, std::int32_t numXrefInstances,
                        std::int32_t numDistinctImageRefs, std::int32_t numImageRefInstances,
                        const std::wstring& prevOpenProductLine, const std::wstring& prevOpenProductRelease,
                        const std::wstring& prevOpenProductLicenseFeatureName);

    // Entitlement. The host product's details changed. `expiryDays` is in days, and may be negative; `licenseBehavior`
    // and `entitlementUsage` are the host's codes. `productKey` is the caller's, and need not be that of
    // GetProductKey().
    void TrackUpdateLicense(const std::wstring& productKey, const std::wstring& featureName,
                            const std::wstring& featureVersion, const std::wstring& serialNumber,
                            std::int32_t licenseBehavior, std::int32_t entitlementUsage, std::int32_t expiryDays);

    // Documents. Prepares the event of an open document; its edit timer runs from here. `size` is sent as a signed
    // 64-bit integer. `source` is the host's code for where the document came from. Replaces, and destroys, a document
    // already registered under `name`; documents stay registered until the process exits.
    void AddDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size, std::uint32_t source);

    // Documents. Sends the prepared event of the document again on each call; the timer keeps running, and what it adds
    // to the event is the library's. An unknown `name` does nothing.
    void StartTrackFileChange(const std::wstring& name);

private:
    friend class TaviDocument;

    CorvaneTavi() = default;
    ~CorvaneTavi() = default;

    // Gathers the attributes, then converts the name, then reports the waypoint.
    void TrackWaypoint(const std::wstring& name, std::initializer_list<Corvane::Attribute> attributes);

    // Prints the diagnostic line of `method` when the library refuses the event.
    void Send(const Veltrane::TaviDesktopSDK::Facet::Core& core, const char* method) const;

    std::string hostProduct; // empty: not started
    std::string productKey;
    std::map<std::wstring, std::shared_ptr<TaviDocument>> documents; // by name
};
