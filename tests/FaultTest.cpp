// The unmodified program against a library that fails in each of its functions: exact output and exit status.
#include <gtest/gtest.h>

#include <algorithm>
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

// The line that is printed when the event of this test is refused.
std::string NoticeOfRefusal(const CatalogueTest& test)
{
    std::string method = "CorvaneTavi::TrackWaypoint";
    for (const char* const name : {"CommandInvoked", "FileInput", "UpdateLicense", "UserEvent"})
    {
        if (test.title == std::string("Testing ") + name)
            method = std::string("CorvaneTavi::Track") + name;
    }
    if (test.isDocument)
        method = "TaviDocument::TrackEvent";
    return method + " TaviDesktopSDK::TrackEvent\n";
}

std::string UniformRun(const std::string& body, bool passed)
{
    return WholeRun([&body](const CatalogueTest&) { return body; }, passed);
}

struct LoggedRun
{
    Outcome run;
    std::vector<json> calls;

    std::vector<std::string> Functions() const
    {
        std::vector<std::string> functions;
        for (const json& call : calls)
            functions.push_back(call["function"]);
        return functions;
    }

    std::size_t Count(const std::string& function) const
    {
        const std::vector<std::string> functions = Functions();
        return static_cast<std::size_t>(std::count(functions.begin(), functions.end(), function));
    }
};

LoggedRun RunWith(const json& script)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    const Outcome run = copy.Run(script.dump());
    EXPECT_EQ(run.errors, "");
    return {run, copy.Calls()};
}

void ExpectRun(const json& script, const std::string& output, int status)
{
    const LoggedRun logged = RunWith(script);
    EXPECT_PRED_FORMAT2(IsText, logged.run.output, output) << script;
    EXPECT_EQ(logged.run.status, status) << script;
}

json Always(const json& answer)
{
    return {{"default", answer}};
}

} // namespace

TEST(Fault, NotOptedInEndsTheRunBeforeAnythingIsStarted)
{
    const LoggedRun logged = RunWith({{"IsOptedIn", Always({{"status", 4}})}});
    EXPECT_EQ(logged.run.output, "Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi\n");
    EXPECT_EQ(logged.run.status, 1);
    EXPECT_EQ(logged.Functions(), std::vector<std::string>{"IsOptedIn"});
}

TEST(Fault, EveryOtherOptInAnswerLetsTheRunGoOn)
{
    for (const int answer : {0, 1, 2, 3, 5, -1, -4})
        ExpectRun({{"IsOptedIn", Always({{"status", answer}})}}, UniformRun("PASSED\n", true), 0);
}

TEST(Fault, TheLibraryIsCalledInOrderWithWhatTheProductFileSays)
{
    const LoggedRun logged = RunWith(json::object());
    const std::string key = "CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214";
    // Five calls before the first event; the documents' callback is registered before the last.
    const std::size_t tests = TheCatalogue().size();
    ASSERT_EQ(logged.calls.size(), 5 + tests + 1);
    EXPECT_PRED_FORMAT2(IsJson, logged.calls[0], json({{"function", "IsOptedIn"}, {"hasDetails", false}}));
    EXPECT_PRED_FORMAT2(IsJson, logged.calls[1],
                        json({{"function", "Initialize"},
                              {"product",
                               {{"product_line_name", "CVSTUDIO"},
                                {"product_release_id", "2027.0.F"},
                                {"product_master_id", "CVSTUDIO_2027_0_EN"},
                                {"product_build_id", "27.0.214"},
                                {"product_id_provider", "upi1"}}}}));
    EXPECT_PRED_FORMAT2(IsJson, logged.calls[2],
                        json({{"function", "SetHostProduct"}, {"hostProduct", "faulty-host-product"}}));
    EXPECT_PRED_FORMAT2(IsJson, logged.calls[3],
                        json({{"function", "SetTestingFlags"},
                              {"productKey", key},
                              {"flags",
                               {{"Testing_EnableCallback", true},
                                {"Testing_EnableWhitelistDownload", true},
                                {"Testing_EnableUpload", false}}}}));
    EXPECT_PRED_FORMAT2(IsJson, logged.calls[4], json({{"function", "SetTestingCallback"}, {"productKey", key}}));
    EXPECT_PRED_FORMAT2(IsJson, logged.calls[5 + tests - 1], logged.calls[4]);
    for (const json& call : logged.calls)
    {
        if (call["function"] != "TrackEvent")
            continue;
        EXPECT_EQ(call["hostProduct"], "faulty-host-product");
        EXPECT_TRUE(call["extra"].is_null());
    }
}

