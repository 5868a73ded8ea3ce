// The measured reporting methods once more, with payloads that an `Engine` makes, by another JSON library for example.
// Signatures and payloads are the wrapper's; a self-check compares the payloads. What an engine provides:
//
//     Engine::Payload            one event's payload, begun with the product's description; Add(key, text),
//                                Add(key, integer), and AddObject(key, fill), which calls fill(object) once
//     Send(Payload&&)            finishes the payload and hands it to the callback
//     Engine::Prepared           a document's payload, kept until it is sent; made by Prepare(Payload&&)
//     SendPrepared(prepared, milliseconds)
//
// Keys are narrow constants, as in a program without the wrapper; texts are converted by PlainText and copied.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "PlainText.h"

struct ProductDescription
{
    std::string line;
    std::string release;
    std::string master;
    std::string build;
    std::string provider;
};

template <typename Engine>
class Comparison
{
public:
    // The engine must outlive this object.
    explicit Comparison(const Engine& target) : engine(target) {}

    void Track3DCKeyPressed(const std::wstring& key)
    {
        SendWaypoint("COMMON.ZEPH_3DC_KEY_PRESSED",
                     [&](auto& attributes) { attributes.Add("COMMON.ZEPH_3DC_KEY", PlainText(key)); });
    }

    void TrackMaterialSelection(const std::wstring& file, const std::wstring& type, std::uint64_t materialId,
                                const std::wstring& manufacturer, const std::wstring& tradeName,
                                const std::wstring& familyName, const std::wstring& genericClass)
    {
        SendWaypoint("CV.UI.MATERIAL_SELECTION",
                     [&](auto& attributes)
                     {
                         attributes.Add("CV.MATERIAL_SELECTION_FILE", PlainText(file));
                         attributes.Add("CV.MATERIAL_SELECTION_TYPE", PlainText(type));
                         attributes.Add("CV.MATERIAL_ID", PlainText(materialId));
                         attributes.Add("CV.MATERIAL_MANUFACTURER", PlainText(manufacturer));
                         attributes.Add("CV.MATERIAL_TRADE_NAME", PlainText(tradeName));
                         attributes.Add("CV.MATERIAL_FAMILY_NAME", PlainText(familyName));
                         attributes.Add("CV.MATERIAL_GENERIC_CLASS", PlainText(genericClass));
                     });
    }

    void TrackSteerWheelLoadOption(bool alwaysShowWelcome, bool haveShownWelcome, std::int32_t miniWheelSize,
                                   std::int32_t largeWheelSize, double largeWheelOpacityFactor,
                                   double miniWheelOpacityFactor, bool showHudMessages, bool showTooltips,
                                   bool showToolCursorText, bool invertVerticalAxis, double speedFactor,
                                   bool incrementalZoom, bool preserveSceneUp, bool selectionSensitivity,
                                   bool flyPlanarMotion)
    {
        SendWaypoint(
            "COMMON.ZEPH_SW_LOAD_OPTS",
            [&](auto& attributes)
            {
                attributes.Add("COMMON.ZEPH_SW_OPTS_ALWAYSSHOWWELCOME", PlainText(alwaysShowWelcome));
                attributes.Add("COMMON.ZEPH_SW_OPTS_HAVESHOWNWELCOME", PlainText(haveShownWelcome));
                attributes.Add("COMMON.ZEPH_SW_OPTS_MINIWHEELSIZE", PlainText(miniWheelSize));
                attributes.Add("COMMON.ZEPH_SW_OPTS_LARGEWHEELSIZE", PlainText(largeWheelSize));
                attributes.Add("COMMON.ZEPH_SW_OPTS_LARGEWHEELOPACITYFACTOR", PlainText(largeWheelOpacityFactor));
                attributes.Add("COMMON.ZEPH_SW_OPTS_MINIWHEELOPACITYFACTOR", PlainText(miniWheelOpacityFactor));
                attributes.Add("COMMON.ZEPH_SW_OPTS_SHOWHUDMESSAGES", PlainText(showHudMessages));
                attributes.Add("COMMON.ZEPH_SW_OPTS_SHOWTOOLTIPS", PlainText(showTooltips));
                attributes.Add("COMMON.ZEPH_SW_OPTS_SHOWTOOLCURSORTEXT", PlainText(showToolCursorText));
                attributes.Add("COMMON.ZEPH_SW_OPTS_INVERTVERTICALAXIS", PlainText(invertVerticalAxis));
                attributes.Add("COMMON.ZEPH_SW_OPTS_SPEEDFACTOR", PlainText(speedFactor));
                attributes.Add("COMMON.ZEPH_SW_OPTS_INCREMENTALZOOM", PlainText(incrementalZoom));
                attributes.Add("COMMON.ZEPH_SW_OPTS_PRESERVESCENEUP", PlainText(preserveSceneUp));
                attributes.Add("COMMON.ZEPH_SW_OPTS_SELECTIONSENSITIVITY", PlainText(selectionSensitivity));
                attributes.Add("COMMON.ZEPH_SW_OPTS_FLYPLANARMOTION", PlainText(flyPlanarMotion));
            });
    }

