#include <algorithm>
#include <climits>
#include <cstddef>
#include <initializer_list>
#include <locale>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

template <typename Value>
concept TellsNull = (requires(const Value& value) { value.IsNull(); });

static_assert(sizeof(JsonValue) == sizeof(void*));
static_assert(!TellsNull<JsonValue>); // Compare() does
static_assert(std::is_nothrow_move_constructible_v<JsonValue> && std::is_nothrow_move_assignable_v<JsonValue>);

struct Member
{
    const char* key;
    JsonValue value;
};

// An object with the members in the order given; an empty object for none.
JsonValue Object(std::initializer_list<Member> members)
{
    JsonValue object;
    object[Key("")];
    object.RemoveKey(Key(""));
    for (const Member& member : members)
        object[Key(member.key)] = member.value;
    return object;
}

// An array of strings.
JsonValue Array(std::initializer_list<const char*> texts)
{
    JsonValue object;
    for (const char* text : texts)
        object[Key(text)];
    return object.GetKeyList();
}

JsonValue Integer(long long value)
{
    return JsonValue(value);
}

std::string Keys(const JsonValue& value)
{
    return Json(value.GetKeyList());
}

// No two of them are equal.
std::vector<JsonValue> ValuesOfEveryKind()
{
    return {
        JsonValue(),
        JsonValue(false),
        JsonValue(true),
        Integer(0),
        Integer(1),
        Integer(-1),
        Integer(LLONG_MAX),
        Integer(LLONG_MIN),
        String(""),
        String("1"),
        String("true"),
        String("null"),
        String("a"),
        String("{}"),
        Object({}),
        Object({{"a", JsonValue()}}),
        Object({{"a", JsonValue(true)}}),
        Object({{"a", Integer(1)}}),
        Object({{"a", String("1")}}),
        Object({{"a", Object({})}}),
        Object({{"a", Array({})}}),
        Object({{"a", Array({"a"})}}),
        Object({{"a", Object({{"b", Integer(1)}})}}),
        Object({{"a", Object({{"b", Integer(2)}})}}),
        Object({{"b", JsonValue()}}),
        Object({{"b", Integer(1)}}),
        Object({{"a", Integer(1)}, {"b", JsonValue()}}),
        Object({{"a", Integer(1)}, {"b", Integer(2)}}),
        Object({{"a", Integer(2)}, {"b", Integer(1)}}),
        Array({}),
        Array({"a"}),
        Array({"b"}),
        Array({"a", "b"}),
        Array({"b", "a"}),
    };
}

TaviString NumberedKey(int number)
{
    return Key(("key " + std::to_string(number)).c_str());
}

class Thousands : public std::numpunct<char>
{
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

TEST(JsonValue, IsNullByDefault)
{
    const JsonValue value;
    EXPECT_TRUE(IsNull(value));
    EXPECT_EQ(Json(value), "null");
    EXPECT_TRUE(IsNull(JsonValue(value)));
}

TEST(JsonValue, OnlyNullIsNull)
{
    const std::vector<JsonValue> values = ValuesOfEveryKind();
    for (std::size_t i = 1; i < values.size(); ++i)
    {
        EXPECT_FALSE(IsNull(values[i])) << Json(values[i]);
        EXPECT_FALSE(IsNull(JsonValue(values[i]))) << Json(values[i]);
    }
}

TEST(JsonValue, AssignedNullIsNull)
{
    const JsonValue null;
    for (JsonValue& value : ValuesOfEveryKind())
    {
        value = null;
        EXPECT_TRUE(IsNull(value));
    }
}

TEST(JsonValue, IntegerHasSixtyFourBits)
{
    const struct
    {
        long long integer;
        const char* json;
    } rows[] = {
        {0, "0"},
        {1, "1"},
        {-1, "-1"},
        {INT_MAX + 1LL, "2147483648"},
        {UINT_MAX + 1LL, "4294967296"},
        {(1LL << 53) + 1, "9007199254740993"},
        {LLONG_MAX, "9223372036854775807"},
        {LLONG_MIN, "-9223372036854775808"},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(Json(JsonValue(row.integer)), row.json);
        EXPECT_EQ(static_cast<long long>(JsonValue(row.integer)), row.integer);
    }
}

TEST(JsonValue, IntegerDoesNotFollowTheLocale)
{
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Thousands));
    EXPECT_EQ(Json(JsonValue(-1234567LL)), "-1234567");
    EXPECT_EQ(Text(TextValue(JsonValue(1234567LL))), "1234567");
    std::locale::global(previous);
}

