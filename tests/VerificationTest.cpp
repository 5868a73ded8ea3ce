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
Judgement Judge(const JsonValue& expected, const JsonValue& payload)
{
    TestResultList results{{String("untouched"), false}, {expected, false}};
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

const char* const NullPayloadMessage =
    "Unexpectedly recieved null JSON.\n"
    "This could indicate a failure to download a whitelist, an expired whitelist, or a failure to have specified a "
    "waypoint or attribute in the uploaded whitelist.\n";

const char* const NullDocumentMessage =
    "Unexpectedly recieved null JSON.\n"
    "This could indicate a failure to download a whitelist, or a failure to have specified a waypoint or attribute in "
    "the uploaded whitelist.\n";

} // namespace

TEST(Verification, AnEqualPayloadPasses)
{
    const Judgement judgement = Judge(Event(), Event());
    EXPECT_TRUE(judgement.passed);
    EXPECT_EQ(judgement.output, "PASSED\n");
}

TEST(Verification, FurtherKeysInThePayloadPass)
{
    JsonValue payload = Event();
    payload[Key("aaa")] = JsonValue(1LL);
    payload[Key("zzz")][Key("deep")] = JsonValue(true);
    EXPECT_EQ(Judge(Event(), payload).output, "PASSED\n");
}

TEST(Verification, AnExpectationWithoutKeysPasses)
{
    JsonValue emptyObject;
    emptyObject[Key("gone")] = JsonValue(true);
    emptyObject.RemoveKey(Key("gone"));
    EXPECT_EQ(Judge(emptyObject, Event()).output, "PASSED\n");
    EXPECT_TRUE(Judge(emptyObject, Event()).passed);
}

TEST(Verification, ANullPayloadForANullExpectationPasses)
{
    const Judgement judgement = Judge(JsonValue(), JsonValue());
    EXPECT_TRUE(judgement.passed);
    EXPECT_EQ(judgement.output, "PASSED\n");
}

TEST(Verification, ANullPayloadGetsItsOwnMessageAndNoVerdict)
{
    const Judgement judgement = Judge(Event(), JsonValue());
    EXPECT_FALSE(judgement.passed);
    EXPECT_EQ(judgement.output, NullPayloadMessage);
}

TEST(Verification, ANullPayloadLeavesAnEarlierVerdict)
{
    TestResultList results{{Event(), true}};
    JsonValue reply;
    const OutputCapture capture;
    VerifyPayloadCallback(JsonValue(), &results, reply);
    EXPECT_TRUE(results[0].passed);
}

TEST(Verification, AMismatchShowsBothValuesAsTrees)
{
    JsonValue payload = Event();
    payload[Key("component_attributes")][Key("a")] = String("changed");
    const Judgement judgement = Judge(Event(), payload);
    EXPECT_FALSE(judgement.passed);
    EXPECT_PRED_FORMAT2(IsText, judgement.output,
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key component_attributes\n"
                        "Expected:\n"
                        "a\n"
                        "    \"1\"\n"
                        "b\n"
                        "    \"2\"\n"
                        "Recieved:\n"
                        "a\n"
                        "    \"changed\"\n"
                        "b\n"
                        "    \"2\"\n"
                        "FAILED\n");
}

TEST(Verification, EveryMismatchingKeyIsReportedInAscendingOrder)
{
    JsonValue expected;
    expected[Key("z")] = String("z");
    expected[Key("m")] = String("same");
    expected[Key("a")] = String("a");
    JsonValue payload;
    payload[Key("m")] = String("same");
    payload[Key("z")] = String("other");
    payload[Key("a")] = String("another");
    EXPECT_PRED_FORMAT2(IsText, Judge(expected, payload).output,
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key a\n"
                        "Expected:\n"
                        "\"a\"\n"
                        "Recieved:\n"
                        "\"another\"\n"
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key z\n"
                        "Expected:\n"
                        "\"z\"\n"
                        "Recieved:\n"
                        "\"other\"\n"
                        "FAILED\n");
}

TEST(Verification, AMissingKeyIsAMismatchThatShowsNothingReceived)
{
    JsonValue payload = Event();
    payload.RemoveKey(Key("component_name"));
    EXPECT_PRED_FORMAT2(IsText, Judge(Event(), payload).output,
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key component_name\n"
                        "Expected:\n"
                        "\"NAME\"\n"
                        "Recieved:\n"
                        "FAILED\n");
}

TEST(Verification, APayloadThatIsNoObjectFailsOnEveryKey)
{
    const Judgement judgement = Judge(Event(), String("scalar"));
    EXPECT_FALSE(judgement.passed);
    EXPECT_NE(judgement.output.find("for key component_attributes\n"), std::string::npos);
    EXPECT_NE(judgement.output.find("for key component_name\n"), std::string::npos);
}

