#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/TaviDocument.h>

#include "Differences.h"
#include "OutputCapture.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
namespace Sdk = Veltrane::TaviDesktopSDK;

// The wrapper keeps documents until the process exits: each test has names of its own.

namespace
{

constexpr const char* Timer = "document_editing_length_ms";

// The expected payload of a document, without the timer.
JsonValue DocumentEvent(const std::string& name, const std::string& extension, long long size,
                        const std::string& source)
{
    const std::pair<const char*, std::string> entries[] = {
        {"product_line_name", "CVSTUDIO"},
        {"product_release_id", "2027.0.F"},
        {"product_master_id", "CVSTUDIO_2027_0_EN"},
        {"product_build_id", "27.0.214"},
        {"product_id_provider", "upi1"},
        {"type", "D"},
        {"scope", "S"},
        {"content_name", name},
        {"content_type", extension},
        {"content_root", source},
    };
    JsonValue event;
    for (const auto& [key, text] : entries)
        event[Key(key)] = String(text.c_str());
    event[Key("content_size")] = JsonValue(size);
    JsonValue& meta = event[Key("content_meta")];
    meta[Key("COMMON.FILE.NAME")] = String(name.c_str());
    meta[Key("COMMON.FILE.TYPE")] = String(extension.c_str());
    meta[Key("COMMON.FILE.SIZE")] = String(std::to_string(size).c_str());
    meta[Key("COMMON.FILE.SOURCE")] = String(source.c_str());
    return event;
}

std::vector<JsonValue> PayloadsOf(const std::function<void(CorvaneTavi&)>& calls)
{
    const Corvane::PayloadRecorder recorder;
    const OutputCapture output;
    calls(CorvaneTavi::Instance());
    EXPECT_EQ(output.Text(), "");
    return recorder.Payloads();
}

long long TimerOf(const JsonValue& payload)
{
    return static_cast<long long>(payload[Key(Timer)]);
}

void ExpectDocument(JsonValue payload, const JsonValue& expected)
{
    const long long timer = TimerOf(payload);
    EXPECT_EQ(Json(payload[Key(Timer)]), std::to_string(timer));
    EXPECT_GE(timer, 0);
    EXPECT_TRUE(payload.RemoveKey(Key(Timer)));
    if (payload.Compare(expected) != 0)
        ADD_FAILURE() << "Of a document's event:\n" << JsonTextDifferences(Json(expected), Json(payload));
}

// Registers a document, starts its change and expects the one event.
void ExpectSent(const std::wstring& name, const std::wstring& extension, std::uint64_t size, std::uint32_t source,
                const JsonValue& expected)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [&](CorvaneTavi& tavi)
        {
            tavi.AddDocument(name, extension, size, source);
            tavi.StartTrackFileChange(name);
        });
    ASSERT_EQ(payloads.size(), 1U);
    ExpectDocument(payloads.front(), expected);
}

} // namespace

TEST(Document, AStartedChangeSendsTheWholeDescriptionOfTheDocument)
{
    ExpectSent(L"fileName1", L"fileExtension1", 12, 34, DocumentEvent("fileName1", "fileExtension1", 12, "34"));
}

TEST(Document, TheDescriptionIsInTheOrderOfItsKeys)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"ordered", L"ext", 12, 12);
            tavi.StartTrackFileChange(L"ordered");
        });
    ASSERT_EQ(payloads.size(), 1U);
    EXPECT_EQ(Json(payloads.front()[Key("content_meta")]),
              R"({"COMMON.FILE.NAME":"ordered","COMMON.FILE.SIZE":"12","COMMON.FILE.SOURCE":"12",)"
              R"("COMMON.FILE.TYPE":"ext"})");
}

TEST(Document, RegisteringAloneSendsNothing)
{
    EXPECT_TRUE(PayloadsOf([](CorvaneTavi& tavi) { tavi.AddDocument(L"only registered", L"ext", 1, 2); }).empty());
}

TEST(Document, OfTwoDocumentsOnlyTheStartedOneIsSent)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"one of two", L"ext1", 1, 2);
            tavi.AddDocument(L"other of two", L"ext2", 3, 4);
            tavi.StartTrackFileChange(L"one of two");
        });
    ASSERT_EQ(payloads.size(), 1U);
    ExpectDocument(payloads.front(), DocumentEvent("one of two", "ext1", 1, "2"));
}

TEST(Document, OfANameRegisteredTwiceTheSecondDocumentIsSent)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"registered twice", L"first", 1, 2);
            tavi.AddDocument(L"registered twice", L"second", 3, 4);
            tavi.StartTrackFileChange(L"registered twice");
        });
    ASSERT_EQ(payloads.size(), 1U);
    ExpectDocument(payloads.front(), DocumentEvent("registered twice", "second", 3, "4"));
}

TEST(Document, ADocumentCanBeReplacedAfterItsChangeStarted)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"replaced", L"first", 1, 2);
            tavi.StartTrackFileChange(L"replaced");
            tavi.AddDocument(L"replaced", L"second", 3, 4);
            tavi.StartTrackFileChange(L"replaced");
        });
    ASSERT_EQ(payloads.size(), 2U);
    ExpectDocument(payloads[0], DocumentEvent("replaced", "first", 1, "2"));
    ExpectDocument(payloads[1], DocumentEvent("replaced", "second", 3, "4"));
}

TEST(Document, AnUnknownNameSendsNothing)
{
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"known", L"ext", 1, 2);
            for (const wchar_t* const name : {L"unknown", L"Known", L"known ", L"know"})
                tavi.StartTrackFileChange(name);
        });
    EXPECT_TRUE(payloads.empty()) << Json(payloads.front());
}