TEST(JsonValue, NullTextMakesNullAndEmptyTextMakesAString)
{
    for (JsonValue& value : ValuesOfEveryKind())
    {
        SCOPED_TRACE(Json(value));
        value.SetString("");
        EXPECT_EQ(Json(value), R"("")");
        value.SetString(nullptr);
        EXPECT_TRUE(IsNull(value));
    }
}

TEST(JsonValue, StringIsACopyOfTheTextAndEndsAtTheFirstNullCharacter)
{
    char text[] = "text\0more";
    const JsonValue value = String(text);
    text[0] = 'n';
    EXPECT_EQ(Json(value), R"("text")");
}

TEST(JsonValue, CopyIsIndependentOfItsSource)
{
    JsonValue source = Object({{"a", Object({{"b", Array({"c"})}})}});
    const std::string before = Json(source);
    const JsonValue constructed(source);
    JsonValue assigned = String("old");
    assigned = source;

    source[Key("a")][Key("b")] = Integer(1);
    source[Key("d")] = Integer(2);
    EXPECT_EQ(Json(constructed), before);
    EXPECT_EQ(Json(assigned), before);

    assigned[Key("a")].RemoveKey(Key("b"));
    EXPECT_EQ(Json(assigned), R"({"a":{}})");
    EXPECT_EQ(Json(source), R"({"a":{"b":1},"d":2})");
}

TEST(JsonValue, CopyOfAnyKindIsEqualAndIndependent)
{
    for (JsonValue& source : ValuesOfEveryKind())
    {
        const std::string before = Json(source);
        SCOPED_TRACE(before);
        JsonValue constructed(source);
        JsonValue assigned = String("old");
        assigned = source;
        for (JsonValue* const copy : {&constructed, &assigned})
        {
            EXPECT_EQ(copy->Compare(source), 0);
            EXPECT_EQ(Json(*copy), before);
            (*copy)[Key("added")] = Integer(1);
            EXPECT_EQ(Json(source), before);
        }
        const JsonValue kept(source);
        source[Key("added")] = Integer(2);
        EXPECT_EQ(Json(kept), before);
    }
}

TEST(JsonValue, CopyOfAMemberOutlivesTheObject)
{
    JsonValue copy;
    {
        const JsonValue source = Object({{"a", Object({{"b", String("text")}})}});
        copy = source[Key("a")];
    }
    EXPECT_EQ(Json(copy), R"({"b":"text"})");
}

TEST(JsonValue, MoveTakesTheTreeOver)
{
    JsonValue source = Object({{"a", Object({{"b", Integer(1)}})}});
    const JsonValue* const member = &source[Key("a")];

    JsonValue constructed(std::move(source));
    EXPECT_TRUE(IsNull(source)); // NOLINT(bugprone-use-after-move): moved-from is null
    EXPECT_EQ(&constructed[Key("a")], member);

    JsonValue assigned = String("old");
    assigned = std::move(constructed);
    EXPECT_TRUE(IsNull(constructed)); // NOLINT(bugprone-use-after-move): moved-from is null
    EXPECT_EQ(&assigned[Key("a")], member);
    EXPECT_EQ(Json(assigned), R"({"a":{"b":1}})");

    assigned = JsonValue();
    EXPECT_TRUE(IsNull(assigned));
}

