// Long random sequences of operations on JsonValue, each step checked against a model: an independent JSON library's
// values. A seed gives the same sequence on every platform. The environment variable CVTAVI_MODEL_SEEDS is a number of
// further seeds to run.
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

// Its members keep their order. Strings are raw bytes, as in the value.
using Model = nlohmann::ordered_json;

constexpr int StepsOfASeed = 2000;
constexpr std::size_t LargestTree = 300;

const std::string LongText(300, 'l');

// Pieces of text, the second half of them not UTF-8.
const std::string Pieces[] = {"a",
                              "null",
                              "say \"x\"",
                              "C:\\dir\\",
                              "/",
                              "\x01\x07\b\t\n\v\f\r\x1B\x1F\x7F",
                              "\xC3\xA4\xC3\x9F",
                              "\xE4\xB8\xAD\xE6\x96\x87",
                              "\xF0\x9F\x98\x80",
                              "\xEF\xBF\xBD\xEF\xBF\xBF",
                              "\xF4\x8F\xBF\xBF",
                              LongText,
                              "\x80",
                              "\xBF\xC3",
                              "\xC0\xAF",
                              "\xE4\xB8",
                              "\xE0\x80\x80",
                              "\xED\xA0\x80",
                              "x\xF0\x9F\x98",
                              "\xF0\x80\x80",
                              "\xF4\x90\x80\x80",
                              "\xF8\x88\xFF"};

const std::string Keys[] = {
    "",
    "a",
    "b",
    "c",
    "d",
    "A",
    "\"key\"",
    "back\\slash",
    "\n",
    "\xC3\xA4",
    "\xE4\xB8",
    "\xFF",
    "\xE4\xB8\xAD",
    "\x7F",
    LongText,
};

// Draws bounded numbers without the standard distributions, which differ between platforms.
class Random
{
public:
    explicit Random(std::uint64_t seed) : engine(seed) {}

    // Below `bound`.
    std::size_t Draw(std::size_t bound) { return static_cast<std::size_t>(engine() % bound); }

    bool OneIn(std::size_t count) { return Draw(count) == 0; }

    template <typename List>
    auto& From(List& list)
    {
        return *std::next(std::begin(list), static_cast<std::ptrdiff_t>(Draw(std::size(list))));
    }

    std::string DrawText()
    {
        std::string text;
        for (std::size_t count = Draw(4); count > 0; --count)
            text +=
                OneIn(4) ? std::string(1, static_cast<char>(static_cast<unsigned char>(1 + Draw(255)))) : From(Pieces);
        return text;
    }

private:
    std::mt19937_64 engine;
};

// As JSON text, with U+FFFD for each maximal ill-formed sequence.
std::string Dump(const Model& model)
{
    return model.dump(-1, ' ', false, Model::error_handler_t::replace);
}

// Equality whatever the order of members.
bool AreEqual(const Model& left, const Model& right)
{
    return nlohmann::json(left) == nlohmann::json(right);
}

std::size_t NodesOf(const Model& model)
{
    std::size_t count = 1;
    if (model.is_structured())
        for (const Model& child : model)
            count += NodesOf(child);
    return count;
}

Model KeyListOf(const Model& model)
{
    Model keys = Model::array();
    if (model.is_object())
        for (const auto& member : model.items())
            keys.push_back(member.key());
    return keys;
}

// NOLINTNEXTLINE(bugprone-exception-escape): moving a model does not throw
struct Slot
{
    JsonValue value;
    Model model;
};

// A value somewhere in a slot's tree and what it is in the model. The model's side lasts until a member is added
// elsewhere in the slot's tree.
struct Place
{
    JsonValue& value;
    Model& model;
};

struct ConstPlace
{
    const JsonValue& value;
    const Model& model;
};

// Throughout the tree.
void ExpectAsModelled(ConstPlace place)
{
    const auto& [value, model] = place;
    const std::string json = Dump(model);
    ASSERT_EQ(Json(value), json);
    EXPECT_EQ(IsNull(value), model.is_null());
    EXPECT_EQ(value.GetCount(), model.is_structured() ? static_cast<int>(model.size()) : 0);
    EXPECT_EQ(Json(value.GetKeyList()), Dump(KeyListOf(model)));

    const TaviString text = TextValue(value);
    EXPECT_EQ(text.c_str() == nullptr, model.is_null());
    EXPECT_EQ(Text(text), model.is_null() ? "" : model.is_string() ? model.get<std::string>() : json);

    const long long integer = model.is_number() ? model.get<long long>() : model == true ? 1 : 0;
    EXPECT_EQ(static_cast<long long>(value), integer);

    for (std::size_t i = 0; model.is_array() && i < model.size(); ++i)
        ExpectAsModelled({value[static_cast<int>(i)], model[i]});
    if (model.is_object())
        for (const auto& member : model.items())
            ExpectAsModelled({value[Key(member.key().c_str())], member.value()});
}