TEST(Fault, AFailedStartWithoutIdentifierIsTriedAndReportedAtEveryAccess)
{
    // Two accesses before the tests, one a test, and four in the last: two documents, the product key, the change.
    const json script = {{"Initialize", Always({{"status", 3}, {"hostProduct", ""}})}};
    std::string expected = NoticeOfInitialize + NoticeOfInitialize;
    for (const CatalogueTest& test : TheCatalogue())
    {
        for (int i = 0; test.isDocument && i < 3; ++i)
            expected += NoticeOfInitialize;
        expected += "\n" + test.title + "\n" + NoticeOfInitialize + "PASSED\n";
    }
    ExpectRun(script, expected + "\nAll tests passed\n", 0);
    const LoggedRun logged = RunWith(script);
    const std::size_t accesses = 2 + TheCatalogue().size() + 3;
    EXPECT_EQ(logged.Count("Initialize"), accesses);
    EXPECT_EQ(logged.Count("SetHostProduct"), accesses);
    EXPECT_EQ(logged.Count("TrackEvent"), TheCatalogue().size()) << "events are sent under an empty identifier";
    EXPECT_EQ(logged.calls.back()["hostProduct"], "");
}

TEST(Fault, AFailedStartWithAnIdentifierIsReportedOnceAndCountsAsStarted)
{
    const json script = {{"Initialize", Always({{"status", 3}, {"hostProduct", "given all the same"}})}};
    ExpectRun(script, NoticeOfInitialize + UniformRun("PASSED\n", true), 0);
    EXPECT_EQ(RunWith(script).calls.back()["hostProduct"], "given all the same");
}

TEST(Fault, AStartThatFailsOnceSucceedsAtTheNextAccess)
{
    const json script = {{"Initialize", {{"1", {{"status", 3}, {"hostProduct", ""}}}}}};
    ExpectRun(script, NoticeOfInitialize + UniformRun("PASSED\n", true), 0);
    EXPECT_EQ(RunWith(script).Count("Initialize"), 2U);
}

TEST(Fault, AStartWithoutFailureAndWithoutIdentifierIsTriedAgainSilently)
{
    const json script = {{"Initialize", Always({{"hostProduct", ""}})}};
    ExpectRun(script, UniformRun("PASSED\n", true), 0);
    EXPECT_EQ(RunWith(script).Count("Initialize"), 2 + TheCatalogue().size() + 3);
}

TEST(Fault, TheResultOfSetHostProductIsIgnored)
{
    ExpectRun({{"SetHostProduct", Always({{"status", 1}})}}, UniformRun("PASSED\n", true), 0);
}

TEST(Fault, RefusedFlagsEndTheRunWithTheLibrarysStatus)
{
    for (const int status : {1, 7, 255})
        ExpectRun({{"SetTestingFlags", Always({{"status", status}})}}, "Error occurred setting testing flags\n",
                  status);
}

TEST(Fault, ARefusedCallbackEndsTheRunWithTheLibrarysStatus)
{
    for (const int status : {1, 5, 255})
        ExpectRun({{"SetTestingCallback", Always({{"status", status}})}}, "Error occurred setting testing callback\n",
                  status);
}