TEST(JsonValue, AssignmentBetweenAValueAndItsMembersIsSafe)
{
    const struct
    {
        const char* what;
        void (*assign)(JsonValue& a);
        const char* json;
    } rows[] = {
        {"a = a",
         [](JsonValue& a)
         {
             const JsonValue& same = a;
             a = same;
         },
         R"({"x":{"z":"text"},"y":[]})"},
        {"a = move(a)",
         [](JsonValue& a)
         {
             JsonValue& same = a;
             a = std::move(same);
         },
         R"({"x":{"z":"text"},"y":[]})"},
        {"a[x] = a[x]", [](JsonValue& a) { a[Key("x")] = a[Key("x")]; }, R"({"x":{"z":"text"},"y":[]})"},
        {"a[x] = a[y]", [](JsonValue& a) { a[Key("x")] = a[Key("y")]; }, R"({"x":[],"y":[]})"},
        {"a[new] = a[x]", [](JsonValue& a) { a[Key("new")] = a[Key("x")]; },
         R"({"x":{"z":"text"},"y":[],"new":{"z":"text"}})"},
        {"a[new] = a[newer]", [](JsonValue& a) { a[Key("new")] = a[Key("newer")]; },
         R"({"x":{"z":"text"},"y":[],"newer":null,"new":null})"},
        {"a = a[x]", [](JsonValue& a) { a = a[Key("x")]; }, R"({"z":"text"})"},
        {"a = a[x][z]", [](JsonValue& a) { a = a[Key("x")][Key("z")]; }, R"("text")"},
        {"a = move(a[x])", [](JsonValue& a) { a = std::move(a[Key("x")]); }, R"({"z":"text"})"},
        {"a = move(a[x][z])", [](JsonValue& a) { a = std::move(a[Key("x")][Key("z")]); }, R"("text")"},
        {"a[x] = move(a[x][z])", [](JsonValue& a) { a[Key("x")] = std::move(a[Key("x")][Key("z")]); },
         R"({"x":"text","y":[]})"},
        {"a[x] = move(a[y])", [](JsonValue& a) { a[Key("x")] = std::move(a[Key("y")]); }, R"({"x":[],"y":null})"},
        {"a[x] = a", [](JsonValue& a) { a[Key("x")] = a; }, R"({"x":{"x":{"z":"text"},"y":[]},"y":[]})"},
        {"a[x][z] = a", [](JsonValue& a) { a[Key("x")][Key("z")] = a; },
         R"({"x":{"z":{"x":{"z":"text"},"y":[]}},"y":[]})"},
        {"a[x] = a[x][z]", [](JsonValue& a) { a[Key("x")] = a[Key("x")][Key("z")]; }, R"({"x":"text","y":[]})"},
    };
    for (const auto& row : rows)
    {
        JsonValue a = Object({{"x", Object({{"z", String("text")}})}, {"y", Array({})}});
        row.assign(a);
        EXPECT_EQ(Json(a), row.json) << row.what;
    }

    JsonValue keys = Array({"first", "second"});
    keys = std::as_const(keys)[1];
    EXPECT_EQ(Json(keys), R"("second")");
}

TEST(JsonValue, SelfAssignmentKeepsReferencesToMembersValid)
{
    const struct
    {
        const char* what;
        void (*assign)(JsonValue& value, JsonValue& same);
    } rows[] = {
        {"copy", [](JsonValue& value, JsonValue& same) { value = same; }},
        {"move", [](JsonValue& value, JsonValue& same) { value = std::move(same); }},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.what);
        JsonValue object = Object({{"x", Object({{"z", String("text")}})}, {"y", Integer(1)}});
        JsonValue& outer = object[Key("x")];
        JsonValue& inner = outer[Key("z")];
        const JsonValue& other = object[Key("y")];
        row.assign(object, object);
        ASSERT_EQ(&object[Key("x")], &outer);
        ASSERT_EQ(&object[Key("y")], &other);
        ASSERT_EQ(&outer[Key("z")], &inner);
        EXPECT_EQ(Json(inner), R"("text")");
        EXPECT_EQ(Json(other), "1");
        row.assign(outer, object[Key("x")]);
        ASSERT_EQ(&outer[Key("z")], &inner);
        inner = Integer(2);
        EXPECT_EQ(Json(object), R"({"x":{"z":2},"y":1})");

        JsonValue array = Array({"first", "second"});
        const JsonValue& element = std::as_const(array)[1];
        row.assign(array, array);
        ASSERT_EQ(&std::as_const(array)[1], &element);
        EXPECT_EQ(Json(element), R"("second")");
    }
}

TEST(JsonValue, ReferenceToAMemberStaysValidWhileOthersAreAdded)
{
    JsonValue object;
    JsonValue& first = object[Key("first")];
    first = String("text");
    JsonValue& inner = object[Key("outer")][Key("inner")];
    for (int i = 0; i < 1000; ++i)
        object[NumberedKey(i)] = Integer(i);

    EXPECT_EQ(Json(first), R"("text")");
    EXPECT_EQ(&object[Key("first")], &first);
    EXPECT_EQ(&std::as_const(object)[Key("first")], &first);
    first = Integer(1);
    inner = Integer(2);
    EXPECT_EQ(static_cast<long long>(object[Key("first")]), 1);
    EXPECT_EQ(static_cast<long long>(object[Key("outer")][Key("inner")]), 2);
}

