// The wrapper on any library: texts that the library may take for none cost no other attribute, and no payload holds a
// null.
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

#include "Values.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

// What the library hands over for one report.
template <typename Report>
JsonValue PayloadOf(const Report& report)
{
    const Corvane::PayloadRecorder recorder;
    EXPECT_EQ(recorder.Refusal(), "");
    report(CorvaneTavi::Instance());
    EXPECT_EQ(recorder.JsonText(0).find('\n'), std::string::npos) << "a payload is not one line";
    return recorder.Payloads().front();
}

bool EmptyIsText()
{
    return Differ(String(""), JsonValue());
}

void ExpectNoNullIn(const JsonValue& value, const std::string& place)
{
    EXPECT_TRUE(Differ(value, JsonValue())) << place << " is null.";
    const JsonValue keys = value.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const TaviString key = keys[i].operator TaviString();
        ExpectNoNullIn(value[key], place + "/" + Narrow(key));
    }
}

// `full` are members with text, `empty` the keys of those without. These are there as "" where the library takes that
// for text, and nowhere else.
void ExpectMembers(const JsonValue& object, const Members& full, const std::vector<const char*>& empty)
{
    for (const auto& [key, value] : full)
        EXPECT_TRUE(AreEqual(Member(object, key), value)) << key;
    for (const char* const key : empty)
        EXPECT_TRUE(AreEqual(Member(object, key), EmptyIsText() ? String("") : JsonValue())) << key;
    EXPECT_EQ(object.GetCount(), static_cast<int>(full.size() + (EmptyIsText() ? empty.size() : 0))) << Json(object);
}

} // namespace

TEST(Wrapper, AnEmptyTextCostsNoOtherAttribute)
{
    const JsonValue payload =
        PayloadOf([](CorvaneTavi& tavi)
                  { tavi.TrackMaterialSelection(L"", L"fileType", 300, L"", L"tradeName", L"", L"familyAbbre"); });
    ExpectNoNullIn(payload, "payload");
    ExpectMembers(Member(payload, "component_attributes"),
                  {{"CV.MATERIAL_SELECTION_TYPE", String("fileType")},
                   {"CV.MATERIAL_ID", String("300")},
                   {"CV.MATERIAL_TRADE_NAME", String("tradeName")},
                   {"CV.MATERIAL_GENERIC_CLASS", String("familyAbbre")}},
                  {"CV.MATERIAL_SELECTION_FILE", "CV.MATERIAL_MANUFACTURER", "CV.MATERIAL_FAMILY_NAME"});
}

TEST(Wrapper, AnEventWhoseTextsAreAllEmptyIsSentWithoutNull)
{
    const JsonValue payload = PayloadOf([](CorvaneTavi& tavi) { tavi.Track3DCKeyPressed(L""); });
    ExpectNoNullIn(payload, "payload");
    EXPECT_TRUE(AreEqual(Member(payload, "component_name"), String("COMMON.ZEPH_3DC_KEY_PRESSED")));
    ExpectMembers(Member(payload, "component_attributes"), {}, {"COMMON.ZEPH_3DC_KEY"});
}

TEST(Wrapper, AUserEventWithoutNameAndTypeKeepsItsAttributes)
{
    const JsonValue payload =
        PayloadOf([](CorvaneTavi& tavi) { tavi.TrackUserEvent(L"", L"", 20, L"", L"resourceCategory", L""); });
    ExpectNoNullIn(payload, "payload");
    ExpectMembers(Member(payload, "component_attributes"),
                  {{"CV.COMMAND_FIRED_RESOURCE_ID", String("20")},
                   {"CV.COMMAND_FIRED_RESOURCE_CATEGORY", String("resourceCategory")}},
                  {"CV.COMMAND_FIRED_RESOURCE_MODULE", "CV.COMMAND_FIRED_COMMAND_DESCRIPTION"});
}

TEST(Wrapper, AnEntitlementWithoutVersionKeepsItsNumbers)
{
    const JsonValue payload =
        PayloadOf([](CorvaneTavi& tavi) { tavi.TrackUpdateLicense(L"", L"featureName", L"", L"", 13, 14, 15); });
    ExpectNoNullIn(payload, "payload");
    EXPECT_TRUE(AreEqual(Member(payload, "product_suite_name"), String("featureName")));
    EXPECT_TRUE(AreEqual(Member(payload, "entitlement_usage"), String("14")));
    ExpectMembers(Member(payload, "entitlement_properties"),
                  {{"CV.LICENSE_BEHAVIOR", String("13")}, {"CV.EXPIRY_DAYS", String("15")}}, {"CV.FEATURE_VERSION"});
}

TEST(Wrapper, ADocumentWithoutNameAndExtensionIsSentWithTheRest)
{
    const JsonValue payload = PayloadOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"", L"", 12, 13);
            tavi.StartTrackFileChange(L"");
        });
    ExpectNoNullIn(payload, "payload");
    EXPECT_TRUE(AreEqual(Member(payload, "content_root"), String("13")));
    EXPECT_TRUE(AreEqual(Member(payload, "content_size"), JsonValue(12LL)));
    ExpectMembers(Member(payload, "content_meta"),
                  {{"COMMON.FILE.SIZE", String("12")}, {"COMMON.FILE.SOURCE", String("13")}},
                  {"COMMON.FILE.NAME", "COMMON.FILE.TYPE"});
}

TEST(Wrapper, TheSameReportTwiceMakesTheSamePayload)
{
    const std::vector<NavBarToolState> tools = {{L"tool1", false}, {L"tool2", true}};
    const auto report = [&tools](CorvaneTavi& tavi) { tavi.TrackNavBarStartup(true, false, L"top", false, tools); };
    const JsonValue first = PayloadOf(report);
    ExpectMembers(Member(first, "component_attributes"),
                  {{"COMMON.ZEPH_NB_MORE_CONTROLS_VISIBLE", String("True")},
                   {"COMMON.ZEPH_NB_LINKED_TO_DORVEL", String("False")},
                   {"COMMON.ZEPH_NB_POSITION", String("top")},
                   {"COMMON.ZEPH_NB_RIBBON_VISIBLE", String("False")},
                   {"COMMON.ZEPH_NB_TOOL_NAME", String("tool2")},
                   {"COMMON.ZEPH_NB_TOOL_HIDDEN", String("True")},
                   {"COMMON.ZEPH_NB_TOOL_COUNT", String("2")}},
                  {});
    EXPECT_TRUE(AreEqual(PayloadOf(report), first));
}
