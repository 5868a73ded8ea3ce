#include <check/ReportingMethods.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <vector>

using namespace Corvane;
using nlohmann::json;

// Otherwise a payload with two values swapped, or with one that never changes, would be right.
TEST(ReportingMethods, ArgumentsDifferAsFarAsTheyCanAndEachFurtherCallChangesOne)
{
    for (const ReportingMethod& method : ReportingMethods())
    {
        const std::vector<ProbingCall> calls = ProbingCalls(method);
        const std::vector<json>& first = calls.front().arguments;
        const auto flags = std::count_if(first.begin(), first.end(), [](const json& one) { return one.is_boolean(); });
        const std::size_t alike = flags > 2 ? static_cast<std::size_t>(flags) - 2 : 0;
        EXPECT_EQ(std::set<json>(first.begin(), first.end()).size(), first.size() - alike) << method.name;
        std::set<std::size_t> changed;
        for (const ProbingCall& call : calls)
        {
            for (std::size_t i = 0; i < first.size(); ++i)
                EXPECT_EQ(call.arguments[i] != first[i], call.parameter == i) << CallText(method, call);
            if (call.parameter)
                changed.insert(*call.parameter);
        }
        EXPECT_EQ(changed.size(), first.size()) << method.name;
    }
}