TEST(JsonValue, WritingAMemberAddsItAsNull)
{
    JsonValue object;
    EXPECT_TRUE(IsNull(object[Key("a")]));
    EXPECT_EQ(Json(object), R"({"a":null})");
    EXPECT_TRUE(IsNull(object[Key("b")][Key("c")]));
    EXPECT_EQ(Json(object), R"({"a":null,"b":{"c":null}})");
}

TEST(JsonValue, WritingAMemberTurnsWhatIsNoObjectIntoOne)
{
    for (JsonValue& value : ValuesOfEveryKind())
    {
        const std::string before = Json(value);
        if (before.front() == '{')
            continue;
        value[Key("a")] = Integer(1);
        EXPECT_EQ(Json(value), R"({"a":1})") << before;
    }
}

TEST(JsonValue, ReadingWhatIsAbsentGivesNullAndAddsNothing)
{
    for (const JsonValue& value : ValuesOfEveryKind())
    {
        const std::string before = Json(value);
        EXPECT_TRUE(IsNull(value[Key("absent")])) << before;
        EXPECT_TRUE(IsNull(value[Key("absent")][Key("a")])) << before;
        EXPECT_TRUE(IsNull(value[Key("absent")][0])) << before;
        EXPECT_EQ(Json(value), before);
    }
}

TEST(JsonValue, ReadsMembers)
{
    const JsonValue object = Object({{"a", Integer(1)}, {"b", Object({{"a", String("text")}})}, {"c", JsonValue()}});
    EXPECT_EQ(Json(object[Key("a")]), "1");
    EXPECT_EQ(Json(object[Key("b")][Key("a")]), R"("text")");
    EXPECT_TRUE(IsNull(object[Key("c")]));
    EXPECT_TRUE(IsNull(object[Key("A")]));
}

TEST(JsonValue, KeyWithoutTextIsTheEmptyKey)
{
    JsonValue object;
    object[TaviString()] = Integer(1);
    EXPECT_EQ(Json(object), R"({"":1})");
    EXPECT_EQ(static_cast<long long>(std::as_const(object)[Key("")]), 1);
    EXPECT_TRUE(object.RemoveKey(TaviString()));
    EXPECT_EQ(object.GetCount(), 0);
}

TEST(JsonValue, IndexOutOfRangeGivesNull)
{
    const JsonValue array = Array({"a", "b"});
    EXPECT_EQ(Json(array[0]), R"("a")");
    EXPECT_EQ(Json(array[1]), R"("b")");
    for (const int index : {-1, 2, INT_MIN, INT_MAX})
        EXPECT_TRUE(IsNull(array[index])) << index;
    const JsonValue none = Array({});
    EXPECT_TRUE(IsNull(none[0]));
}

TEST(JsonValue, OnlyAnArrayHasElements)
{
    for (const JsonValue& value : ValuesOfEveryKind())
    {
        const std::string before = Json(value);
        if (before.front() == '[')
            continue;
        for (const int index : {0, 1, -1})
            EXPECT_TRUE(IsNull(value[index])) << before << " at " << index;
        EXPECT_EQ(Json(value), before);
    }
}

TEST(JsonValue, CountsMembersAndElements)
{
    const struct
    {
        JsonValue value;
        int count;
    } rows[] = {
        {JsonValue(), 0},
        {JsonValue(true), 0},
        {Integer(5), 0},
        {String("text"), 0},
        {Object({}), 0},
        {Object({{"a", JsonValue()}}), 1},
        {Object({{"a", Integer(1)}, {"b", Object({{"c", Integer(1)}, {"d", Integer(2)}})}}), 2},
        {Array({}), 0},
        {Array({"a", "b", "c"}), 3},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.value.GetCount(), row.count) << Json(row.value);
}

