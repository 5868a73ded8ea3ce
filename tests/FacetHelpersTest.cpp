#include <climits>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetHelpers.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

// All entries of the facet.
std::string Entries(const Facet::Base& facet)
{
    return Json(facet.Build(JsonValue()));
}

Facet::Component ComponentWith(const char* key, const JsonValue& value)
{
    Facet::Component component;
    component.SetFacetEntry(Key("kept"), String("as it is"));
    component.SetFacetEntry(Key(key), value);
    return component;
}

// Holds {"kept":"as it is"} and, under "object", the members "a" and "b".
Facet::Component ComponentWithObject()
{
    JsonValue object;
    object[Key("a")] = String("1");
    object[Key("b")] = String("2");
    return ComponentWith("object", object);
}

Facet::Component ComponentWithAttributes()
{
    JsonValue attributes;
    attributes[Key("old")] = String("1");
    attributes[Key("common")] = String("2");
    return ComponentWith("component_attributes", attributes);
}

} // namespace

TEST(FacetHelpers, AJsonEntryIsStoredAndReplaced)
{
    Facet::Component component = ComponentWith("k", String("before"));
    SetFacetEntry(component, "k", JsonValue(-1LL));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","k":-1})");
    SetFacetEntry(component, "k", JsonValue(false));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","k":false})");
    SetFacetEntry(component, "k", String(""));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","k":""})");
}

TEST(FacetHelpers, ANullJsonEntryIsRemoved)
{
    Facet::Component component = ComponentWith("k", String("before"));
    SetFacetEntry(component, "k", JsonValue());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
    SetFacetEntry(component, "k", JsonValue());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, ATextEntryIsStoredAndReplaced)
{
    Facet::Component component = ComponentWith("k", String("before"));
    SetFacetEntry(component, "k", Key("after"));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","k":"after"})");
    SetFacetEntry(component, "new", Key("text"));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","k":"after","new":"text"})");
}

TEST(FacetHelpers, AnEmptyTextEntryIsStored)
{
    Facet::Component component = ComponentWith("k", String("before"));
    SetFacetEntry(component, "k", Key(""));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","k":""})");
}

TEST(FacetHelpers, ATextEntryNeverSetIsRemoved)
{
    Facet::Component component = ComponentWith("k", String("before"));
    SetFacetEntry(component, "k", TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, TheEventTypeIsSetOrRemoved)
{
    Facet::Core core;
    SetEventType(core, "C");
    EXPECT_EQ(Entries(core), R"({"type":"C"})");
    SetEventType(core, "D");
    EXPECT_EQ(Entries(core), R"({"type":"D"})");
    SetEventType(core, nullptr);
    EXPECT_TRUE(core.Build(JsonValue()).Compare(Facet::Core().Build(JsonValue())) == 0) << Entries(core);
}

TEST(FacetHelpers, TheComponentNameIsSetOrRemoved)
{
    Facet::Component component = ComponentWith("component_name", String("before"));
    SetComponentName(component, Key("after"));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","component_name":"after"})");
    SetComponentName(component, Key(""));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","component_name":""})");
    SetComponentName(component, TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, EveryScopeCodeHasItsLetter)
{
    const std::map<int, std::string> letters = {
        {1, "S"},  {2, "E"},  {3, "F"},  {4, "D"},  {5, "I"},  {6, "S"},  {7, "E"},  {8, "F"},  {9, "N"},  {10, "T"},
        {11, "O"}, {12, "X"}, {13, "I"}, {14, "V"}, {15, "A"}, {16, "L"}, {17, "S"}, {18, "E"}, {19, "F"}, {20, "N"},
        {21, "U"}, {22, "A"}, {23, "O"}, {24, "P"}, {25, "C"}, {26, "D"}, {27, "U"}, {28, "O"}, {29, "A"}, {30, "S"},
        {31, "C"}, {32, "E"}, {33, "C"}, {34, "C"}, {35, "C"}, {36, "U"}, {37, "D"}, {38, "I"}, {39, "J"},
    };
    ASSERT_EQ(letters.size(), 39U);
    for (const auto& [code, letter] : letters)
    {
        Facet::Core core;
        SetEventScope(core, code);
        EXPECT_EQ(Entries(core), R"({"scope":")" + letter + R"("})") << code;
    }
}

TEST(FacetHelpers, AScopeCodeOutsideTheTableRemovesTheScope)
{
    const int codes[] = {0, 40, -1, 41, 256 + 25, INT_MIN, INT_MAX};
    for (const int code : codes)
    {
        Facet::Core core;
        SetEventType(core, "C");
        SetEventScope(core, 25);
        ASSERT_EQ(Entries(core), R"({"type":"C","scope":"C"})");
        SetEventScope(core, code);
        EXPECT_EQ(Entries(core), R"({"type":"C"})") << code;
    }
}

TEST(FacetHelpers, AMemberWithTextIsSetOrReplaced)
{
    Facet::Component component = ComponentWithObject();
    SetFacetObjectMember(component, "object", Key("a"), Key("new"));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"a":"new","b":"2"}})");
    SetFacetObjectMember(component, "object", Key("c"), Key(""));
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"a":"new","b":"2","c":""}})");
}

TEST(FacetHelpers, TheFirstMemberCreatesTheObject)
{
    Facet::Component component;
    SetFacetObjectMember(component, "object", Key("a"), Key("1"));
    EXPECT_EQ(Entries(component), R"({"object":{"a":"1"}})");
}