TEST(Document, EveryStartSendsTheEventAnewAndTheTimerGoesOnFromRegistration)
{
    constexpr std::chrono::milliseconds Pause(20);
    const std::vector<JsonValue> payloads = PayloadsOf(
        [&](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"started twice", L"ext", 1, 2);
            std::this_thread::sleep_for(Pause);
            tavi.StartTrackFileChange(L"started twice");
            std::this_thread::sleep_for(Pause);
            tavi.StartTrackFileChange(L"started twice");
        });
    ASSERT_EQ(payloads.size(), 2U);
    for (const JsonValue& payload : payloads)
        ExpectDocument(payload, DocumentEvent("started twice", "ext", 1, "2"));
    EXPECT_GE(TimerOf(payloads[0]), Pause.count());
    EXPECT_GE(TimerOf(payloads[1]), 2 * Pause.count());
    EXPECT_GE(TimerOf(payloads[1]), TimerOf(payloads[0]));
}

TEST(Document, EmptyTextsAreSentAsEmptyStrings)
{
    ExpectSent(L"", L"empty name", 1, 2, DocumentEvent("", "empty name", 1, "2"));
    ExpectSent(L"empty extension", L"", 1, 2, DocumentEvent("empty extension", "", 1, "2"));
    ExpectSent(L"", L"", 0, 0, DocumentEvent("", "", 0, "0"));
}

TEST(Document, AnyNameIsKeptAndSent)
{
    const std::pair<std::wstring, std::string> names[] = {
        {L"M\u00FCnchen.sdy", "M\xC3\xBCnchen.sdy"},
        {L"\u6A21\u5177", "\xE6\xA8\xA1\xE5\x85\xB7"},
        {L"\U0001F600", "\xF0\x9F\x98\x80"},
        {std::wstring{0xD83D}, "\xEF\xBF\xBD"},
        {L"C:\\folder\\\"quoted\"\n.sdy", "C:\\folder\\\"quoted\"\n.sdy"},
        {std::wstring(200'000, L'n'), std::string(200'000, 'n')},
    };
    for (const auto& [name, utf8] : names)
        ExpectSent(name, name, 1, 2, DocumentEvent(utf8, utf8, 1, "2"));
}

TEST(Document, NamesThatDifferAfterANullCharacterAreDifferentDocuments)
{
    using namespace std::string_literals;
    const std::vector<JsonValue> payloads = PayloadsOf(
        [](CorvaneTavi& tavi)
        {
            tavi.AddDocument(L"null\0a"s, L"first", 1, 2);
            tavi.AddDocument(L"null\0b"s, L"second", 3, 4);
            tavi.StartTrackFileChange(L"null\0a"s);
            tavi.StartTrackFileChange(L"null");
        });
    ASSERT_EQ(payloads.size(), 1U);
    ExpectDocument(payloads.front(), DocumentEvent("null", "first", 1, "2"));
}

TEST(Document, TheSizeIsSentAsASigned64BitInteger)
{
    const std::pair<std::uint64_t, long long> sizes[] = {
        {0, 0},
        {0x7FFF'FFFF'FFFF'FFFF, std::numeric_limits<long long>::max()},
        {0x8000'0000'0000'0000, std::numeric_limits<long long>::min()},
        {0xFFFF'FFFF'FFFF'FFFF, -1},
    };
    for (const auto& [size, sent] : sizes)
        ExpectSent(L"size", L"ext", size, 2, DocumentEvent("size", "ext", sent, "2"));
}

TEST(Document, TheSourceIsSentAsUnsignedDecimalText)
{
    const std::pair<std::uint32_t, std::string> sources[] = {
        {0, "0"}, {0x8000'0000, "2147483648"}, {0xFFFF'FFFF, "4294967295"}};
    for (const auto& [source, text] : sources)
        ExpectSent(L"source", L"ext", 1, source, DocumentEvent("source", "ext", 1, text));
}

TEST(Document, SendsItselfThroughTheWrapper)
{
    const TaviDocument document(L"on its own", L"ext", 1, 2);
    const std::vector<JsonValue> payloads = PayloadsOf([&](CorvaneTavi& tavi) { document.TrackEvent(tavi); });
    ASSERT_EQ(payloads.size(), 1U);
    ExpectDocument(payloads.front(), DocumentEvent("on its own", "ext", 1, "2"));
}

TEST(Document, WithoutAnEventSendsNothing)
{
    const TaviDocument document;
    EXPECT_TRUE(PayloadsOf([&](CorvaneTavi& tavi) { document.TrackEvent(tavi); }).empty());
}

// The callback may replace the document whose event it is shown: the event stays valid until the callback returns.
TEST(Document, IsReplacedWhileItsEventIsHandedOver)
{
    const std::wstring name = L"replaced while handed over";
    JsonValue meta;
    const auto replaceAndCopy = [](const JsonValue& payload, void* context, JsonValue&)
    {
        CorvaneTavi::Instance().AddDocument(L"replaced while handed over", L"a longer extension", 2, 2);
        *static_cast<JsonValue*>(context) = payload[Key("content_meta")];
        return 0;
    };
    const Corvane::PayloadRecorder testMode;
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    tavi.AddDocument(name, L"first extension", 1, 1);
    Sdk::SetTestingCallback(Key(tavi.GetProductKey().c_str()), replaceAndCopy, &meta);
    tavi.StartTrackFileChange(name);
    EXPECT_EQ(Text(TextValue(meta[Key("COMMON.FILE.TYPE")])), "first extension");
    tavi.StartTrackFileChange(name);
    EXPECT_EQ(Text(TextValue(meta[Key("COMMON.FILE.TYPE")])), "a longer extension");
}
