#include <harness/Driver.h>

#include <gtest/gtest.h>

#include "OutputCapture.h"

using namespace Corvane;

namespace
{

TestResultList Results(std::initializer_list<bool> verdicts)
{
    TestResultList results;
    for (const bool passed : verdicts)
        results.push_back({{}, passed});
    return results;
}

} // namespace

TEST(Driver, AllPassedGivesZeroAfterAnEmptyLine)
{
    const OutputCapture capture;
    EXPECT_EQ(PrintSummary(Results({true, true})), 0);
    EXPECT_EQ(capture.Text(), "\nAll tests passed\n");
}

TEST(Driver, AnEmptyListCountsAsPassed)
{
    const OutputCapture capture;
    EXPECT_EQ(PrintSummary({}), 0);
    EXPECT_EQ(capture.Text(), "\nAll tests passed\n");
}

TEST(Driver, OneFailureAnywhereGivesOneAfterAnEmptyLine)
{
    for (const auto& results :
         {Results({false, true, true}), Results({true, false, true}), Results({true, true, false})})
    {
        const OutputCapture capture;
        EXPECT_EQ(PrintSummary(results), 1);
        EXPECT_EQ(capture.Text(), "\nErrors occured during testing\n");
    }
}
