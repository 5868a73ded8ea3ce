#include <harness/Verification.h>

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "Differences.h"
#include "OutputCapture.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

struct Judgement
{
    std::string output;
    bool passed;
};

// Judges `payload` by the last of two records; the first must stay as it is.
Judgement Judge(const JsonValue& expected, const JsonValue& payload, bool passedBefore = false)
{
    TestResultList results{{String("untouched"), false}, {expected, passedBefore}};
    JsonValue reply;
    const OutputCapture capture;
    EXPECT_EQ(VerifyPayloadCallback(payload, &results, reply), 0);
    EXPECT_TRUE(IsNull(reply));
    EXPECT_FALSE(results[0].passed);
    EXPECT_EQ(results[1].expected.Compare(expected), 0);
    return {capture.Text(), results[1].passed};
}

Judgement JudgeDocument(const JsonValue& expected, const JsonValue& payload, bool passedBefore = false)
{
    TestResult result{expected, passedBefore};
    JsonValue reply;
    const OutputCapture capture;
    EXPECT_EQ(VerifyFileInputPayload(payload, &result, reply), 0);
    EXPECT_TRUE(IsNull(reply));
    return {capture.Text(), result.passed};
}

void ExpectPass(const Judgement& judgement)
{
    EXPECT_EQ(judgement.output, "PASSED\n");
    EXPECT_TRUE(judgement.passed);
}

JsonValue Event()
{
    JsonValue event;
    event[Key("component_name")] = String("NAME");
    event[Key("component_attributes")][Key("b")] = String("2");
    event[Key("component_attributes")][Key("a")] = String("1");
    return event;
}

JsonValue Document()
{
    JsonValue document;
    JsonValue& meta = document[Key("content_meta")];
    meta[Key("COMMON.FILE.NAME")] = String("name");
    meta[Key("COMMON.FILE.TYPE")] = String("type");
    meta[Key("COMMON.FILE.SIZE")] = String("12");
    meta[Key("COMMON.FILE.SOURCE")] = String("13");
    document[Key("type")] = String("D");
    return document;
}

std::string Printed(const JsonValue& value, unsigned depth)
{
    const OutputCapture capture;
    PrintJsonValue(value, depth);
    return capture.Text();
}

} // namespace

TEST(Verification, APayloadPassesOnTheExpectedKeysAlone)
{
    JsonValue payload = Event();
    payload[Key("aaa")] = JsonValue(1LL);
    payload[Key("zzz")][Key("deep")] = JsonValue(true);
    ExpectPass(Judge(Event(), payload));
    ExpectPass(Judge(JsonValue(), payload));
    ExpectPass(Judge(JsonValue(), JsonValue()));
}

// The messages are tested with the whole program.
TEST(Verification, ANullPayloadGetsAMessageAndLeavesTheRecord)
{
    for (const bool passedBefore : {false, true})
    {
        for (const Judgement& judgement :
             {Judge(Event(), JsonValue(), passedBefore), JudgeDocument(Document(), JsonValue(), passedBefore)})
        {
            EXPECT_TRUE(judgement.output.starts_with("Unexpectedly recieved null JSON.\n")) << judgement.output;
            EXPECT_EQ(judgement.passed, passedBefore);
        }
    }
}

TEST(Verification, EveryMismatchShowsBothValuesAsTreesInTheOrderOfTheKeys)
{
    JsonValue expected = Event();
    expected[Key("same")] = String("same");
    expected[TaviString()] = String("under an empty key");
    JsonValue payload = expected;
    payload.RemoveKey(TaviString());
    payload[Key("component_name")] = JsonValue(1LL);
    payload[Key("component_attributes")][Key("c")] = String("additional");
    const Judgement judgement = Judge(expected, payload, true);
    EXPECT_FALSE(judgement.passed);
    EXPECT_PRED_FORMAT2(IsText, judgement.output,
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key \n"
                        "Expected:\n"
                        "\"under an empty key\"\n"
                        "Recieved:\n"
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key component_attributes\n"
                        "Expected:\n"
                        "a\n"
                        "    \"1\"\n"
                        "b\n"
                        "    \"2\"\n"
                        "Recieved:\n"
                        "a\n"
                        "    \"1\"\n"
                        "b\n"
                        "    \"2\"\n"
                        "c\n"
                        "    \"additional\"\n"
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key component_name\n"
                        "Expected:\n"
                        "\"NAME\"\n"
                        "Recieved:\n"
                        "1\n"
                        "FAILED\n");
}