    void TrackFileInput(const std::wstring& fileAddOrImport, bool importSucceeded, const std::wstring& meshType,
                        const std::wstring& fileExtension, std::int32_t contentSize, bool isNetworkPath,
                        std::int32_t num2dObjects, std::int32_t num3dObjects, std::int32_t numAnnotationObjects,
                        std::int32_t numUnknownObjects, std::int32_t numDistinctXrefs, std::int32_t numXrefInstances,
                        std::int32_t numDistinctImageRefs, std::int32_t numImageRefInstances,
                        const std::wstring& prevOpenProductLine, const std::wstring& prevOpenProductRelease,
                        const std::wstring& prevOpenProductLicenseFeatureName)
    {
        typename Engine::Payload payload(engine);
        payload.Add("type", "D");
        payload.Add("scope", "S");
        payload.Add("content_type", PlainText(fileExtension));
        payload.Add("content_size", std::int64_t{contentSize});
        payload.AddObject("content_meta",
                          [&](auto& meta)
                          {
                              meta.Add("CV.FILE_INPUT.IS_ADD_OR_IMPORT", PlainText(fileAddOrImport));
                              meta.Add("CV.FILE_IMPORT_SUCCESS", PlainText(importSucceeded));
                              meta.Add("CV.FILE_IMPORT_MESHTYPE", PlainText(meshType));
                              meta.Add("COMMON.FILE_INPUT.IS_NETWORK_PATH", PlainText(isNetworkPath));
                              meta.Add("COMMON.FILE_INPUT.NUM_2D_OBJECTS", PlainText(num2dObjects));
                              meta.Add("COMMON.FILE_INPUT.NUM_3D_OBJECTS", PlainText(num3dObjects));
                              meta.Add("COMMON.FILE_INPUT.NUM_ANNOTATION_OBJECTS", PlainText(numAnnotationObjects));
                              meta.Add("COMMON.FILE_INPUT.NUM_UNKNOWN_OBJECTS", PlainText(numUnknownObjects));
                              meta.Add("COMMON.FILE_INPUT.NUM_DISTINCT_XREFS", PlainText(numDistinctXrefs));
                              meta.Add("COMMON.FILE_INPUT.NUM_XREF_INSTANCES", PlainText(numXrefInstances));
                              meta.Add("COMMON.FILE_INPUT.NUM_DISTINCT_IMAGE_REFS", PlainText(numDistinctImageRefs));
                              meta.Add("COMMON.FILE_INPUT.NUM_IMAGE_REF_INSTANCES", PlainText(numImageRefInstances));
                              meta.Add("COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LINE", PlainText(prevOpenProductLine));
                              meta.Add("COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_RELEASE",
                                       PlainText(prevOpenProductRelease));
                              meta.Add("COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LICENSE_FN",
                                       PlainText(prevOpenProductLicenseFeatureName));
                          });
        engine.Send(std::move(payload));
    }

    void TrackUpdateLicense(const std::wstring& licensedProductKey, const std::wstring& featureName,
                            const std::wstring& featureVersion, const std::wstring& serialNumber,
                            std::int32_t licenseBehavior, std::int32_t entitlementUsage, std::int32_t expiryDays)
    {
        typename Engine::Payload payload(engine);
        payload.Add("type", "S");
        payload.Add("scope", "D");
        payload.Add("entitlement_usage", PlainText(entitlementUsage));
        payload.Add("entitlement_license_id", PlainText(serialNumber));
        payload.AddObject("entitlement_properties",
                          [&](auto& properties)
                          {
                              properties.Add("CV.FEATURE_VERSION", PlainText(featureVersion));
                              properties.Add("CV.LICENSE_BEHAVIOR", PlainText(licenseBehavior));
                              properties.Add("CV.EXPIRY_DAYS", PlainText(expiryDays));
                          });
        payload.Add("product_key", PlainText(licensedProductKey));
        payload.Add("product_suite_name", PlainText(featureName));
        engine.Send(std::move(payload));
    }

    void AddDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size, std::uint32_t source)
    {
        typename Engine::Payload payload(engine);
        payload.Add("type", "D");
        payload.Add("scope", "S");
        payload.Add("content_name", PlainText(name));
        payload.Add("content_type", PlainText(extension));
        payload.Add("content_root", PlainText(source));
        payload.Add("content_size", static_cast<std::int64_t>(size));
        payload.AddObject("content_meta",
                          [&](auto& meta)
                          {
                              meta.Add("COMMON.FILE.NAME", PlainText(name));
                              meta.Add("COMMON.FILE.TYPE", PlainText(extension));
                              meta.Add("COMMON.FILE.SIZE", PlainText(size));
                              meta.Add("COMMON.FILE.SOURCE", PlainText(source));
                          });
        documents.insert_or_assign(name, Document{engine.Prepare(std::move(payload)), Clock::now()});
    }

    void StartTrackFileChange(const std::wstring& name)
    {
        const auto document = documents.find(name);
        if (document == documents.end())
            return;
        const auto edited =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - document->second.start);
        engine.SendPrepared(document->second.prepared, edited.count());
    }

private:
    using Clock = std::chrono::steady_clock;

    struct Document
    {
        typename Engine::Prepared prepared;
        Clock::time_point start;
    };

    template <typename Fill>
    void SendWaypoint(std::string_view name, const Fill& fill)
    {
        typename Engine::Payload payload(engine);
        payload.Add("type", "C");
        payload.Add("scope", "C");
        payload.Add("component_type", "waypoint");
        payload.Add("component_name", name);
        payload.AddObject("component_attributes", fill);
        engine.Send(std::move(payload));
    }

    const Engine& engine;
    std::map<std::wstring, Document> documents; // by name
};
