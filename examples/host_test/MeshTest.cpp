// A host application's own test of what it reports. It takes no product file: the product is "undefined" then.
#include <string>

#include <gtest/gtest.h>
#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/Vocabulary.h>

// The host's function, which would be in a source of its own.
void GenerateMesh()
{
    CorvaneTavi::Instance().TrackMeshSize(128'000, 64'500);
}

TEST(Mesh, IsReportedOnceWithItsSizes)
{
    const Corvane::PayloadRecorder recorder; // from here on nothing is uploaded
    ASSERT_EQ(recorder.Refusal(), "");
    GenerateMesh();
    ASSERT_EQ(recorder.CountOf(Corvane::Vocabulary::CV_MESH_SIZE_COUNT), 1U);
    EXPECT_NE(recorder.JsonText(0).find("\"64500\""), std::string::npos) << recorder.JsonText(0);
}
