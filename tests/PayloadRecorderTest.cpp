// A recorder that the library refuses is tested with the example host, and one without memory in tests/start/.
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/Vocabulary.h>

#include "Text.h"

using namespace Corvane;
using namespace Corvane::Vocabulary;
using Veltrane::TaviDesktopSDK::JsonValue;
namespace Sdk = Veltrane::TaviDesktopSDK;

TEST(PayloadRecorder, CountsEventsByNameAndThoseWithoutOneByAKey)
{
    const PayloadRecorder recorder;
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    tavi.TrackMeshSize(1, 2);
    tavi.TrackUpdateLicense(L"key", L"feature", L"version", L"serial", 1, 2, 3);
    tavi.TrackMeshSize(3, 4);
    tavi.AddDocument(L"counted", L"ext", 1, 2);
    tavi.StartTrackFileChange(L"counted");

    EXPECT_EQ(recorder.CountOf(CV_MESH_SIZE_COUNT), 2U);
    EXPECT_EQ(recorder.CountOf(CV_EXPIRY_DAYS), 1U);
    EXPECT_EQ(recorder.CountOf(COMMON_FILE_NAME), 1U);
    EXPECT_EQ(recorder.CountOf(CV_MESH_SIZE_NODES), 0U) << "the key of an event that has a name";
    EXPECT_EQ(recorder.CountOf(CV_REPORT), 0U);
}

TEST(PayloadRecorder, WritesEachPayloadAsALineOfUtf8InTheOrderSent)
{
    const PayloadRecorder recorder;
    EXPECT_EQ(recorder.Refusal(), "");
    CorvaneTavi::Instance().TrackReport(L"Geh\u00E4use\r\nsecond line", L"pptx", 1, 1);
    CorvaneTavi::Instance().TrackMeshSize(1, 2);

    EXPECT_NE(recorder.JsonText(0).find("Geh\xC3\xA4use\\r\\nsecond line"), std::string::npos);
    EXPECT_EQ(recorder.JsonText(1), Json(recorder.Payloads()[1]));
    EXPECT_THROW(recorder.JsonText(2), std::out_of_range);
    std::ostringstream lines;
    recorder.WriteLines(lines);
    EXPECT_EQ(lines.str(), recorder.JsonText(0) + "\n" + recorder.JsonText(1) + "\n");
    EXPECT_FALSE(recorder.HasLostAny());
}

// An event that reached the ended recorder would use freed memory.
TEST(PayloadRecorder, AfterItsEndEventsReachNobodyInTestMode)
{
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    auto ended = std::make_unique<PayloadRecorder>();
    ended.reset();
    tavi.TrackMeshSize(1, 2);

    int count = 0;
    const auto countOne = [](const JsonValue&, void* context, JsonValue&) { return ++*static_cast<int*>(context); };
    ASSERT_EQ(Sdk::SetTestingCallback(Key(tavi.GetProductKey().c_str()), countOne, &count), 0);
    tavi.TrackMeshSize(3, 4);
    EXPECT_EQ(count, 1) << "the library has left its test mode";

    const PayloadRecorder takesTheCallbacksPlace;
    tavi.TrackMeshSize(5, 6);
    EXPECT_EQ(count, 1);
}