TEST(Verification, APayloadThatIsNoObjectFailsOnEveryKey)
{
    const std::string output = Judge(Event(), String("scalar")).output;
    EXPECT_NE(output.find("for key component_attributes\n"), std::string::npos);
    EXPECT_NE(output.find("for key component_name\n"), std::string::npos);
}

TEST(Verification, AnEventBeforeAnyTestIsNotJudged)
{
    TestResultList results;
    JsonValue reply;
    const OutputCapture capture;
    EXPECT_EQ(VerifyPayloadCallback(Event(), &results, reply), 0);
    EXPECT_EQ(capture.Text(), "");
    EXPECT_TRUE(results.empty());
}

TEST(Verification, ADocumentPassesOnItsFourValuesAndType)
{
    JsonValue payload = Document();
    payload[Key("further")] = JsonValue(true);
    payload[Key("content_meta")][Key("further")] = JsonValue(true);
    ExpectPass(JudgeDocument(Document(), payload));
}

TEST(Verification, ADocumentFailsOnAnyOfItsValuesWithoutDetails)
{
    const struct
    {
        const char* name;
        std::function<void(JsonValue&)> change;
    } rows[] = {
        {"name", [](JsonValue& payload) { payload[Key("content_meta")][Key("COMMON.FILE.NAME")] = String("x"); }},
        {"type", [](JsonValue& payload) { payload[Key("content_meta")][Key("COMMON.FILE.TYPE")] = String("x"); }},
        {"size", [](JsonValue& payload) { payload[Key("content_meta")][Key("COMMON.FILE.SIZE")] = JsonValue(12LL); }},
        {"source", [](JsonValue& payload) { payload[Key("content_meta")].RemoveKey(Key("COMMON.FILE.SOURCE")); }},
        {"letter", [](JsonValue& payload) { payload[Key("type")] = String("C"); }},
        {"no meta", [](JsonValue& payload) { payload.RemoveKey(Key("content_meta")); }},
        {"meta is text", [](JsonValue& payload) { payload[Key("content_meta")] = String("x"); }},
    };
    for (const auto& row : rows)
    {
        JsonValue payload = Document();
        row.change(payload);
        const Judgement judgement = JudgeDocument(Document(), payload, true);
        EXPECT_FALSE(judgement.passed) << row.name;
        EXPECT_EQ(judgement.output, "FAILED\n") << row.name;
    }
}

TEST(Verification, ADocumentWithoutExpectedMetaFails)
{
    JsonValue expected;
    expected[Key("type")] = String("D");
    EXPECT_EQ(JudgeDocument(expected, expected).output, "FAILED\n");
    EXPECT_EQ(JudgeDocument(JsonValue(), JsonValue()).output, "FAILED\n");
}

TEST(Verification, ATreeIsIndentedByFourBlanksALevelItsKeysBytewise)
{
    JsonValue value;
    value[Key("outer")][Key("inner")][Key("number")] = JsonValue(-1LL);
    value[Key("outer")][Key("\xC3\xBC")] = JsonValue(true);
    value[Key("null")] = JsonValue();
    value[Key("Text")] = String("a\"b");
    value[Key("list")] = Event().GetKeyList();
    EXPECT_PRED_FORMAT2(IsText, Printed(value, 1),
                        "    Text\n"
                        "        \"a\\\"b\"\n"
                        "    list\n"
                        "    null\n"
                        "    outer\n"
                        "        inner\n"
                        "            number\n"
                        "                -1\n"
                        "        \xC3\xBC\n"
                        "            true\n");
    EXPECT_EQ(Printed(JsonValue(), 0), "");
    EXPECT_EQ(Printed(JsonValue().GetKeyList(), 0), "[]\n");
}