TEST(JsonValue, KeyListHoldsTheKeysInTheOrderOfAdding)
{
    JsonValue object;
    for (const char* key : {"c", "a", "", "b", "\xC3\xA4"})
        object[Key(key)];
    EXPECT_EQ(Keys(object), "[\"c\",\"a\",\"\",\"b\",\"\xC3\xA4\"]");

    object[Key("a")] = Integer(1);
    object[Key("c")].SetString("replaced");
    EXPECT_EQ(Keys(object), "[\"c\",\"a\",\"\",\"b\",\"\xC3\xA4\"]") << "a replaced member keeps its place";

    object.RemoveKey(Key("a"));
    object.RemoveKey(Key(""));
    EXPECT_EQ(Keys(object), "[\"c\",\"b\",\"\xC3\xA4\"]");

    object[Key("a")];
    EXPECT_EQ(Keys(object), "[\"c\",\"b\",\"\xC3\xA4\",\"a\"]") << "a member added again comes last";
    EXPECT_EQ(Keys(JsonValue(object)), Keys(object)) << "a copy has the order of its source";
}

TEST(JsonValue, KeyListOfWhatIsNoObjectIsAnEmptyArray)
{
    for (const JsonValue& value : ValuesOfEveryKind())
    {
        if (Json(value).front() == '{' && value.GetCount() != 0)
            continue;
        EXPECT_EQ(Keys(value), "[]") << Json(value);
    }
}

TEST(JsonValue, RemovingAKeyTellsWhetherThereWasSuchAMember)
{
    JsonValue object = Object({{"a", Integer(1)}, {"b", JsonValue()}, {"c", Object({{"d", Integer(2)}})}});
    EXPECT_FALSE(object.RemoveKey(Key("d")));
    EXPECT_TRUE(object.RemoveKey(Key("a")));
    EXPECT_FALSE(object.RemoveKey(Key("a")));
    EXPECT_TRUE(object.RemoveKey(Key("b"))) << "a null member is a member";
    EXPECT_EQ(Json(object), R"({"c":{"d":2}})");
    EXPECT_TRUE(object.RemoveKey(Key("c")));
    EXPECT_EQ(Json(object), "{}");
}

TEST(JsonValue, RemovingAKeyFromWhatIsNoObjectChangesNothing)
{
    for (JsonValue& value : ValuesOfEveryKind())
    {
        const std::string before = Json(value);
        EXPECT_FALSE(value.RemoveKey(Key("absent"))) << before;
        EXPECT_EQ(Json(value), before);
    }
}

TEST(JsonValue, ComparesTypeAndContent)
{
    const std::vector<JsonValue> values = ValuesOfEveryKind();
    const std::vector<JsonValue> copies = ValuesOfEveryKind();
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        for (std::size_t j = 0; j < copies.size(); ++j)
        {
            const int expected = i == j ? 0 : 1;
            EXPECT_EQ(values[i].Compare(copies[j]), expected) << Json(values[i]) << " and " << Json(copies[j]);
        }
    }
}

TEST(JsonValue, ComparesObjectsWhateverTheOrderOfTheirMembers)
{
    const JsonValue inner = Object({{"x", Integer(1)}, {"y", Integer(2)}, {"z", JsonValue()}});
    const JsonValue reordered = Object({{"z", JsonValue()}, {"y", Integer(2)}, {"x", Integer(1)}});
    EXPECT_EQ(inner.Compare(reordered), 0);
    EXPECT_EQ(
        Object({{"a", inner}, {"b", JsonValue(true)}}).Compare(Object({{"b", JsonValue(true)}, {"a", reordered}})), 0);
    EXPECT_NE(inner.GetKeyList().Compare(reordered.GetKeyList()), 0) << "the order of elements counts";
}

TEST(JsonValue, JsonTextOfEachKind)
{
    JsonValue arrays;
    arrays[Key("keys")] = Array({"a", "\n"});
    arrays[Key("none")] = Array({});
    const struct
    {
        JsonValue value;
        const char* json;
    } rows[] = {
        {JsonValue(), "null"},
        {JsonValue(true), "true"},
        {JsonValue(false), "false"},
        {Integer(-7), "-7"},
        {String("text"), R"("text")"},
        {Object({}), "{}"},
        {Array({}), "[]"},
        {Array({"a", "b"}), R"(["a","b"])"},
        {Object({{"b", Integer(1)}, {"a", JsonValue()}, {"\"\t", Object({{"", String("")}})}}),
         R"({"b":1,"a":null,"\"\t":{"":""}})"},
        {arrays, R"({"keys":["a","\n"],"none":[]})"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Json(row.value), row.json);
}