void ExpectComparedAsModelled(ConstPlace left, ConstPlace right)
{
    const int expected = AreEqual(left.model, right.model) ? 0 : 1;
    EXPECT_EQ(left.value.Compare(right.value), expected) << Dump(left.model) << '\n' << Dump(right.model);
    EXPECT_EQ(right.value.Compare(left.value), expected) << Dump(left.model) << '\n' << Dump(right.model);
}

// One seed's run over a pool of values.
class JsonRun
{
public:
    explicit JsonRun(std::uint64_t seed) : random(seed) {}

    // The name of the operation.
    const char* Step()
    {
        const std::size_t at = random.Draw(pool.size());
        first = &pool[at];
        second = &pool[(at + 1 + random.Draw(pool.size() - 1)) % pool.size()];
        const auto& [name, operation] = random.From(Operations);
        (this->*operation)();
        for (Slot* const slot : {first, second})
        {
            EXPECT_EQ(Json(slot->value), Dump(slot->model));
            if (NodesOf(slot->model) > LargestTree)
                *slot = Slot();
        }
        return name;
    }

    void Finish()
    {
        for (const Slot& slot : pool)
            ExpectAsModelled({slot.value, slot.model});
    }

private:
    std::string DrawKey(const Model& model)
    {
        if (model.is_object() && !model.empty() && random.OneIn(2))
            return std::next(model.begin(), static_cast<std::ptrdiff_t>(random.Draw(model.size()))).key();
        return random.From(Keys);
    }

    // The empty key now and then through a string without text.
    TaviString KeyOf(const std::string& key)
    {
        return key.empty() && random.OneIn(2) ? TaviString() : Key(key.c_str());
    }

    Place MemberOf(Place place, const std::string& key)
    {
        if (!place.model.is_object())
            place.model = Model::object();
        return {place.value[KeyOf(key)], place.model[key]};
    }

    // A value at or below the given place; members that are missing are added.
    Place WalkTo(Place place, std::size_t depth)
    {
        return depth > 0 ? WalkTo(MemberOf(place, DrawKey(place.model)), depth - 1) : place;
    }

    Place AnyPlace(Slot& slot) { return WalkTo({slot.value, slot.model}, random.OneIn(8) ? 0 : 1 + random.Draw(5)); }

    // The same for reading: nothing is added, and a member that is missing is null.
    ConstPlace ReadTo(ConstPlace place, std::size_t depth)
    {
        static const Model null;
        EXPECT_EQ(IsNull(place.value), place.model.is_null());
        if (depth == 0 || (!place.model.is_structured() && random.OneIn(2)))
            return place;
        // Elements by index and members by key; now and then the wrong one of the two, which finds nothing.
        if (place.model.is_array() != random.OneIn(6))
        {
            const int count = static_cast<int>(place.model.size());
            const int indices[] = {-1, count, INT_MIN, INT_MAX};
            const int index = count == 0 || random.OneIn(4)
                                  ? random.From(indices)
                                  : static_cast<int>(random.Draw(static_cast<std::size_t>(count)));
            const bool found = place.model.is_array() && index >= 0 && index < count;
            return ReadTo({place.value[index], found ? place.model[static_cast<std::size_t>(index)] : null}, depth - 1);
        }
        const std::string key = DrawKey(place.model);
        const auto found = place.model.find(key);
        return ReadTo({place.value[KeyOf(key)], found != place.model.end() ? *found : null}, depth - 1);
    }

    ConstPlace AnyReading(const Slot& slot)
    {
        return ReadTo({slot.value, slot.model}, random.OneIn(8) ? 0 : 1 + random.Draw(5));
    }

    void SetScalar(Place place)
    {
        static constexpr long long Integers[] = {0, 1, -1, INT_MIN, INT_MAX, UINT_MAX, LLONG_MIN, LLONG_MAX};
        switch (random.Draw(6))
        {
        case 0:
            place.value.SetString(nullptr);
            place.model = nullptr;
            break;
        case 1:
            place.model = random.OneIn(2);
            place.value = JsonValue(place.model.get<bool>());
            break;
        case 2:
        case 3:
            place.model = random.From(Integers);
            place.value = JsonValue(place.model.get<long long>());
            break;
        default:
            place.model = random.DrawText();
            place.value.SetString(place.model.get_ref<const std::string&>().c_str());
        }
    }

    void Copy(ConstPlace source, Place target)
    {
        Model copy = source.model; // one may be part of the other
        if (random.OneIn(2))
            target.value = source.value;
        else
            target.value = JsonValue(source.value);
        target.model = std::move(copy);
    }

    // The target must not be part of the source.
    void Move(Place source, Place target)
    {
        if (random.OneIn(2))
            target.value = std::move(source.value);
        else
            target.value = JsonValue(std::move(source.value));
        Model taken = std::exchange(source.model, nullptr);
        target.model = std::move(taken);
    }

    // An equal value, to whose objects the members were added in another order.
    Slot Rebuilt(ConstPlace place)
    {
        Slot slot{place.value, place.model};
        Model keys = KeyListOf(place.model);
        for (const Model& key : keys)
            slot.value.RemoveKey(Key(key.get<std::string>().c_str()));
        if (!keys.empty())
            slot.model.clear();
        while (!keys.empty())
        {
            const std::size_t at = random.Draw(keys.size());
            const auto key = keys[at].get<std::string>();
            keys.erase(at);
            Slot member = Rebuilt({place.value[KeyOf(key)], place.model[key]});
            Move({member.value, member.model}, MemberOf({slot.value, slot.model}, key));
        }
        return slot;
    }

