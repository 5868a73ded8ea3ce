#include <check/PayloadCheck.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Document.h>
#include <check/Run.h>

#include "PayloadRecorder.h"

using namespace Corvane;
using nlohmann::json;

namespace
{

using Texts = std::vector<std::string>;

json Key(const std::string& name, const json& place, const std::string& type, const std::string& kind)
{
    return {{"key", name},       {"place", place}, {"type", type},    {"kind", kind},
            {"measured", false}, {"from", {}},     {"unless", json()}};
}

const json Payload = {{"product", "P"},        {"type", "C"},
                      {"length", 90'000},      {"component_size", 12},
                      {"component_name", "N"}, {"attributes", {{"A.TEXT", "a"}, {"A.COUNT", "0"}}}};

// A document of one event, whose payload is Payload.
Document SmallDocument()
{
    json timer = Key("length", {}, "integer", "number");
    timer["measured"] = true;
    json optional = Key("A.TOOL", "attributes", "string", "text");
    optional["unless"] = {{"place", "attributes"}, {"key", "A.COUNT"}, {"value", "0"}};
    json size = Key("component_size", {}, "integer", "number");
    size["from"] = "size";
    json text = Key("A.TEXT", "attributes", "string", "text");
    text["from"] = "text";
    json count = Key("A.COUNT", "attributes", "string", "number");
    count["from"] = "size";
    const json event = {{"test", "Test"},
                        {"method", "TrackTest"},
                        {"name", "N"},
                        {"name_from", json()},
                        {"type", "C"},
                        {"keys",
                         {Key("type", {}, "string", "fixed"), Key("component_name", {}, "string", "fixed"), size, timer,
                          text, count, optional}},
                        {"payload", Payload}};
    return ReadDocument(json({{"version", "1.2.3"},
                              {"common", {Key("product", {}, "string", "product")}},
                              {"groups", {{{"events", {event}}}}}})
                            .dump());
}

PayloadFindings Check(const json& payload)
{
    return CheckPayload(payload, SmallDocument().events.front());
}

json Patched(const json& patch)
{
    return Payload.patch(patch);
}

void ExpectFault(const json& patch, const std::string& sentence)
{
    const PayloadFindings findings = Check(Patched(patch));
    EXPECT_EQ(findings.faults, Texts{sentence}) << patch;
    EXPECT_EQ(findings.furtherKeys, Texts()) << patch;
}

} // namespace

TEST(PayloadCheck, TheDocumentsOwnPayloadHasNoFault)
{
    const PayloadFindings findings = Check(Payload);
    EXPECT_EQ(findings.faults, Texts());
    EXPECT_EQ(findings.furtherKeys, Texts());
}

TEST(PayloadCheck, EveryKeyIsComparedWithItsTypeAndValue)
{
    const struct
    {
        json patch;
        std::string sentence;
    } rows[] = {
        {{{{"op", "remove"}, {"path", "/type"}}}, R"(type: expected "C", not sent)"},
        {{{{"op", "replace"}, {"path", "/type"}, {"value", "S"}}}, R"(type: expected "C", sent "S")"},
        {{{{"op", "replace"}, {"path", "/type"}, {"value", json()}}}, R"(type: expected "C", sent null)"},
        {{{{"op", "remove"}, {"path", "/component_size"}}}, "component_size: expected 12, not sent"},
        {{{{"op", "replace"}, {"path", "/component_size"}, {"value", "12"}}},
         R"(component_size: expected 12, sent "12")"},
        {{{{"op", "replace"}, {"path", "/component_size"}, {"value", 12.0}}}, "component_size: expected 12, sent 12.0"},
        {{{{"op", "remove"}, {"path", "/attributes/A.TEXT"}}}, R"(attributes: A.TEXT: expected "a", not sent)"},
        {{{{"op", "replace"}, {"path", "/attributes/A.TEXT"}, {"value", "b"}}},
         R"(attributes: A.TEXT: expected "a", sent "b")"},
        {{{{"op", "replace"}, {"path", "/attributes/A.COUNT"}, {"value", 0}}},
         R"(attributes: A.COUNT: expected "0", sent 0)"},
    };
    for (const auto& row : rows)
        ExpectFault(row.patch, row.sentence);
}

TEST(PayloadCheck, OfTheProductAndTheEditTimerOnlyTheTypeIsCompared)
{
    const json other = Patched({{{"op", "replace"}, {"path", "/product"}, {"value", "Q"}},
                                {{"op", "replace"}, {"path", "/length"}, {"value", 0}}});
    EXPECT_EQ(Check(other).faults, Texts());
    ExpectFault({{{"op", "replace"}, {"path", "/product"}, {"value", 1}}}, "product: expected a string, sent 1");
    ExpectFault({{{"op", "remove"}, {"path", "/product"}}}, "product: expected a string, not sent");
    ExpectFault({{{"op", "replace"}, {"path", "/length"}, {"value", 0.5}}}, "length: expected an integer, sent 0.5");
}

TEST(PayloadCheck, AnEditTimerThatDoesNotComeIsNoFault)
{
    const PayloadFindings findings = Check(Patched({{{"op", "remove"}, {"path", "/length"}}}));
    EXPECT_EQ(findings.faults, Texts());
    EXPECT_EQ(findings.unsentKeys, Texts{"length"});
    EXPECT_EQ(Check(Payload).unsentKeys, Texts());
}

TEST(PayloadCheck, AnObjectIsWhole)
{
    ExpectFault({{{"op", "add"}, {"path", "/attributes/A.MORE"}, {"value", "x"}}},
                "attributes: A.MORE is not expected");
    ExpectFault({{{"op", "remove"}, {"path", "/attributes"}}}, "attributes: expected an object, not sent");
    ExpectFault({{{"op", "replace"}, {"path", "/attributes"}, {"value", "{}"}}},
                R"(attributes: expected an object, sent "{}")");
}

TEST(PayloadCheck, AKeyThatTheCallLeavesOutIsNotExpected)
{
    ExpectFault({{{"op", "add"}, {"path", "/attributes/A.TOOL"}, {"value", "x"}}},
                "attributes: A.TOOL is not expected");
}

TEST(PayloadCheck, FurtherTopLevelKeysAreNoFaults)
{
    const PayloadFindings findings = Check(Patched({{{"op", "add"}, {"path", "/user"}, {"value", 1}},
                                                    {{"op", "add"}, {"path", "/A.TEXT"}, {"value", {{"x", 1}}}}}));
    EXPECT_EQ(findings.faults, Texts());
    EXPECT_EQ(findings.furtherKeys, (Texts{"A.TEXT", "user"}));
}

TEST(PayloadCheck, EveryFaultIsTold)
{
    const Texts faults = Check({{"type", "S"}, {"attributes", json::object()}}).faults;
    EXPECT_EQ(faults, (Texts{"product: expected a string, not sent", R"(type: expected "C", sent "S")",
                             R"(component_name: expected "N", not sent)", "component_size: expected 12, not sent",
                             R"(attributes: A.TEXT: expected "a", not sent)",
                             R"(attributes: A.COUNT: expected "0", not sent)"}));
}

TEST(PayloadCheck, WhatIsNoObjectIsOneFaultAndForNullAWhitelistIsNamed)
{
    const Texts ofNull = Check(json()).faults;
    ASSERT_EQ(ofNull.size(), 1U);
    EXPECT_NE(ofNull.front().find("the payload is null: the whitelist"), std::string::npos) << ofNull.front();
    for (const json& payload : {json(1), json("text"), json::array({"text"})})
        EXPECT_EQ(Check(payload).faults, Texts{"the payload is no object: " + payload.dump()});
}

TEST(PayloadCheck, OtherArgumentsReplaceTheValuesThatComeFromThem)
{
    const DocumentEvent event =
        WithArguments(SmallDocument().events.front(), {{"size", 13}, {"text", "t"}, {"no such parameter", 1}});
    json payload = Payload;
    payload["component_size"] = 13;
    payload["attributes"] = {{"A.TEXT", "t"}, {"A.COUNT", "13"}};
    EXPECT_EQ(CheckPayload(payload, event).faults, Texts());
    EXPECT_EQ(CheckPayload(Payload, event).faults.size(), 3U);
}

TEST(PayloadCheck, WithoutAnEventInTheDocumentATestFails)
{
    const PayloadRecorder leavesTestMode;
    Document document = ReadDocument(CompiledInDocument());
    std::erase_if(document.events, [](const DocumentEvent& event) { return event.test == "MeshSize"; });
    const RunOutcome outcome = RunChecks(document, TestNames(), false);
    EXPECT_EQ(outcome.errors, Texts());
    EXPECT_EQ(outcome.FailedTests(), 1U);
    for (const TestOutcome& test : outcome.tests)
        EXPECT_EQ(test.faults, test.name != "MeshSize"
                                   ? Texts()
                                   : Texts{"docs/events.json has no event of this test: it is out of date"})
            << test.name;
}

TEST(PayloadCheck, WithoutATestOfAnEventTheRunFails)
{
    const PayloadRecorder leavesTestMode;
    Document document = ReadDocument(CompiledInDocument());
    document.events.push_back(document.events.front());
    document.events.back().test = "Gone";
    const RunOutcome outcome = RunChecks(document, {"MeshSize"}, false);
    EXPECT_EQ(outcome.errors,
              Texts{"docs/events.json has an event of a test Gone, which there is not: it is out of date"});
    EXPECT_EQ(outcome.FailedTests(), 0U);
    EXPECT_FALSE(outcome.Passed());
}
