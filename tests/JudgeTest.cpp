#include <check/Judge.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Text.h>

using namespace Corvane;
using nlohmann::json;

namespace
{

using Texts = std::vector<std::string>;

json Key(const std::string& name, const json& place, const std::string& type, const std::string& kind,
         const json& from = {}, const json& format = {})
{
    return {{"key", name},  {"place", place},   {"type", type},
            {"kind", kind}, {"format", format}, {"written_by_library", false},
            {"from", from}, {"unless", json()}, {"example", "C"}};
}

DocumentEvent SmallEvent()
{
    json timer = Key("timer", {}, "integer", "number", {}, "unsigned");
    timer["written_by_library"] = true;
    json last = Key("A.LAST", "attributes", "string", "text", "list");
    last["unless"] = {{"place", "attributes"}, {"key", "A.COUNT"}, {"value", "0"}};
    const json event = {
        {"method", "TrackTest"},
        {"names", json::array()},
        {"parameters", {"text", "flag", "signed", "unsigned", "decimal", "list"}},
        {"type", "C"},
        {"keys",
         {Key("type", {}, "string", "fixed"), Key("size", {}, "integer", "number", "signed", "signed"), timer,
          Key("A.TEXT", "attributes", "string", "text", "text"), Key("A.FLAG", "attributes", "string", "flag", "flag"),
          Key("A.NUMBER", "attributes", "string", "number", "unsigned", "unsigned"),
          Key("A.DECIMAL", "attributes", "string", "number", "decimal", "decimal"),
          Key("A.COUNT", "attributes", "string", "number", "list", "unsigned"), last}}};
    const json document = {{"version", "1.2.3"},
                           {"common", {Key("product", {}, "string", "product", "level")}},
                           {"groups", {{{"events", {event}}}}}};
    return ReadDocument(document.dump()).events.front();
}

const std::vector<json> Arguments = {
    "t", true, -5, std::numeric_limits<std::uint64_t>::max(), -0.25, {{"count", 2}, {"last", {{"name", "b"}}}}};

const json Payload = {{"product", "P"},
                      {"type", "C"},
                      {"size", -5},
                      {"timer", 90'000},
                      {"attributes",
                       {{"A.TEXT", "t"},
                        {"A.FLAG", "True"},
                        {"A.NUMBER", "18446744073709551615"},
                        {"A.DECIMAL", "-0.25"},
                        {"A.COUNT", "2"},
                        {"A.LAST", "b"}}}};

Judge TheJudge(bool takesEmptyForNone = false)
{
    return Judge({{{"level", "P"}}, ""}, takesEmptyForNone);
}

json Patched(const std::string& operation, const std::string& path, const json& value = {})
{
    return Payload.patch({{{"op", operation}, {"path", path}, {"value", value}}});
}

Texts OfCall(const json& payload, const std::vector<json>& arguments = Arguments)
{
    return TheJudge().OfCall(SmallEvent(), arguments, payload).Messages();
}

Texts OfCaptured(const json& payload)
{
    return TheJudge().OfCaptured(SmallEvent(), payload).Messages();
}

} // namespace

TEST(Judge, PassesAPayloadOfTheArguments)
{
    for (const Findings& findings :
         {TheJudge().OfCall(SmallEvent(), Arguments, Payload), TheJudge().OfCaptured(SmallEvent(), Payload)})
    {
        EXPECT_EQ(findings.Messages(), Texts());
        EXPECT_EQ(findings.remarks, Texts());
    }
}

TEST(Judge, ComparesEveryKeyWithItsArgumentOrElseItsForm)
{
    const struct
    {
        json payload;
        Texts ofCall;
        Texts ofCaptured;
    } rows[] = {
        {Patched("replace", "/type", "S"), {R"(type: expected "C", sent "S")"}, {R"(type: expected "C", sent "S")"}},
        {Patched("remove", "/type"), {R"(type: expected "C", not sent)"}, {R"(type: expected "C", not sent)"}},
        {Patched("replace", "/size", 5), {"size: expected -5, sent 5"}, {}},
        {Patched("replace", "/size", "-5"),
         {R"(size: expected -5, sent "-5")"},
         {R"(size: expected an integer, sent "-5")"}},
        {Patched("replace", "/size", -5.0), {"size: expected -5, sent -5.0"}, {"size: expected an integer, sent -5.0"}},
        {Patched("remove", "/size"), {"size: expected -5, not sent"}, {"size: not sent"}},
        {Patched("replace", "/attributes/A.TEXT", "u"), {R"(attributes: A.TEXT: expected "t", sent "u")"}, {}},
        {Patched("replace", "/attributes/A.TEXT", json()),
         {R"(attributes: A.TEXT: expected "t", sent null)"},
         {"attributes: A.TEXT: expected a string, sent null"}},
        {Patched("replace", "/attributes/A.FLAG", "true"),
         {R"(attributes: A.FLAG: expected "True", sent "true")"},
         {R"(attributes: A.FLAG: expected "True" or "False", sent "true")"}},
        {Patched("replace", "/attributes/A.FLAG", "False"),
         {R"(attributes: A.FLAG: expected "True", sent "False")"},
         {}},
        {Patched("replace", "/attributes/A.NUMBER", "-1"),
         {R"(attributes: A.NUMBER: expected "18446744073709551615", sent "-1")"},
         {R"(attributes: A.NUMBER: expected a number as text that is not negative, sent "-1")"}},
        {Patched("replace", "/attributes/A.NUMBER", "18446744073709551616"),
         {R"(attributes: A.NUMBER: expected "18446744073709551615", sent "18446744073709551616")"},
         {R"(attributes: A.NUMBER: expected a number as text that is not negative, sent "18446744073709551616")"}},
        {Patched("replace", "/attributes/A.DECIMAL", "-0.250000"),
         {R"(attributes: A.DECIMAL: expected "-0.25", sent "-0.250000")"},
         {}},
        {Patched("replace", "/attributes/A.DECIMAL", " 1"),
         {R"(attributes: A.DECIMAL: expected "-0.25", sent " 1")"},
         {R"(attributes: A.DECIMAL: expected a decimal number as text, sent " 1")"}},
        {Patched("replace", "/attributes/A.COUNT", "02"),
         {R"(attributes: A.COUNT: expected "2", sent "02")"},
         {R"(attributes: A.COUNT: expected a number as text that is not negative, sent "02")"}},
        {Patched("replace", "/attributes/A.LAST", "a"), {R"(attributes: A.LAST: expected "b", sent "a")"}, {}},
        {Patched("add", "/attributes/A.MORE", 1),
         {R"(attributes: "A.MORE" is not expected, sent 1)"},
         {R"(attributes: "A.MORE" is not expected, sent 1)"}},
        {Patched("remove", "/attributes"),
         {"attributes: expected an object, not sent"},
         {"attributes: expected an object, not sent"}},
        {Patched("replace", "/attributes", "{}"),
         {R"(attributes: expected an object, sent "{}")"},
         {R"(attributes: expected an object, sent "{}")"}},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(OfCall(row.payload), row.ofCall) << row.payload;
        EXPECT_EQ(OfCaptured(row.payload), row.ofCaptured) << row.payload;
    }
}

TEST(Judge, ExpectsASignedNumberToHaveTheBitsOfAnUnsignedArgument)
{
    std::vector<json> arguments = Arguments;
    arguments[2] = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(OfCall(Patched("replace", "/size", -1), arguments), Texts());
}

TEST(Judge, DoesNotExpectWhatAnEmptyListLeavesOut)
{
    std::vector<json> arguments = Arguments;
    arguments[5] = {{"count", 0}};
    json payload = Patched("remove", "/attributes/A.LAST");
    payload["attributes"]["A.COUNT"] = "0";
    EXPECT_EQ(OfCall(payload, arguments), Texts());
    EXPECT_EQ(OfCaptured(payload), Texts());
    payload["attributes"]["A.LAST"] = "b";
    const Texts fault = {R"(attributes: "A.LAST" is not expected, sent "b")"};
    EXPECT_EQ(OfCall(payload, arguments), fault);
    EXPECT_EQ(OfCaptured(payload), fault);
}

TEST(Judge, TakesForAFaultOnlyAdditionsOfTheLibraryThatContradict)
{
    const struct
    {
        json payload;
        Texts faults;
        Texts remarks;
    } rows[] = {
        {Patched("replace", "/product", "Q"), {R"(product: expected "P", sent "Q")"}, {}},
        {Patched("replace", "/product", 1), {}, {"product came in another form, as 1"}},
        {Patched("remove", "/product"), {}, {"the product's description did not come"}},
        {Patched("replace", "/timer", -1), {"timer: expected no negative number, sent -1"}, {}},
        {Patched("replace", "/timer", 0), {}, {}},
        {Patched("replace", "/timer", 0.5), {}, {"timer came in another form, as 0.5"}},
        {Patched("remove", "/timer"), {}, {"timer did not come"}},
        {Patched("add", "/user", 1), {}, {R"("user" is a key that docs/events.json does not have)"}},
        {Patched("add", "/A.TEXT", 1), {}, {R"("A.TEXT" is a key that docs/events.json does not have)"}},
    };
    for (const auto& row : rows)
    {
        const Findings findings = TheJudge().OfCall(SmallEvent(), Arguments, row.payload);
        EXPECT_EQ(findings.Messages(), row.faults) << row.payload;
        EXPECT_EQ(findings.remarks, row.remarks) << row.payload;
    }
}

TEST(Judge, LetsALibraryThatTakesEmptyForNoneLeaveEmptyTextsOut)
{
    std::vector<json> arguments = Arguments;
    arguments[0] = "";
    const json without = Patched("remove", "/attributes/A.TEXT");
    EXPECT_EQ(OfCall(without, arguments), Texts{R"(attributes: A.TEXT: expected "", not sent)"});
    const Findings findings = TheJudge(true).OfCall(SmallEvent(), arguments, without);
    EXPECT_EQ(findings.Messages(), Texts());
    EXPECT_EQ(findings.remarks, Texts{R"(The library takes "" for no text: a key whose text is empty is not sent)"});
    EXPECT_EQ(TheJudge(true).OfCaptured(SmallEvent(), without).Messages(), Texts());
    EXPECT_EQ(TheJudge(true).OfCall(SmallEvent(), Arguments, without).Messages().size(), 1U) << "it is not empty";
}

TEST(Judge, TakesAPayloadThatIsNoObjectForOneFault)
{
    const Texts ofNull = OfCall(json());
    ASSERT_EQ(ofNull.size(), 1U);
    EXPECT_NE(ofNull.front().find("the payload is null: the whitelist"), std::string::npos) << ofNull.front();
    for (const json& payload : {json(1), json("text"), json::array({"text"})})
        EXPECT_EQ(OfCall(payload), Texts{"the payload is no object: " + payload.dump()});
}

TEST(Judge, GivesAFaultItsKeyAndBothValues)
{
    const std::vector<Fault> faults =
        TheJudge().OfCall(SmallEvent(), Arguments, Patched("replace", "/attributes/A.TEXT", "u")).faults;
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults.front().key, "attributes: A.TEXT");
    EXPECT_EQ(faults.front().expected, "t");
    EXPECT_EQ(faults.front().sent, "u");
}

TEST(Judge, ShortensLongValuesBetweenCharacters)
{
    std::string letters;
    for (int i = 0; i < 200; ++i)
        letters += "\xE6\xBC\xA2";
    const std::string text = JsonTextOf(letters);
    EXPECT_LT(text.size(), 150U);
    EXPECT_TRUE(json::accept(text.substr(0, text.find("...")) + "\"")) << text;
    EXPECT_TRUE(text.ends_with("... (602 bytes)")) << text;
}
