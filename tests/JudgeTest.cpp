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

// `value`: null removes the member.
json Patched(const std::string& path, const json& value)
{
    return Payload.patch({{{"op", value.is_null() ? "remove" : "add"}, {"path", path}, {"value", value}}});
}

Findings OfCall(const json& payload, const std::vector<json>& arguments = Arguments)
{
    return TheJudge().OfCall(SmallEvent(), arguments, payload);
}

Findings OfCaptured(const json& payload)
{
    return TheJudge().OfCaptured(SmallEvent(), payload);
}

} // namespace

TEST(Judge, ComparesEveryKeyWithItsArgumentOrElseItsForm)
{
    const struct
    {
        std::string object; // the key's; empty: the payload's top level
        std::string key;
        json sent;
        json expected;
        std::string form{}; // what a captured payload must have; empty: it is good
    } rows[] = {
        {"", "type", "S", "C", R"("C")"},
        {"", "type", nullptr, "C", R"("C")"},
        {"", "size", 5, -5},
        {"", "size", "-5", -5, "an integer"},
        {"", "size", -5.0, -5, "an integer"},
        {"attributes", "A.TEXT", "u", "t"},
        {"attributes", "A.TEXT", 1, "t", "a string"},
        {"attributes", "A.FLAG", "true", "True", R"("True" or "False")"},
        {"attributes", "A.FLAG", "False", "True"},
        {"attributes", "A.NUMBER", "-1", "18446744073709551615", "a number as text that is not negative"},
        {"attributes", "A.NUMBER", "18446744073709551616", "18446744073709551615",
         "a number as text that is not negative"},
        {"attributes", "A.DECIMAL", "-0.250000", "-0.25"},
        {"attributes", "A.DECIMAL", "1x", "-0.25", "a decimal number as text"},
        {"attributes", "A.COUNT", "02", "2", "a number as text that is not negative"},
        {"attributes", "A.LAST", "a", "b"},
        {"", "attributes", nullptr, json::object(), "an object"},
        {"", "attributes", "{}", json::object(), "an object"},
    };
    for (const auto& row : rows)
    {
        const std::string name = (row.object.empty() ? "" : row.object + ": ") + row.key;
        const std::string sent = row.sent.is_null() ? ", not sent" : ", sent " + row.sent.dump();
        const json payload = Patched((row.object.empty() ? "/" : "/" + row.object + "/") + row.key, row.sent);
        const Findings ofCall = OfCall(payload);
        const std::string expected = row.expected.is_object() ? "an object" : row.expected.dump();
        EXPECT_EQ(ofCall.Messages(), Texts{name + ": expected " + expected + sent});
        EXPECT_EQ(ofCall.faults.at(0).key, name);
        EXPECT_EQ(ofCall.faults.at(0).expected, row.expected) << name;
        EXPECT_EQ(ofCall.faults.at(0).sent, row.sent) << name;
        EXPECT_EQ(OfCaptured(payload).Messages(),
                  row.form.empty() ? Texts() : Texts{name + ": expected " + row.form + sent});
    }
    EXPECT_EQ(OfCaptured(Patched("/size", nullptr)).Messages(), Texts{"size: not sent"});
    const json more = Patched("/attributes/A.MORE", 1);
    for (const Findings& findings : {OfCall(more), OfCaptured(more)})
        EXPECT_EQ(findings.Messages(), Texts{R"(attributes: "A.MORE" is not expected, sent 1)"});
}

TEST(Judge, DoesNotExpectWhatAnEmptyListLeavesOut)
{
    std::vector<json> arguments = Arguments;
    arguments[5] = {{"count", 0}};
    json payload = Patched("/attributes/A.COUNT", "0");
    for (const Findings& findings : {OfCall(payload, arguments), OfCaptured(payload)})
        EXPECT_EQ(findings.Messages(), Texts{R"(attributes: "A.LAST" is not expected, sent "b")"});
    payload["attributes"].erase("A.LAST");
    for (const Findings& findings : {OfCall(payload, arguments), OfCaptured(payload)})
        EXPECT_EQ(findings.Messages(), Texts());
}

TEST(Judge, TakesForAFaultOnlyAdditionsOfTheLibraryThatContradict)
{
    const struct
    {
        json payload;
        Texts faults;
        Texts remarks;
    } rows[] = {
        {Patched("/product", "Q"), {R"(product: expected "P", sent "Q")"}, {}},
        {Patched("/product", 1), {}, {"product came in another form, as 1"}},
        {Patched("/product", nullptr), {}, {"the product's description did not come"}},
        {Patched("/timer", -1), {"timer: expected no negative number, sent -1"}, {}},
        {Patched("/timer", 0), {}, {}},
        {Patched("/timer", 0.5), {}, {"timer came in another form, as 0.5"}},
        {Patched("/timer", nullptr), {}, {"timer did not come"}},
        {Patched("/A.TEXT", 1), {}, {R"("A.TEXT" is a key that docs/events.json does not have)"}},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(OfCall(row.payload).Messages(), row.faults) << row.payload;
        EXPECT_EQ(OfCall(row.payload).remarks, row.remarks) << row.payload;
    }
}

TEST(Judge, LetsALibraryThatTakesEmptyForNoneLeaveEmptyTextsOut)
{
    std::vector<json> arguments = Arguments;
    arguments[0] = "";
    const json without = Patched("/attributes/A.TEXT", nullptr);
    EXPECT_EQ(OfCall(without, arguments).Messages(), Texts{R"(attributes: A.TEXT: expected "", not sent)"});
    const Findings findings = TheJudge(true).OfCall(SmallEvent(), arguments, without);
    EXPECT_EQ(findings.Messages(), Texts());
    EXPECT_EQ(findings.remarks, Texts{R"(The library takes "" for no text: a key whose text is empty is not sent)"});
    EXPECT_EQ(TheJudge(true).OfCaptured(SmallEvent(), without).Messages(), Texts());
    EXPECT_EQ(TheJudge(true).OfCall(SmallEvent(), Arguments, without).faults.size(), 1U) << "it is not empty";
    EXPECT_FALSE(LibraryTakesEmptyForNone()) << "the stand-in keeps empty texts";
}

TEST(Judge, ShortensLongValuesBetweenCharacters)
{
    std::string letters = "a"; // so that the cut would be within a character
    for (int i = 0; i < 200; ++i)
        letters += "\xE6\xBC\xA2";
    const std::string text = JsonTextOf(letters);
    EXPECT_LT(text.size(), 150U);
    EXPECT_TRUE(json::accept(text.substr(0, text.find("...")) + "\"")) << text;
    EXPECT_TRUE(text.ends_with("... (603 bytes)")) << text;
}
