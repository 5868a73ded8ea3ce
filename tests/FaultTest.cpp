// The unmodified program against a library that fails in each of its functions: exact output and exit status.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CatalogueModel.h"
#include "Differences.h"
#include "Program.h"

using nlohmann::json;

namespace
{

const std::string NoticeOfInitialize = "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize\n";

// Printed if the event of this test is refused.
std::string NoticeOfRefusal(const CatalogueTest& test)
{
    std::string sender = test.isDocument ? "TaviDocument::TrackEvent" : "CorvaneTavi::TrackWaypoint";
    for (const char* const method : {"TrackCommandInvoked", "TrackFileInput", "TrackUpdateLicense", "TrackUserEvent"})
    {
        if (test.method == method)
            sender = "CorvaneTavi::" + test.method;
    }
    return sender + " TaviDesktopSDK::TrackEvent\n";
}

std::string UniformRun(const std::string& body, bool passed)
{
    return WholeRun([&body](const CatalogueTest&) { return body; }, passed);
}

json Always(const std::string& function, const json& answer)
{
    return {{function, {{"default", answer}}}};
}

// Returns the library's log.
std::vector<json> ExpectRun(const json& script, const std::string& output, int status)
{
    const ProgramCopy copy;
    const Outcome run = copy.Run(script.dump());
    EXPECT_PRED_FORMAT2(IsText, run.output, output) << script;
    EXPECT_EQ(run.errors, "") << script;
    EXPECT_EQ(run.status, status) << script;
    return copy.Calls();
}

std::size_t Count(const std::vector<json>& calls, const std::string& function)
{
    std::size_t count = 0;
    for (const json& call : calls)
        count += call["function"] == function ? 1 : 0;
    return count;
}

// The accesses to the wrapper: two before the tests, one a test, and four in the last, where two documents are added
// and the product key and the change follow.
std::size_t Accesses()
{
    return 2 + TheCatalogue().size() + 3;
}

} // namespace

TEST(Fault, NotOptedInEndsTheRunBeforeAnythingIsStarted)
{
    const std::string output = "Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi\n";
    EXPECT_EQ(ExpectRun(Always("IsOptedIn", {{"status", 4}}), output, 1).size(), 1U);
}

TEST(Fault, EveryOtherOptInAnswerLetsTheRunGoOn)
{
    for (const int answer : {0, 3, 5, -4})
        ExpectRun(Always("IsOptedIn", {{"status", answer}}), UniformRun("PASSED\n", true), 0);
}

TEST(Fault, TheLibraryIsCalledInOrderWithWhatTheProductFileSays)
{
    const std::vector<json> calls = ExpectRun(json::object(), UniformRun("PASSED\n", true), 0);
    const std::string key = "CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214";
    const json callback = {{"function", "SetTestingCallback"}, {"productKey", key}};
    const std::vector<json> start = {{{"function", "IsOptedIn"}, {"hasDetails", false}},
                                     {{"function", "Initialize"},
                                      {"product",
                                       {{"product_line_name", "CVSTUDIO"},
                                        {"product_release_id", "2027.0.F"},
                                        {"product_master_id", "CVSTUDIO_2027_0_EN"},
                                        {"product_build_id", "27.0.214"},
                                        {"product_id_provider", "upi1"}}}},
                                     {{"function", "SetHostProduct"}, {"hostProduct", "faulty-host-product"}},
                                     {{"function", "SetTestingFlags"},
                                      {"productKey", key},
                                      {"flags",
                                       {{"Testing_EnableCallback", true},
                                        {"Testing_EnableWhitelistDownload", true},
                                        {"Testing_EnableUpload", false}}}},
                                     callback};
    // The documents' callback is registered before the last event.
    ASSERT_EQ(calls.size(), start.size() + TheCatalogue().size() + 1);
    EXPECT_PRED_FORMAT2(IsJson, json(std::vector<json>(calls.begin(), calls.begin() + 5)), json(start));
    EXPECT_PRED_FORMAT2(IsJson, calls[calls.size() - 2], callback);
    for (const json& call : calls)
    {
        if (call["function"] != "TrackEvent")
            continue;
        EXPECT_EQ(call["hostProduct"], "faulty-host-product");
        EXPECT_TRUE(call["extra"].is_null());
    }
}

TEST(Fault, AFailedStartWithoutIdentifierIsTriedAndReportedAtEveryAccess)
{
    std::string expected = NoticeOfInitialize + NoticeOfInitialize;
    for (const CatalogueTest& test : TheCatalogue())
    {
        for (int i = 0; test.isDocument && i < 3; ++i)
            expected += NoticeOfInitialize;
        expected += "\n" + test.title + "\n" + NoticeOfInitialize + "PASSED\n";
    }
    const std::vector<json> calls =
        ExpectRun(Always("Initialize", {{"status", 3}, {"hostProduct", ""}}), expected + "\nAll tests passed\n", 0);
    EXPECT_EQ(Count(calls, "Initialize"), Accesses());
    EXPECT_EQ(Count(calls, "SetHostProduct"), Accesses());
    EXPECT_EQ(calls.back()["hostProduct"], "") << "events are sent under the empty identifier";
}