TEST(JsonValue, JsonTextEscapesWhatItMustAndNothingElse)
{
    const struct
    {
        const char* text;
        const char* json;
    } rows[] = {
        {"\x01\x02\x03\x04\x05\x06\x07", R"(\u0001\u0002\u0003\u0004\u0005\u0006\u0007)"},
        {"\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F", R"(\b\t\n\u000b\f\r\u000e\u000f)"},
        {"\x10\x11\x12\x13\x14\x15\x16\x17", R"(\u0010\u0011\u0012\u0013\u0014\u0015\u0016\u0017)"},
        {"\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F", R"(\u0018\u0019\u001a\u001b\u001c\u001d\u001e\u001f)"},
        {R"("quoted")", R"(\"quoted\")"},
        {R"(C:\folder\n)", R"(C:\\folder\\n)"},
        {"\x7F", "\x7F"},
        {"</script> 'x'", "</script> 'x'"},
        {"\xC3\xA4", "\xC3\xA4"},
        {"\xC2\x80\xE2\x80\xA8", "\xC2\x80\xE2\x80\xA8"},
        {"\xE4\xB8\xAD\xE6\x96\x87", "\xE4\xB8\xAD\xE6\x96\x87"},
        {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
        {"\xEF\xBF\xBD", "\xEF\xBF\xBD"},
    };
    for (const auto& row : rows)
    {
        const std::string quoted = '"' + std::string(row.json) + '"';
        EXPECT_EQ(Json(String(row.text)), quoted);
        EXPECT_EQ(Json(Object({{row.text, JsonValue()}})), "{" + quoted + ":null}");
    }
}

TEST(JsonValue, JsonTextHasTheReplacementCharacterForWhatIsNotUtf8)
{
    const struct
    {
        const char* text;
        const char* json;
    } rows[] = {
        {"a\xFFz", "\"a\xEF\xBF\xBDz\""},
        {"\x80", "\"\xEF\xBF\xBD\""},
        {"\xC0\xAF", "\"\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"\xE4\xB8\"", "\"\xEF\xBF\xBD\\\"\""},
        {"\xF0\x9F\x98\n", "\"\xEF\xBF\xBD\\n\""},
        {"\xED\xA0\x80", "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"\xC3", "\"\xEF\xBF\xBD\""},
    };
    for (const auto& row : rows)
    {
        const JsonValue value = String(row.text);
        EXPECT_EQ(Json(value), row.json);
        EXPECT_EQ(Text(TextValue(value)), row.text) << "the value itself keeps every byte";
    }
}

TEST(JsonValue, ConvertsToTextAndInteger)
{
    const struct
    {
        JsonValue value;
        const char* text;
        long long integer;
    } rows[] = {
        {JsonValue(), nullptr, 0},
        {JsonValue(true), "true", 1},
        {JsonValue(false), "false", 0},
        {Integer(0), "0", 0},
        {Integer(-42), "-42", -42},
        {Integer(LLONG_MAX), "9223372036854775807", LLONG_MAX},
        {Integer(LLONG_MIN), "-9223372036854775808", LLONG_MIN},
        {String(""), "", 0},
        {String("say \"a\"\n"), "say \"a\"\n", 0},
        {String("12"), "12", 0},
        {Object({}), "{}", 0},
        {Object({{"a", String("b")}}), R"({"a":"b"})", 0},
        {Array({}), "[]", 0},
        {Array({"a"}), R"(["a"])", 0},
    };
    for (const auto& row : rows)
    {
        EXPECT_STREQ(TextValue(row.value).c_str(), row.text);
        EXPECT_EQ(static_cast<long long>(row.value), row.integer) << Json(row.value);
    }
}

TEST(JsonValue, HoldsManyMembers)
{
    constexpr int count = 100'000;
    JsonValue object;
    for (int i = 0; i < count; ++i)
        object[NumberedKey(i)] = Integer(i);
    EXPECT_EQ(object.GetCount(), count);

    const JsonValue copy(object);
    const JsonValue keys = copy.GetKeyList();
    ASSERT_EQ(keys.GetCount(), count);
    for (int i = 0; i < count; ++i)
    {
        const TaviString key = TextValue(keys[i]);
        ASSERT_EQ(Text(key), Text(NumberedKey(i)));
        ASSERT_EQ(static_cast<long long>(copy[key]), i);
    }
    EXPECT_EQ(object.Compare(copy), 0);

    for (int i = 0; i < count; i += 2)
        ASSERT_TRUE(object.RemoveKey(NumberedKey(i)));
    EXPECT_EQ(object.GetCount(), count / 2);
    EXPECT_NE(object.Compare(copy), 0);
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(object.RemoveKey(NumberedKey(i)), i % 2 == 1) << i;
    EXPECT_EQ(Json(object), "{}");
}

// Whatever the order of removing, for few members and for many.
TEST(JsonValue, RemovedMembersHideNoOthers)
{
    for (const int count : {20, 300})
    {
        for (const int step : {1, 7, 101, 299}) // none has a divisor in common with a count
        {
            JsonValue object;
            for (int i = 0; i < count; ++i)
                object[NumberedKey(i)] = Integer(i);
            for (int removed = 0; removed < count; ++removed)
            {
                ASSERT_TRUE(object.RemoveKey(NumberedKey(removed * step % count)));
                for (int i = 0; i < count; ++i)
                {
                    const bool isThere = !IsNull(std::as_const(object)[NumberedKey(i * step % count)]);
                    ASSERT_EQ(isThere, i > removed) << step << ": " << i << " of " << removed;
                }
            }
        }
    }
}

TEST(JsonValue, HoldsDeepTrees)
{
    constexpr int levels = 1000;
    JsonValue value = Nested(levels, String("leaf"));
    EXPECT_EQ(Json(value), NestedText(levels, R"("leaf")"));
    EXPECT_EQ(value.Compare(JsonValue(value)), 0);
    EXPECT_NE(value.Compare(Nested(levels, String("other"))), 0);
    EXPECT_NE(value.Compare(Nested(levels + 1, String("leaf"))), 0);

    JsonValue* innermost = &value;
    for (int i = 0; i < levels; ++i)
        innermost = &(*innermost)[Key("x")];
    value = std::move(*innermost);
    EXPECT_EQ(Json(value), R"("leaf")");
}

namespace
{

// Its destructor runs at the program's end, before the library is unloaded.
struct Last
{
    ~Last() { value[Key("another key of some length")] = String("another text of some length"); }

    JsonValue value;
};

Last& TheLast()
{
    static Last last;
    return last;
}

} // namespace

TEST(JsonValue, MayBeChangedAndDestroyedAtTheProgramsEnd)
{
    TheLast().value[Key("a key of some length")] = String("a text of some length");
    EXPECT_EQ(TheLast().value.GetCount(), 1);
}

TEST(JsonValue, HoldsTextsAndIntegersOfEverySize)
{
    JsonValue value;
    for (std::size_t size = 0; size < 600; ++size)
    {
        const std::string text(size, 'x');
        value.SetString(text.c_str());
        EXPECT_EQ(Text(TextValue(value)), text);
        JsonValue object;
        object[Key(text.c_str())] = value;
        const JsonValue copy = object;
        EXPECT_EQ(copy[Key(text.c_str())].Compare(value), 0) << size;
    }
    for (int bit = 0; bit < 63; ++bit)
    {
        for (const long long offset : {-1LL, 0LL, 1LL})
        {
            const long long number = (1LL << bit) + offset;
            EXPECT_EQ(static_cast<long long>(JsonValue(number)), number);
            EXPECT_EQ(static_cast<long long>(JsonValue(-number)), -number);
            EXPECT_EQ(Json(JsonValue(-number)), std::to_string(-number));
            EXPECT_EQ(JsonValue(JsonValue(number)).Compare(JsonValue(number)), 0);
        }
    }
}

// Removed members leave nothing behind in the index: it does not grow, and the others are still found.
TEST(JsonValue, MembersAreAddedAndRemovedOverAndOver)
{
    JsonValue value;
    for (int i = 0; i < 2000; ++i)
    {
        value[Key(std::to_string(i).c_str())] = JsonValue(static_cast<long long>(i));
        const bool isRemoved = value.RemoveKey(Key(std::to_string(i - 20).c_str()));
        EXPECT_EQ(isRemoved, i >= 20);
        EXPECT_EQ(value.GetCount(), std::min(i + 1, 20));
    }
    const JsonValue keys = value.GetKeyList();
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(Text(TextValue(keys[i])), std::to_string(1980 + i));
}