    void Set() { SetScalar(AnyPlace(*first)); }

    void AddMember() { AnyPlace(*first); }

    void Remove() { RemoveAlong({first->value, first->model}, random.Draw(5)); }

    // Follows members that exist, so that it reads values of every kind and changes none.
    void RemoveAlong(Place place, std::size_t depth)
    {
        const std::string key = DrawKey(place.model);
        const bool found = place.model.is_object() && place.model.contains(key);
        if (depth > 0 && found)
            return RemoveAlong(MemberOf(place, key), depth - 1);
        EXPECT_EQ(place.value.RemoveKey(KeyOf(key)), found);
        if (found)
            place.model.erase(key);
    }

    void Read()
    {
        ExpectAsModelled(AnyReading(*first));
        ExpectAsModelled({first->value, first->model});
    }

    void CopyBetweenSlots()
    {
        const ConstPlace source = AnyReading(*second);
        Copy(source, AnyPlace(*first));
    }

    // Either may be part of the other, or the same value.
    void CopyWithinSlot()
    {
        const Place target = AnyPlace(*first);
        Copy(AnyReading(*first), target);
    }

    void MoveBetweenSlots()
    {
        const Place source = AnyPlace(*second);
        Move(source, AnyPlace(*first));
    }

    void MoveMemberOut()
    {
        const Place target = AnyPlace(*first);
        Move(WalkTo(target, random.Draw(4)), target);
    }

    void KeepReferenceWhileMembersAreAdded()
    {
        const Place parent = AnyPlace(*first);
        const std::string key = DrawKey(parent.model);
        JsonValue& kept = MemberOf(parent, key).value;
        for (std::size_t count = random.Draw(12); count > 0; --count)
            SetScalar(MemberOf(parent, std::to_string(random.Draw(100))));
        EXPECT_EQ(&kept, &parent.value[KeyOf(key)]);
        SetScalar({kept, parent.model[key]});
    }

    void StoreKeyList()
    {
        const Place target = AnyPlace(*first);
        const ConstPlace source = AnyReading(random.OneIn(2) ? *first : *second);
        Model keys = KeyListOf(source.model);
        target.value = source.value.GetKeyList();
        target.model = std::move(keys);
    }

    void Compare()
    {
        const ConstPlace left = AnyReading(*first);
        ExpectComparedAsModelled(left, AnyReading(*second));
        ExpectComparedAsModelled(left, AnyReading(*first));
    }

    // Equal values, and values that differ in a few places.
    void CompareWithAlmostTheSame()
    {
        const ConstPlace original = {first->value, first->model};
        Slot other = Rebuilt(original);
        ExpectComparedAsModelled(original, {other.value, other.model});
        Slot* const previous = std::exchange(first, &other);
        for (std::size_t count = 1 + random.Draw(4); count > 0; --count)
            (this->*random.From(SmallChanges))();
        first = previous;
        ExpectComparedAsModelled(original, {other.value, other.model});
    }

    using Operation = void (JsonRun::*)();

    static constexpr Operation SmallChanges[] = {&JsonRun::Set, &JsonRun::AddMember, &JsonRun::Remove};

    static constexpr std::pair<const char*, Operation> Operations[] = {
        {"set a scalar", &JsonRun::Set},
        {"add a member", &JsonRun::AddMember},
        {"remove a key", &JsonRun::Remove},
        {"read", &JsonRun::Read},
        {"copy between slots", &JsonRun::CopyBetweenSlots},
        {"copy within a slot", &JsonRun::CopyWithinSlot},
        {"move between slots", &JsonRun::MoveBetweenSlots},
        {"move a member out", &JsonRun::MoveMemberOut},
        {"keep a reference while members are added", &JsonRun::KeepReferenceWhileMembersAreAdded},
        {"store a key list", &JsonRun::StoreKeyList},
        {"compare", &JsonRun::Compare},
        {"compare with almost the same", &JsonRun::CompareWithAlmostTheSame},
    };

    Random random;
    std::array<Slot, 6> pool;
    Slot* first = nullptr;
    Slot* second = nullptr;
};

} // namespace

TEST(Model, JsonValueAgreesWithAnotherLibraryThroughRandomOperations)
{
    const char* const further = std::getenv("CVTAVI_MODEL_SEEDS");
    const std::uint64_t seeds = 20 + (further != nullptr ? std::strtoull(further, nullptr, 10) : 0);
    for (std::uint64_t seed = 1; seed <= seeds; ++seed)
    {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        JsonRun run(seed);
        for (int step = 1; step <= StepsOfASeed; ++step)
        {
            const char* const operation = run.Step();
            if (HasFailure())
                FAIL() << "in step " << step << ": " << operation;
        }
        run.Finish();
        if (HasFailure())
            FAIL() << "at the end";
    }
}