TEST(Fault, AFailedStartWithAnIdentifierIsReportedOnceAndCountsAsStarted)
{
    const std::vector<json> calls = ExpectRun(Always("Initialize", {{"status", 3}, {"hostProduct", "given"}}),
                                              NoticeOfInitialize + UniformRun("PASSED\n", true), 0);
    EXPECT_EQ(calls.back()["hostProduct"], "given");
}

TEST(Fault, AStartThatFailsOnceSucceedsAtTheNextAccess)
{
    const json script = {{"Initialize", {{"1", {{"status", 3}, {"hostProduct", ""}}}}}};
    EXPECT_EQ(Count(ExpectRun(script, NoticeOfInitialize + UniformRun("PASSED\n", true), 0), "Initialize"), 2U);
}

TEST(Fault, AStartWithoutFailureAndWithoutIdentifierIsTriedAgainSilently)
{
    const json script = Always("Initialize", {{"hostProduct", ""}});
    EXPECT_EQ(Count(ExpectRun(script, UniformRun("PASSED\n", true), 0), "Initialize"), Accesses());
}

TEST(Fault, ARefusalOfTestModeEndsTheRunWithTheLibrarysStatus)
{
    for (const int status : {1, 7, 255})
    {
        ExpectRun(Always("SetTestingFlags", {{"status", status}}), "Error occurred setting testing flags\n", status);
        ExpectRun(Always("SetTestingCallback", {{"status", status}}), "Error occurred setting testing callback\n",
                  status);
    }
}

TEST(Fault, NoStatusOfTheLibraryTurnsAFailureIntoSuccess)
{
    const ProgramCopy copy;
    for (const int status : {-1, 256, std::numeric_limits<int>::min()})
        EXPECT_NE(copy.Run(Always("SetTestingFlags", {{"status", status}}).dump()).status, 0) << status;
}

TEST(Fault, ARefusedSecondCallbackSkipsAndFailsTheLastTest)
{
    std::string expected = UniformRun("PASSED\n", false);
    const std::string lastTest = "\n" + TheCatalogue().back().title + "\nPASSED\n";
    expected.replace(expected.find(lastTest), lastTest.size(), "Error occurred setting testing flags\n");
    const std::vector<json> calls = ExpectRun({{"SetTestingCallback", {{"2", {{"status", 5}}}}}}, expected, 1);
    EXPECT_EQ(Count(calls, "TrackEvent"), TheCatalogue().size() - 1);
}

TEST(Fault, EveryRefusedEventIsReportedOnceByTheMethodThatSentIt)
{
    const auto judgedAndRefused = [](const CatalogueTest& test) { return "PASSED\n" + NoticeOfRefusal(test); };
    ExpectRun(Always("TrackEvent", {{"status", 1}, {"callbacks", 0}}), WholeRun(NoticeOfRefusal, false), 1);
    ExpectRun(Always("TrackEvent", {{"status", -1}}), WholeRun(judgedAndRefused, true), 0);
}

TEST(Fault, AnEventThatDoesNotComeBackFailsItsTestAlone)
{
    for (const std::size_t number : {std::size_t{1}, std::size_t{12}, TheCatalogue().size()})
    {
        const json script = {{"TrackEvent", {{std::to_string(number), {{"status", 9}, {"callbacks", 0}}}}}};
        const auto body = [number](const CatalogueTest& test)
        { return &test == &TheCatalogue()[number - 1] ? NoticeOfRefusal(test) : "PASSED\n"; };
        ExpectRun(script, WholeRun(body, false), 1);
    }
    ExpectRun(Always("TrackEvent", {{"callbacks", 0}}), UniformRun("", false), 1);
}

// The library ends the process between the last two tests, first behind a verdict and then behind a diagnostic line.
TEST(Fault, AllThatIsPrintedArrivesIfTheLibraryEndsTheProcess)
{
    const std::size_t number = TheCatalogue().size() - 1; // of the last event before
    const std::string whole = UniformRun("PASSED\n", true);
    const std::string printed = whole.substr(0, whole.find("\n" + TheCatalogue().back().title + "\n"));
    json script = {{"SetTestingCallback", {{"2", {{"prints", ""}}}}}};
    ExpectRun(script, printed, 9);
    script["TrackEvent"][std::to_string(number)]["status"] = 1;
    ExpectRun(script, printed + NoticeOfRefusal(TheCatalogue()[number - 1]), 9);
}

TEST(Fault, APayloadThatComesBackTwiceIsJudgedTwice)
{
    ExpectRun(Always("TrackEvent", {{"callbacks", 2}}), UniformRun("PASSED\nPASSED\n", true), 0);
}

TEST(Fault, ANullOrEmptyPayloadIsJudgedAndFails)
{
    for (const json& payload : {json(), json::object()})
    {
        const auto body = [&payload](const CatalogueTest& test) { return ExpectedJudgement(test, payload); };
        ExpectRun(Always("TrackEvent", {{"payload", payload}}), WholeRun(body, false), 1);
    }
}