TEST(FacetHelpers, AMemberNeverSetIsRemovedAndTheLastOneTakesTheObjectAlong)
{
    Facet::Component component = ComponentWithObject();
    SetFacetObjectMember(component, "object", Key("a"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"b":"2"}})");
    SetFacetObjectMember(component, "object", Key("absent"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"b":"2"}})");
    SetFacetObjectMember(component, "object", Key("b"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, RemovingAMemberOfAnAbsentObjectLeavesNoEntry)
{
    Facet::Component component = ComponentWithObject();
    SetFacetObjectMember(component, "other", Key("a"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"a":"1","b":"2"}})");
}

TEST(FacetHelpers, AnEmptyMemberKeyRemovesTheWholeObject)
{
    const TaviString emptyKeys[] = {TaviString(), Key("")};
    const TaviString values[] = {TaviString(), Key(""), Key("text")};
    for (const TaviString& key : emptyKeys)
    {
        for (const TaviString& value : values)
        {
            Facet::Component component = ComponentWithObject();
            SetFacetObjectMember(component, "object", key, value);
            EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
            SetFacetObjectMember(component, "object", key, value);
            EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
        }
    }
}

TEST(FacetHelpers, ManyMembersAreAddedInTheOrderOfTheirKeysBesideThoseThere)
{
    Facet::Component component = ComponentWithObject();
    SetFacetObjectMembers(component, "object", {{Key("z"), Key("26")}, {Key("a"), Key("new")}, {Key("c"), Key("3")}});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"a":"new","b":"2","c":"3","z":"26"}})");
}

TEST(FacetHelpers, ComponentAttributesReplaceAllThatWereThere)
{
    Facet::Component component = ComponentWithAttributes();
    SetComponentAttributes(component, {{Key("new"), Key("")}, {Key("common"), Key("3")}});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","component_attributes":{"common":"3","new":""}})");
}

TEST(FacetHelpers, NoComponentAttributesLeaveNoEntry)
{
    Facet::Component component = ComponentWithAttributes();
    SetComponentAttributes(component, {});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
    SetComponentAttributes(component, {});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, AComponentAttributeNeverSetIsLeftOut)
{
    Facet::Component component = ComponentWithAttributes();
    SetComponentAttributes(component, {{Key("a"), Key("1")}, {Key("common"), TaviString()}, {Key("z"), Key("26")}});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","component_attributes":{"a":"1","z":"26"}})");
}

TEST(FacetHelpers, OnlyComponentAttributesNeverSetLeaveNoEntry)
{
    Facet::Component component = ComponentWithAttributes();
    SetComponentAttributes(component, {{Key("common"), TaviString()}});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, AComponentAttributeWithAnEmptyKeyAddsNothingAndTheOthersAreKept)
{
    Facet::Component component = ComponentWithAttributes();
    SetComponentAttributes(component, {{Key("a"), Key("1")}, {Key(""), Key("lost")}, {Key("z"), Key("26")}});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","component_attributes":{"a":"1","z":"26"}})");
}

TEST(FacetHelpers, AllMembersOfAnObjectAreReadAsText)
{
    JsonValue object;
    object[Key("text")] = String("value");
    object[Key("empty")] = String("");
    object[Key("number")] = JsonValue(-7LL);
    object[Key("null")] = JsonValue();
    const AttributeMap attributes = ReadComponentAttributes(object);

    ASSERT_EQ(attributes.size(), 4U);
    EXPECT_STREQ(attributes.at(Key("text")).c_str(), "value");
    EXPECT_STREQ(attributes.at(Key("empty")).c_str(), "");
    EXPECT_STREQ(attributes.at(Key("number")).c_str(), "-7");
    EXPECT_EQ(attributes.at(Key("null")).c_str(), nullptr);
}

TEST(FacetHelpers, NoMembersAreReadOfAnythingButAnObject)
{
    JsonValue emptyObject;
    emptyObject[Key("a")];
    emptyObject.RemoveKey(Key("a"));
    const JsonValue values[] = {JsonValue(),    JsonValue(true), JsonValue(1LL),
                                String("text"), emptyObject,     ComponentWithObject().Build(JsonValue()).GetKeyList()};
    for (const JsonValue& value : values)
        EXPECT_TRUE(ReadComponentAttributes(value).empty()) << Json(value);
}

TEST(FacetHelpers, TheProductKeyJoinsTheFourIdentifiers)
{
    Facet::Product product;
    product.SetFacetEntry(Key("product_build_id"), String("B"));
    product.SetFacetEntry(Key("product_master_id"), String("M"));
    product.SetFacetEntry(Key("product_release_id"), String("R"));
    product.SetFacetEntry(Key("product_line_name"), String("L"));
    TaviString key = Key("before");
    BuildProductKey(product, key);
    EXPECT_EQ(Text(key), "L&R&M&B");
}

TEST(FacetHelpers, TheProductKeyIsLeftAsItIsWhenAnIdentifierIsMissingOrEmpty)
{
    const char* const fields[] = {"product_line_name", "product_release_id", "product_master_id", "product_build_id"};
    const JsonValue lacking[] = {JsonValue(), String("")};
    for (const char* const lackingField : fields)
    {
        for (const JsonValue& value : lacking)
        {
            Facet::Product product;
            for (const char* const field : fields)
                product.SetFacetEntry(Key(field), String("X"));
            product.SetFacetEntry(Key(lackingField), value);

            TaviString given = Key("before");
            BuildProductKey(product, given);
            EXPECT_EQ(Text(given), "before") << lackingField << " is " << Json(value);
            TaviString unset;
            BuildProductKey(product, unset);
            EXPECT_EQ(unset.c_str(), nullptr) << lackingField << " is " << Json(value);
        }
    }
}
