// The wrapper's documents. That all their values are sent, and that one replaces another, the prober's calls prove.
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/TaviDocument.h>

#include "OutputCapture.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;

// Documents stay registered until the process exits: each test has its own names.

namespace
{

constexpr const char* Timer = "document_editing_length_ms";

std::vector<JsonValue> PayloadsOf(const std::function<void(CorvaneTavi&)>& calls)
{
    const Corvane::PayloadRecorder recorder;
    const OutputCapture output;
    calls(CorvaneTavi::Instance());
    EXPECT_EQ(output.Text(), "");
    return recorder.Payloads();
}

} // namespace

TEST(Document, SendsOnlyTheDocumentOfTheWholeNameAndOnlyWhenItsChangeStarts)
{
    using namespace std::string_literals;
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"null\0a"s, L"first", 1, 2);
            tavi.AddDocument(L"null\0b"s, L"second", 3, 4);
            for (const std::wstring& name : {L"unknown"s, L"Null\0a"s, L"null"s, L"null\0"s, L"null\0a "s, L"null\0a"s})
                tavi.StartTrackFileChange(name);
        });
    ASSERT_EQ(payloads.size(), 1U);
    EXPECT_EQ(Json(payloads.front()[Key("content_name")]), R"("null")");
    EXPECT_EQ(Json(payloads.front()[Key("content_type")]), R"("first")");
}

TEST(Document, SendsTheEventAgainOnEachStartAndTheTimerKeepsRunning)
{
    constexpr std::chrono::milliseconds Pause(20);
    std::vector<JsonValue> payloads = PayloadsOf(
        [&](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"started twice", L"ext", 1, 2);
            std::this_thread::sleep_for(Pause);
            tavi.StartTrackFileChange(L"started twice");
            std::this_thread::sleep_for(Pause);
            tavi.StartTrackFileChange(L"started twice");
        });
    ASSERT_EQ(payloads.size(), 2U);
    EXPECT_GE(static_cast<long long>(payloads[0][Key(Timer)]), Pause.count());
    EXPECT_GE(static_cast<long long>(payloads[1][Key(Timer)]), 2 * Pause.count());
    for (JsonValue& payload : payloads)
        EXPECT_TRUE(payload.RemoveKey(Key(Timer)));
    EXPECT_EQ(Json(payloads[0]), Json(payloads[1]));
}

TEST(Document, SendsNothingWithoutAnEvent)
{
    const TaviDocument document;
    EXPECT_TRUE(PayloadsOf([&](CorvaneTavi& tavi) { document.TrackEvent(tavi); }).empty());
}

// The callback may replace the document whose event it is shown: the event stays valid until the callback returns.
TEST(Document, CanBeReplacedWhileItsEventIsHandedOver)
{
    static const std::wstring name = L"replaced while handed over";
    JsonValue meta;
    const auto replaceAndCopy = [](const JsonValue& payload, void* context, JsonValue&)
    {
        CorvaneTavi::Instance().AddDocument(name, L"a longer extension", 2, 2);
        *static_cast<JsonValue*>(context) = payload[Key("content_meta")];
        return 0;
    };
    const Corvane::PayloadRecorder testMode;
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    tavi.AddDocument(name, L"first extension", 1, 1);
    Veltrane::TaviDesktopSDK::SetTestingCallback(Key(tavi.GetProductKey().c_str()), replaceAndCopy, &meta);
    tavi.StartTrackFileChange(name);
    EXPECT_EQ(Text(TextValue(meta[Key("COMMON.FILE.TYPE")])), "first extension");
    tavi.StartTrackFileChange(name);
    EXPECT_EQ(Text(TextValue(meta[Key("COMMON.FILE.TYPE")])), "a longer extension");
}
