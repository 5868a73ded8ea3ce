// The measured reporting methods once more, with the wrapper's parameters and payloads. A `Payload` has Add(key, text),
// Add(key, integer), AddObject(key, fill), which calls fill(object) once, and Finish(), which returns a `Finished`.
// Keys are narrow constants, as in a program without the wrapper.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "PlainText.h"

using ProductDescription = std::map<std::string, std::string>; // by key of the payload

template <typename Payload>
class Comparison
{
public:
    using Callback = void (*)(const typename Payload::Finished& payload);

    // Each payload begins with the product's description.
    Comparison(const ProductDescription& product, Callback target) : callback(target)
    {
        for (const auto& [key, text] : product)
            description.Add(key, text);
    }

    void Track3DCKeyPressed(const auto&... values)
    {
        SendWaypoint("COMMON.ZEPH_3DC_KEY_PRESSED", {"COMMON.ZEPH_3DC_KEY"}, values...);
    }

    void TrackMaterialSelection(const auto&... values)
    {
        SendWaypoint("CV.UI.MATERIAL_SELECTION",
                     {"CV.MATERIAL_SELECTION_FILE", "CV.MATERIAL_SELECTION_TYPE", "CV.MATERIAL_ID",
                      "CV.MATERIAL_MANUFACTURER", "CV.MATERIAL_TRADE_NAME", "CV.MATERIAL_FAMILY_NAME",
                      "CV.MATERIAL_GENERIC_CLASS"},
                     values...);
    }

    void TrackSteerWheelLoadOption(const auto&... values)
    {
        SendWaypoint("COMMON.ZEPH_SW_LOAD_OPTS",
                     {"COMMON.ZEPH_SW_OPTS_ALWAYSSHOWWELCOME", "COMMON.ZEPH_SW_OPTS_HAVESHOWNWELCOME",
                      "COMMON.ZEPH_SW_OPTS_MINIWHEELSIZE", "COMMON.ZEPH_SW_OPTS_LARGEWHEELSIZE",
                      "COMMON.ZEPH_SW_OPTS_LARGEWHEELOPACITYFACTOR", "COMMON.ZEPH_SW_OPTS_MINIWHEELOPACITYFACTOR",
                      "COMMON.ZEPH_SW_OPTS_SHOWHUDMESSAGES", "COMMON.ZEPH_SW_OPTS_SHOWTOOLTIPS",
                      "COMMON.ZEPH_SW_OPTS_SHOWTOOLCURSORTEXT", "COMMON.ZEPH_SW_OPTS_INVERTVERTICALAXIS",
                      "COMMON.ZEPH_SW_OPTS_SPEEDFACTOR", "COMMON.ZEPH_SW_OPTS_INCREMENTALZOOM",
                      "COMMON.ZEPH_SW_OPTS_PRESERVESCENEUP", "COMMON.ZEPH_SW_OPTS_SELECTIONSENSITIVITY",
                      "COMMON.ZEPH_SW_OPTS_FLYPLANARMOTION"},
                     values...);
    }

    void TrackFileInput(const std::wstring& fileAddOrImport, bool importSucceeded, const std::wstring& meshType,
                        const std::wstring& fileExtension, std::int64_t contentSize, const auto&... values)
    {
        Payload payload = Begin("D", "S");
        payload.Add("content_type", PlainText(fileExtension));
        payload.Add("content_size", contentSize);
        AddObject(payload, "content_meta",
                  {"CV.FILE_INPUT.IS_ADD_OR_IMPORT", "CV.FILE_IMPORT_SUCCESS", "CV.FILE_IMPORT_MESHTYPE",
                   "COMMON.FILE_INPUT.IS_NETWORK_PATH", "COMMON.FILE_INPUT.NUM_2D_OBJECTS",
                   "COMMON.FILE_INPUT.NUM_3D_OBJECTS", "COMMON.FILE_INPUT.NUM_ANNOTATION_OBJECTS",
                   "COMMON.FILE_INPUT.NUM_UNKNOWN_OBJECTS", "COMMON.FILE_INPUT.NUM_DISTINCT_XREFS",
                   "COMMON.FILE_INPUT.NUM_XREF_INSTANCES", "COMMON.FILE_INPUT.NUM_DISTINCT_IMAGE_REFS",
                   "COMMON.FILE_INPUT.NUM_IMAGE_REF_INSTANCES", "COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LINE",
                   "COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_RELEASE", "COMMON.FILE_INPUT.PREV_OPEN_PRODUCT_LICENSE_FN"},
                  fileAddOrImport, importSucceeded, meshType, values...);
        callback(payload.Finish());
    }

    void TrackUpdateLicense(const std::wstring& licensedProductKey, const std::wstring& featureName,
                            const std::wstring& featureVersion, const std::wstring& serialNumber,
                            std::int32_t licenseBehavior, std::int32_t entitlementUsage, std::int32_t expiryDays)
    {
        Payload payload = Begin("S", "D");
        payload.Add("entitlement_usage", PlainText(entitlementUsage));
        payload.Add("entitlement_license_id", PlainText(serialNumber));
        AddObject(payload, "entitlement_properties", {"CV.FEATURE_VERSION", "CV.LICENSE_BEHAVIOR", "CV.EXPIRY_DAYS"},
                  featureVersion, licenseBehavior, expiryDays);
        payload.Add("product_key", PlainText(licensedProductKey));
        payload.Add("product_suite_name", PlainText(featureName));
        callback(payload.Finish());
    }

    void AddDocument(const std::wstring& name, const std::wstring& extension, std::int64_t size, std::uint32_t source)
    {
        Payload payload = Begin("D", "S");
        payload.Add("content_name", PlainText(name));
        payload.Add("content_type", PlainText(extension));
        payload.Add("content_root", PlainText(source));
        payload.Add("content_size", size);
        AddObject(payload, "content_meta",
                  {"COMMON.FILE.NAME", "COMMON.FILE.TYPE", "COMMON.FILE.SIZE", "COMMON.FILE.SOURCE"}, name, extension,
                  size, source);
        documents.try_emplace(name, Document{payload, Clock::now()});
    }

    void StartTrackFileChange(const std::wstring& name)
    {
        const Document& document = documents.at(name);
        const auto edited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - document.start);
        Payload payload = document.payload;
        payload.Add("document_editing_length_ms", edited.count());
        callback(payload.Finish());
    }

private:
    using Clock = std::chrono::steady_clock;

    struct Document
    {
        Payload payload; // without the time since `start`
        Clock::time_point start;
    };

    Payload Begin(std::string_view type, std::string_view scope) const
    {
        Payload payload = description;
        payload.Add("type", type);
        payload.Add("scope", scope);
        return payload;
    }

    template <std::size_t Count, typename... Values>
    void AddObject(Payload& payload, std::string_view name, const std::string_view (&keys)[Count],
                   const Values&... values)
    {
        static_assert(Count == sizeof...(Values));
        payload.AddObject(name,
                          [&](auto& object)
                          {
                              const std::string_view* key = keys;
                              (object.Add(*key++, PlainText(values)), ...);
                          });
    }

    template <std::size_t Count>
    void SendWaypoint(std::string_view name, const std::string_view (&keys)[Count], const auto&... values)
    {
        Payload payload = Begin("C", "C");
        payload.Add("component_type", "waypoint");
        payload.Add("component_name", name);
        AddObject(payload, "component_attributes", keys, values...);
        callback(payload.Finish());
    }

    Payload description;
    Callback callback;
    std::map<std::wstring, Document> documents; // by name
};