TEST(Fault, NoStatusOfTheLibraryTurnsAFailureIntoSuccess)
{
    for (const char* const function : {"SetTestingFlags", "SetTestingCallback"})
    {
        for (const int status : {-1, 256, 65'536, std::numeric_limits<int>::min()})
            EXPECT_NE(RunWith({{function, Always({{"status", status}})}}).run.status, 0) << function << ' ' << status;
    }
}

TEST(Fault, ARefusedSecondCallbackSkipsAndFailsTheLastTest)
{
    const json script = {{"SetTestingCallback", {{"2", {{"status", 5}}}}}};
    std::string expected = UniformRun("PASSED\n", false);
    const std::string lastTest = "\nTesting StartTrackFileChange\nPASSED\n";
    expected.replace(expected.find(lastTest), lastTest.size(), "Error occurred setting testing flags\n");
    ExpectRun(script, expected, 1);
    EXPECT_EQ(RunWith(script).Count("TrackEvent"), TheCatalogue().size() - 1);
}

TEST(Fault, EveryRefusedEventIsReportedOnceByTheMethodThatSentIt)
{
    const auto refused = NoticeOfRefusal;
    const auto judgedAndRefused = [](const CatalogueTest& test) { return "PASSED\n" + NoticeOfRefusal(test); };
    ExpectRun({{"TrackEvent", Always({{"status", 1}, {"callbacks", 0}})}}, WholeRun(refused, false), 1);
    ExpectRun({{"TrackEvent", Always({{"status", -1}})}}, WholeRun(judgedAndRefused, true), 0);
}

TEST(Fault, AnEventAfterARefusedOneIsSentAsUsual)
{
    const json script = {{"TrackEvent", {{"12", {{"status", 9}, {"callbacks", 0}}}}}};
    const auto body = [](const CatalogueTest& test)
    { return &test == &TheCatalogue()[11] ? NoticeOfRefusal(test) : std::string("PASSED\n"); };
    ExpectRun(script, WholeRun(body, false), 1);
}

TEST(Fault, EventsThatAreRefusedForDocumentsAloneFailTheLastTestAlone)
{
    const std::size_t last = TheCatalogue().size();
    const json script = {{"TrackEvent", {{std::to_string(last), {{"status", 2}, {"callbacks", 0}}}}}};
    const auto body = [](const CatalogueTest& test)
    { return test.isDocument ? NoticeOfRefusal(test) : std::string("PASSED\n"); };
    ExpectRun(script, WholeRun(body, false), 1);
}

TEST(Fault, AnEventThatNeverComesBackFailsItsTestWithoutAVerdict)
{
    ExpectRun({{"TrackEvent", Always({{"callbacks", 0}})}}, UniformRun("", false), 1);
    const auto body = [](const CatalogueTest& test)
    { return &test == &TheCatalogue().front() ? "" : std::string("PASSED\n"); };
    ExpectRun({{"TrackEvent", {{"1", {{"callbacks", 0}}}}}}, WholeRun(body, false), 1);
}

TEST(Fault, APayloadThatComesBackTwiceIsJudgedTwice)
{
    ExpectRun({{"TrackEvent", Always({{"callbacks", 2}})}}, UniformRun("PASSED\nPASSED\n", true), 0);
}

TEST(Fault, ANullPayloadGetsItsMessageAndFails)
{
    const auto body = [](const CatalogueTest& test) { return ExpectedJudgement(test, json()); };
    ExpectRun({{"TrackEvent", Always({{"payload", json()}})}}, WholeRun(body, false), 1);
}

TEST(Fault, AnEmptyPayloadMismatchesInEveryExpectedKey)
{
    const auto body = [](const CatalogueTest& test) { return ExpectedJudgement(test, json::object()); };
    ExpectRun({{"TrackEvent", Always({{"payload", json::object()}})}}, WholeRun(body, false), 1);
}
