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

struct Judgement
{
    CapturedOutcome outcome;
    std::vector<CapturedPayload> payloads;
};

Judgement JudgementOf(const std::string& lines, bool isStrict = false)
{
    Judgement judgement;
    std::istringstream input(lines);
    judgement.outcome =
        JudgeCapturedLines(ReadDocument(CompiledInDocument()), Judge({}, false), isStrict, input,
                           [&](const CapturedPayload& payload) { judgement.payloads.push_back(payload); });
    return judgement;
}

CapturedPayload Judged(const json& payload)
{
    return JudgementOf(payload.dump()).payloads.at(0);
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
    std::ostringstream lines;
    recorder.WriteLines(lines);
    const auto& [outcome, judged] = JudgementOf(lines.str(), true);
    ASSERT_EQ(judged.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        EXPECT_EQ(judged[i].faults, Texts()) << recorder.JsonText(i);
        EXPECT_EQ(judged[i].methods, Texts{names[i]}) << recorder.JsonText(i);
    }
    EXPECT_EQ(outcome.good, names.size());
    EXPECT_EQ(outcome.events.size(), ReportingMethods().size());
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

TEST(Captured, NamesBothEventsThatFitAlikeAndElseTheOneOfMoreKeys)
{
    json payload = {{"type", "D"}, {"scope", "S"}};
    const CapturedPayload judged = Judged(payload);
    EXPECT_EQ(judged.methods, (Texts{"TrackFileInput", "StartTrackFileChange"}));
    EXPECT_EQ(judged.faults.front(), "as TrackFileInput, content_type: not sent");
    EXPECT_EQ(judged.faults.back(), "as StartTrackFileChange, content_meta: expected an object, not sent");
    EXPECT_TRUE(CapturedText(judged).starts_with("line 1: bad, TrackFileInput or StartTrackFileChange\n    as "));
    payload["content_meta"]["COMMON.FILE.NAME"] = "name";
    EXPECT_EQ(Judged(payload).methods, Texts{"StartTrackFileChange"}) << "of which it has a key more";
}

TEST(Captured, NamesALineThatIsNoPayloadOrOfNoEventAndJudgesTheNext)
{
    json name = PayloadOf("TrackMeshSize");
    name["component_name"] = "CV.MESH_SIZES";
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
        {std::string(100'000, '['), "has more than 100 levels"},
        {R"({"a":{"b":1},"c":[{"b":1,"b":2}]})", R"(has the key "b" twice in one object)"},
        {"{\"type\":\"\xFF\"}", "is no JSON text: it is wrong at byte 10"},
        {R"({"a":{"type":1},"type":2})", "is of no event: its type is 2, its component type none and its name none"},
        {R"({"type":"D","component_name":"x"})",
         R"(is of no event: its type is "D", its component type none and its name "x")"},
        {name.dump(), R"(is a waypoint whose name no event has, "CV.MESH_SIZES")"},
    };
    for (const auto& row : rows)
    {
        const std::vector<CapturedPayload> judged = JudgementOf("\n" + row.line + "\n \r\n" + good + "\r\n").payloads;
        ASSERT_EQ(judged.size(), 2U);
        EXPECT_EQ(judged[0].line, 2U);
        EXPECT_EQ(judged[0].faults, Texts{row.fault});
        EXPECT_EQ(judged[1].line, 4U);
        EXPECT_EQ(judged[1].faults, Texts());
    }
}

TEST(Captured, CountsEventsAndRemarksAndNamesEventsThatNeverCame)
{
    json further = PayloadOf("TrackMeshSize");
    further["user"] = 1;
    const std::string remark = R"("user" is a key that docs/events.json does not have)";
    const std::string lines = "{}\n" + further.dump() + "\n" + further.dump();
    EXPECT_EQ(JudgementOf(lines, true).payloads.at(1).faults, Texts{remark});
    const auto& [outcome, judged] = JudgementOf(lines);
    EXPECT_EQ(judged.at(1).faults, Texts());
    const std::string text = CapturedClosingText(outcome);
    EXPECT_TRUE(text.starts_with("\nCame:\n    TrackMeshSize: 2\n\nNever came:\n    StartTrackFileChange\n")) << text;
    EXPECT_TRUE(text.ends_with("\n\nREMARK  " + remark + ": 2 payloads\n2 good, 1 bad\n")) << text;
}
