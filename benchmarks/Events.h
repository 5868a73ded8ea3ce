// The measured events, with the arguments of the catalogue, which are made before the call: a small, a middle and a
// large waypoint, and the events whose payload has another shape. A Reporter is the wrapper or any class with the same
// methods.
#pragma once

#include <array>
#include <string>

namespace EventText
{

inline const std::wstring keyName = L"keyName";
inline const std::wstring fileName = L"fileName";
inline const std::wstring fileType = L"fileType";
inline const std::wstring manufacturer = L"manufacturer";
inline const std::wstring tradeName = L"tradeName";
inline const std::wstring familyName = L"familyName";
inline const std::wstring familyAbbre = L"familyAbbre";
inline const std::wstring fileAddOrImport = L"fileAddOrImport";
inline const std::wstring meshType = L"meshType";
inline const std::wstring fileExtension = L"fileExtension";
inline const std::wstring prevOpenProductLine = L"prevOpenProductLine";
inline const std::wstring prevOpenProductRelease = L"prevOpenProductRelease";
inline const std::wstring prevOpenProductLicenseFeatureName = L"prevOpenProductLicenseFeatureName";
inline const std::wstring productKey = L"productKey";
inline const std::wstring featureName = L"featureName";
inline const std::wstring featureVersion = L"featureVersion";
inline const std::wstring serialNumber = L"serialNumber";
inline const std::wstring document = L"fileName1";
inline const std::wstring documentType = L"fileExtension1";

} // namespace EventText

template <typename Reporter>
struct Event
{
    const char* name;
    void (*report)(Reporter& reporter);
};

template <typename Reporter>
inline constexpr std::array<Event<Reporter>, 6> Events = {{
    {"Track3DCKeyPressed", [](Reporter& reporter) { reporter.Track3DCKeyPressed(EventText::keyName); }},
    {"TrackMaterialSelection",
     [](Reporter& reporter)
     {
         reporter.TrackMaterialSelection(EventText::fileName, EventText::fileType, 300, EventText::manufacturer,
                                         EventText::tradeName, EventText::familyName, EventText::familyAbbre);
     }},
    {"TrackSteerWheelLoadOption",
     [](Reporter& reporter)
     {
         reporter.TrackSteerWheelLoadOption(false, true, 4000, 9001, 0.45, 0.39, true, false, false, false, 1.12, true,
                                            false, false, true);
     }},
    {"TrackFileInput",
     [](Reporter& reporter)
     {
         reporter.TrackFileInput(EventText::fileAddOrImport, true, EventText::meshType, EventText::fileExtension, 4042,
                                 false, 2, 3, 4, 5, 6, 7, 8, 9, EventText::prevOpenProductLine,
                                 EventText::prevOpenProductRelease, EventText::prevOpenProductLicenseFeatureName);
     }},
    {"TrackUpdateLicense",
     [](Reporter& reporter)
     {
         reporter.TrackUpdateLicense(EventText::productKey, EventText::featureName, EventText::featureVersion,
                                     EventText::serialNumber, 13, 14, 15);
     }},
    {"StartTrackFileChange", [](Reporter& reporter) { reporter.StartTrackFileChange(EventText::document); }},
}};

// Registers the document that StartTrackFileChange reports.
template <typename Reporter>
void AddDocument(Reporter& reporter)
{
    reporter.AddDocument(EventText::document, EventText::documentType, 12, 12);
}