TEST(Verification, AMismatchUnderAnEmptyKeyNamesNothing)
{
    JsonValue expected;
    expected[TaviString()] = String("value");
    JsonValue payload;
    payload[Key("other")] = String("value");
    EXPECT_PRED_FORMAT2(IsText, Judge(expected, payload).output,
                        "\n"
                        "Error: Mismatch between expected and recieved Json for key \n"
                        "Expected:\n"
                        "\"value\"\n"
                        "Recieved:\n"
                        "FAILED\n");
}

TEST(Verification, AnAdditionalMemberOfAnExpectedObjectIsAMismatch)
{
    JsonValue payload = Event();
    payload[Key("component_attributes")][Key("c")] = String("3");
    EXPECT_FALSE(Judge(Event(), payload).passed);
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

TEST(Verification, TheLastOfTwoCallsDecides)
{
    TestResultList results{{Event(), false}};
    JsonValue reply;
    const OutputCapture capture;
    VerifyPayloadCallback(Event(), &results, reply);
    EXPECT_TRUE(results[0].passed);
    VerifyPayloadCallback(String("wrong"), &results, reply);
    EXPECT_FALSE(results[0].passed);
    VerifyPayloadCallback(Event(), &results, reply);
    EXPECT_TRUE(results[0].passed);
}

TEST(Verification, MismatchesBeyondAsciiAreShownAsUtf8AndSilenceNothing)
{
    JsonValue expected;
    expected[Key("1")] = String("\xC3\xBC");
    expected[Key("2")] = String("\xE4\xB8\xAD");
    expected[Key("3")] = String("\xF0\x9F\x98\x80");
    expected[Key("4")] = String("plain");
    const std::string output = Judge(expected, String("wrong")).output;
    for (const char* const line : {"\"\xC3\xBC\"\n", "\"\xE4\xB8\xAD\"\n", "\"\xF0\x9F\x98\x80\"\n", "\"plain\"\n"})
        EXPECT_NE(output.find(line), std::string::npos) << line;
    EXPECT_TRUE(output.ends_with("\"plain\"\nRecieved:\nFAILED\n")) << output;
}

TEST(Verification, ADocumentPassesOnItsFourValuesAndType)
{
    JsonValue payload = Document();
    payload[Key("further")] = JsonValue(true);
    payload[Key("content_meta")][Key("further")] = JsonValue(true);
    const Judgement judgement = JudgeDocument(Document(), payload);
    EXPECT_TRUE(judgement.passed);
    EXPECT_EQ(judgement.output, "PASSED\n");
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
        {"no letter", [](JsonValue& payload) { payload.RemoveKey(Key("type")); }},
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

TEST(Verification, ANullDocumentGetsAShorterMessageAndNoVerdict)
{
    const Judgement judgement = JudgeDocument(Document(), JsonValue(), true);
    EXPECT_EQ(judgement.output, NullDocumentMessage);
    EXPECT_TRUE(judgement.passed) << "the record stays as it was";
}

TEST(Verification, KeysAreSortedBytewiseAndOnce)
{
    JsonValue value;
    for (const char* const key : {"b", "B", "\xC3\xBC", "a", "b"})
        value[Key(key)] = JsonValue(true);
    std::string keys;
    for (const TaviString& key : GetSortedKeys(value))
        keys += Text(key) + " ";
    EXPECT_EQ(keys, "B a b \xC3\xBC ");
    EXPECT_TRUE(GetSortedKeys(JsonValue()).empty());
    EXPECT_TRUE(GetSortedKeys(String("scalar")).empty());
}

TEST(Verification, ATreeIsIndentedByFourBlanksALevel)
{
    JsonValue value;
    value[Key("outer")][Key("inner")][Key("number")] = JsonValue(-1LL);
    value[Key("outer")][Key("flag")] = JsonValue(true);
    value[Key("null")] = JsonValue();
    EXPECT_PRED_FORMAT2(IsText, Printed(value, 1),
                        "    null\n"
                        "    outer\n"
                        "        flag\n"
                        "            true\n"
                        "        inner\n"
                        "            number\n"
                        "                -1\n");
}

TEST(Verification, AScalarIsItsJsonTextNullNothingAndAFilledArrayNothing)
{
    EXPECT_EQ(Printed(String("a\"b"), 0), "\"a\\\"b\"\n");
    EXPECT_EQ(Printed(JsonValue(12LL), 2), "        12\n");
    EXPECT_EQ(Printed(JsonValue(), 0), "");
    EXPECT_EQ(Printed(Event().GetKeyList(), 0), "");
    EXPECT_EQ(Printed(JsonValue().GetKeyList(), 0), "[]\n");
}
