// Payloads that a host recorded, judged by docs/events.json as it is compiled into tavi_check.
#include <check/Captured.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/ReportingMethods.h>
#include <recorder/PayloadRecorder.h>

using namespace Corvane;
using nlohmann::json;

namespace
{

using Texts = std::vector<std::string>;

json PayloadOf(const std::string& name)
{
    const PayloadRecorder recorder;
    for (const ReportingMethod& method : ReportingMethods())
    {
        if (method.name == name)
            ProbingCalls(method).front().make();
    }
    return json::parse(recorder.JsonText(0));
}

CapturedPayload Judged(const std::string& line, bool isStrict = false)
{
    std::istringstream input(line + "\n");
    CapturedPayload judged;
    JudgeCapturedLines(ReadDocument(CompiledInDocument()), Judge({}, false), isStrict, input,
                       [&judged](const CapturedPayload& payload) { judged = payload; });
    return judged;
}

CapturedPayload Judged(const json& payload, bool isStrict = false)
{
    return Judged(payload.dump(), isStrict);
}

} // namespace

TEST(Captured, KnowsTheEventsOfAllMethodsAndTakesThemForGood)
{
    const PayloadRecorder recorder;
    std::vector<std::string> names;
    for (const ReportingMethod& method : ReportingMethods())
    {
        for (const ProbingCall& call : ProbingCalls(method))
        {
            call.make();
            names.push_back(method.name);
        }
    }
    std::stringstream lines;
    recorder.WriteLines(lines);
    std::size_t count = 0;
    const auto expectGood = [&](const CapturedPayload& payload)
    {
        EXPECT_EQ(payload.faults, Texts()) << recorder.JsonText(count);
        EXPECT_EQ(payload.methods, Texts{names.at(count)}) << recorder.JsonText(count);
        ++count;
    };
    const CapturedOutcome outcome =
        JudgeCapturedLines(ReadDocument(CompiledInDocument()), Judge({}, false), true, lines, expectGood);
    EXPECT_EQ(count, names.size());
    EXPECT_EQ(outcome.good, names.size());
    EXPECT_EQ(outcome.events.size(), ReportingMethods().size());
    for (const auto& [method, came] : outcome.events)
        EXPECT_GT(came, 0U) << method;
}

TEST(Captured, KnowsAnEventByTypeComponentTypeAndNameAndElseByItsKeys)
{
    json renamed = PayloadOf("TrackNavBarDragMove");
    renamed["component_name"] = "COMMON.ZEPH_NB_DOCKED";
    EXPECT_EQ(Judged(renamed).methods, Texts{"TrackNavBarDragMove"});
    EXPECT_EQ(Judged(renamed).faults, Texts());
    renamed["component_attributes"].erase("COMMON.ZEPH_NB_POSITION");
    EXPECT_EQ(Judged(renamed).faults, Texts{"component_attributes: COMMON.ZEPH_NB_POSITION: not sent"});

    // The keys that are left are those of a drag, but the name is the start's.
    json start = PayloadOf("TrackNavBarStartup");
    for (const char* const key : {"COMMON.ZEPH_NB_MORE_CONTROLS_VISIBLE", "COMMON.ZEPH_NB_TOOL_NAME",
                                  "COMMON.ZEPH_NB_TOOL_HIDDEN", "COMMON.ZEPH_NB_TOOL_COUNT"})
        start["component_attributes"].erase(key);
    EXPECT_EQ(Judged(start).methods, Texts{"TrackNavBarStartup"});
    EXPECT_EQ(Judged(start).faults.size(), 4U);
}

TEST(Captured, NamesBothEventsThatFitAlike)
{
    const CapturedPayload judged = Judged(json({{"type", "D"}, {"scope", "S"}}));
    EXPECT_EQ(judged.methods, (Texts{"TrackFileInput", "StartTrackFileChange"}));
    EXPECT_EQ(judged.faults.front(), "as TrackFileInput, content_type: not sent");
    EXPECT_EQ(judged.faults.back(), "as StartTrackFileChange, content_meta: expected an object, not sent");
    EXPECT_TRUE(CapturedText(judged).starts_with("line 1: bad, TrackFileInput or StartTrackFileChange\n    as "));
}

TEST(Captured, NamesUnknownEventsAndRemarksOnUnknownKeys)
{
    json name = PayloadOf("TrackMeshSize");
    name["component_name"] = "CV.MESH_SIZES";
    EXPECT_EQ(Judged(name).faults, Texts{R"(is a waypoint whose name no event has, "CV.MESH_SIZES")"});
    EXPECT_EQ(Judged(json::object()).faults,
              Texts{"is of no event: its type is none, its component type none and its name none"});

    json further = PayloadOf("TrackMeshSize");
    further["user"] = 1;
    EXPECT_EQ(Judged(further).faults, Texts());
    EXPECT_EQ(Judged(further, true).faults, Texts{R"("user" is a key that docs/events.json does not have)"});
}

TEST(Captured, NamesALineThatIsNoPayloadAndJudgesTheNext)
{
    const std::string good = PayloadOf("TrackNavBarClosed").dump();
    const struct
    {
        std::string line;
        std::string fault;
    } rows[] = {
        {"payload", "is no JSON text: it is wrong at byte 1"},
        {good.substr(0, good.size() - 1), "is no JSON text: it ends within it"},
        {good + "}", "is no JSON text: it is wrong at byte " + std::to_string(good.size() + 1)},
        {R"({"type":1e999})", "has a number that is too large"},
        {"[]", "is no object: []"},
        {"null", "is no object: null"},
        {std::string(100'000, '['), "has more than 100 levels"},
        {R"({"type":"C","type":"D"})", R"(has the key "type" twice in one object)"},
        {R"({"a":{"b":1},"c":[{"b":1,"b":2}]})", R"(has the key "b" twice in one object)"},
        {"{\"type\":\"\xFF\"}", "is no JSON text: it is wrong at byte 10"},
    };
    for (const auto& row : rows)
    {
        std::istringstream input("\n" + row.line + "\r\n" + good + "\n");
        std::vector<CapturedPayload> judged;
        const CapturedOutcome outcome =
            JudgeCapturedLines(ReadDocument(CompiledInDocument()), Judge({}, false), false, input,
                               [&judged](const CapturedPayload& payload) { judged.push_back(payload); });
        EXPECT_EQ(outcome.good, 1U);
        EXPECT_EQ(outcome.bad, 1U);
        ASSERT_EQ(judged.size(), 2U);
        EXPECT_EQ(judged[0].line, 2U);
        EXPECT_EQ(judged[0].faults, Texts{row.fault});
        EXPECT_EQ(judged[1].line, 3U);
    }
}

TEST(Captured, CountsEventsAtTheEndAndNamesThoseThatNeverCame)
{
    CapturedOutcome outcome;
    outcome.good = 3;
    outcome.bad = 1;
    outcome.events = {{"TrackA", 3}, {"TrackB", 0}};
    outcome.remarks = {{"user is new", 2}};
    EXPECT_EQ(CapturedClosingText(outcome), "\nCame:\n    TrackA: 3\n\nNever came:\n    TrackB\n\n"
                                            "REMARK  user is new: 2 payloads\n3 good, 1 bad\n");
}
