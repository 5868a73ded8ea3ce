#include <climits>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/FacetFields.h>
#include <telemetry/FacetHelpers.h>

#include "Text.h"

using namespace Corvane;
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

// The core's component, which holds {"kept":"as it is"} and the entry.
Facet::Base& ComponentWith(Facet::Core& core, const char* key, const JsonValue& value)
{
    Facet::Base& component = ComponentFacet(core);
    SetFacetEntry(component, Key("kept"), String("as it is"));
    SetFacetEntry(component, Key(key), value);
    return component;
}

// {"a":"1","b":"2"} under `key`.
Facet::Base& ComponentWithObject(Facet::Core& core, const char* key = "object")
{
    JsonValue object;
    object[Key("a")] = String("1");
    object[Key("b")] = String("2");
    return ComponentWith(core, key, object);
}

template <typename Value>
concept CanBeSet = (requires(const Value& value, Facet::Base& facet) { SetFacetEntry(facet, TaviString(), value); });

static_assert(CanBeSet<JsonValue> && CanBeSet<TaviString> && CanBeSet<const char*> && CanBeSet<char[2]>);
// Types that convert to the library's types; pointers convert to the boolean true.
static_assert(!CanBeSet<bool> && !CanBeSet<int> && !CanBeSet<long long> && !CanBeSet<double>);
static_assert(!CanBeSet<const wchar_t*> && !CanBeSet<wchar_t[2]> && !CanBeSet<const void*>);

} // namespace

TEST(FacetFields, AreInTheFixedOrder)
{
    std::string names;
    for (const char* const name : FacetFields::Names)
        names += std::string(name) + " ";
    EXPECT_EQ(names, "type scope product_id_provider product_line_name product_release_id product_master_id "
                     "product_build_id product_key product_suite_name content_type content_size content_meta "
                     "entitlement_usage entitlement_license_id entitlement_properties user_info provider_name user_id "
                     "roles logged_in ldap_registration ldap_root component_type component_name component_attributes ");
}

TEST(FacetHelpers, ATextEntryNeverSetIsRemoved)
{
    Facet::Core core;
    Facet::Base& component = ComponentWith(core, "component_name", String("before"));
    SetComponentName(component, TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
    SetFacetEntry(component, Key("k"), "again");
    const char* const noText = nullptr;
    SetFacetEntry(component, Key("k"), noText);
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, EveryScopeCodeHasItsLetterAndAnyOtherRemovesTheScope)
{
    const std::map<int, std::string> letters = {
        {1, "S"},  {2, "E"},  {3, "F"},  {4, "D"},  {5, "I"},  {6, "S"},  {7, "E"},  {8, "F"},  {9, "N"},  {10, "T"},
        {11, "O"}, {12, "X"}, {13, "I"}, {14, "V"}, {15, "A"}, {16, "L"}, {17, "S"}, {18, "E"}, {19, "F"}, {20, "N"},
        {21, "U"}, {22, "A"}, {23, "O"}, {24, "P"}, {25, "C"}, {26, "D"}, {27, "U"}, {28, "O"}, {29, "A"}, {30, "S"},
        {31, "C"}, {32, "E"}, {33, "C"}, {34, "C"}, {35, "C"}, {36, "U"}, {37, "D"}, {38, "I"}, {39, "J"},
    };
    Facet::Core core;
    for (const auto& [code, letter] : letters)
    {
        SetEventScope(core, code);
        EXPECT_EQ(Entries(core), R"({"scope":")" + letter + R"("})") << code;
    }
    for (const int code : {0, 40, -1, INT_MIN, INT_MAX})
    {
        SetEventScope(core, 25);
        SetEventScope(core, code);
        EXPECT_EQ(Entries(core), "null") << code;
    }
}

TEST(FacetHelpers, AMemberNeverSetIsRemovedAndTheLastOneTakesTheObjectAlong)
{
    Facet::Core core;
    Facet::Base& component = ComponentWithObject(core);
    SetFacetObjectMember(component, Key("object"), Key("a"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"b":"2"}})");
    SetFacetObjectMember(component, Key("object"), Key("absent"), TaviString());
    SetFacetObjectMember(component, Key("absent"), Key("a"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","object":{"b":"2"}})");
    SetFacetObjectMember(component, Key("object"), Key("b"), TaviString());
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, AnEmptyMemberKeyRemovesTheWholeObject)
{
    const TaviString emptyKeys[] = {TaviString(), Key("")};
    const TaviString values[] = {TaviString(), Key(""), Key("text")};
    for (const TaviString& key : emptyKeys)
    {
        for (const TaviString& value : values)
        {
            Facet::Core core;
            Facet::Base& component = ComponentWithObject(core);
            SetFacetObjectMember(component, Key("object"), key, value);
            EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
        }
    }
}

TEST(FacetHelpers, ComponentAttributesReplaceAllThatWereThere)
{
    Facet::Core core;
    Facet::Base& component = ComponentWithObject(core, "component_attributes");
    SetComponentAttributes(component, {{Key("new"), Key("")}, {Key("b"), Key("3")}});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is","component_attributes":{"b":"3","new":""}})");
    SetComponentAttributes(component, {});
    EXPECT_EQ(Entries(component), R"({"kept":"as it is"})");
}

TEST(FacetHelpers, TheMembersOfAnObjectAreReadAsTextAndOfAnythingElseNone)
{
    JsonValue object;
    object[Key("text")] = String("value");
    object[Key("number")] = JsonValue(-7LL);
    object[Key("null")] = JsonValue();
    const AttributeMap attributes = ReadComponentAttributes(object);
    ASSERT_EQ(attributes.size(), 3U);
    EXPECT_STREQ(attributes.at(Key("text")).c_str(), "value");
    EXPECT_STREQ(attributes.at(Key("number")).c_str(), "-7");
    EXPECT_EQ(attributes.at(Key("null")).c_str(), nullptr);
    for (const JsonValue& value : {JsonValue(), String("text"), object.GetKeyList()})
        EXPECT_TRUE(ReadComponentAttributes(value).empty()) << Json(value);
}

TEST(FacetHelpers, TheProductKeyIsLeftAsItIsWhenAnIdentifierIsMissingOrEmpty)
{
    const char* const fields[] = {"product_line_name", "product_release_id", "product_master_id", "product_build_id"};
    Facet::Product product;
    for (const char* const field : fields)
        SetFacetEntry(product, Key(field), field);
    TaviString key;
    BuildProductKey(product, key);
    EXPECT_EQ(Text(key), "product_line_name&product_release_id&product_master_id&product_build_id");

    for (const char* const field : fields)
    {
        for (const JsonValue& lacking : {JsonValue(), String("")})
        {
            SetFacetEntry(product, Key(field), lacking);
            key = Key("before");
            BuildProductKey(product, key);
            EXPECT_EQ(Text(key), "before") << field << " is " << Json(lacking);
        }
        SetFacetEntry(product, Key(field), field);
    }
}
