#include <check/ReportingMethods.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

using namespace Corvane;
using nlohmann::json;

TEST(ReportingMethods, ArgumentsOfAFirstCallDifferAsFarAsTheyCan)
{
    for (const ReportingMethod& method : ReportingMethods())
    {
        std::set<json> different;
        std::size_t flags = 0;
        const std::vector<json> arguments = ProbingCalls(method).front().arguments;
        for (const json& argument : arguments)
        {
            different.insert(argument);
            flags += argument.is_boolean() ? 1 : 0;
        }
        const std::size_t alike = flags > 2 ? flags - 2 : 0;
        EXPECT_EQ(different.size(), arguments.size() - alike) << method.name;
    }
}

TEST(ReportingMethods, EachFurtherCallChangesOneParameterAndEachParameterIsChanged)
{
    for (const ReportingMethod& method : ReportingMethods())
    {
        const std::vector<ProbingCall> calls = ProbingCalls(method);
        std::set<std::size_t> changed;
        for (const ProbingCall& call : calls)
        {
            for (std::size_t i = 0; i < call.arguments.size(); ++i)
                EXPECT_EQ(call.arguments[i] != calls.front().arguments[i], call.parameter == i)
                    << CallText(method, call);
            if (call.parameter)
                changed.insert(*call.parameter);
        }
        EXPECT_EQ(changed.size(), calls.front().arguments.size()) << method.name;
    }
}
