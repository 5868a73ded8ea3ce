// Every wrong payload that the rules say must be caught: the program's judge prints of each what the rules say, worked
// out independently.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <harness/Verification.h>

#include "CatalogueModel.h"
#include "Differences.h"
#include "JsonConversion.h"
#include "Mutants.h"
#include "OutputCapture.h"

using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

// Empty if the judge does right.
std::string Fault(const Mutant& mutant)
{
    const CatalogueTest& test = TheCatalogue()[mutant.test];
    const JsonValue payload = ValueOf(mutant.payload);
    TestResultList results{{ValueOf(test.expected), !mutant.mustPass}};
    JsonValue reply;
    const OutputCapture capture;
    if (test.isDocument)
        VerifyFileInputPayload(payload, &results.back(), reply);
    else
        VerifyPayloadCallback(payload, &results, reply);
    if (results.back().passed != mutant.mustPass)
        return mutant.mustPass ? "fails and must pass" : "passes and must fail";
    return TextDifference(ExpectedJudgement(test, mutant.payload), capture.Text());
}

} // namespace

TEST(Mutant, EveryMutantIsJudgedAsTheRulesSay)
{
    std::vector<std::string> faults;
    std::vector<std::array<std::size_t, 2>> counts(TheCatalogue().size()); // those that must fail, and must pass
    for (const Mutant& mutant : Mutants())
    {
        ++counts[mutant.test][mutant.mustPass ? 1 : 0];
        const std::string fault = Fault(mutant);
        if (!fault.empty())
            faults.push_back(TheCatalogue()[mutant.test].title + ": " + mutant.what + ": " + fault);
    }
    if (!faults.empty())
        ADD_FAILURE() << FirstFew(faults);
    for (const auto& [failing, passing] : counts)
        EXPECT_TRUE(failing > 0 && passing > 0) << "a test has mutants of one kind only";
}
