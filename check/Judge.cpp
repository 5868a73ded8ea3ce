#include <check/Judge.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <string_view>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <check/Text.h>

using nlohmann::json;

namespace Corvane
{

namespace
{

// Six decimals, without trailing zeros and without a trailing point.
std::string DecimalText(double number)
{
    std::string text = std::to_string(number);
    text.erase(text.find_last_not_of('0') + 1);
    text.erase(text.find_last_not_of('.') + 1);
    return text;
}

// A list is sent as its last element's text and flag, and the number of all elements.
json PartOf(const json& argument, const std::string& kind)
{
    if (!argument.is_object())
        return argument;
    if (kind == "number")
        return argument.at("count");
    const json last = argument.value("last", json::object());
    const auto part =
        std::find_if(last.begin(), last.end(),
                     [&kind](const json& member) { return kind == "flag" ? member.is_boolean() : member.is_string(); });
    return part != last.end() ? *part : json();
}

// The value that is sent for an argument.
json ValueOf(const DocumentKey& key, const json& argument)
{
    json part = PartOf(argument, key.kind);
    if (key.kind == "flag")
        return part.get<bool>() ? "True" : "False";
    if (key.format == "decimal")
        return DecimalText(part.get<double>());
    if (key.kind != "number")
        return part;
    // An unsigned number that is sent as a signed one keeps its bits.
    const json number = key.format == "signed" ? json(part.get<std::int64_t>()) : json(part.get<std::uint64_t>());
    return key.type == "integer" ? number : json(number.dump());
}

// std::nullopt unless the number is all of the text.
template <typename Number>
std::optional<Number> NumberIn(const std::string& text)
{
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

template <typename Number>
bool IsNumber(const std::string& text)
{
    const std::optional<Number> number = NumberIn<Number>(text);
    return number && std::to_string(*number) == text;
}

std::string WithPlace(const std::string& place, const std::string& name)
{
    return place.empty() ? name : place + ": " + name;
}

// The form that `value` should have; empty when it has it.
std::string WantedForm(const DocumentKey& key, const json& value)
{
    if (key.type == "integer")
        return value.is_number_integer() && !(key.format == "unsigned" && value < 0) ? "" : "an integer";
    if (!value.is_string())
        return "a string";
    const auto& text = value.get_ref<const std::string&>();
    if (key.kind == "flag")
        return text == "True" || text == "False" ? "" : R"("True" or "False")";
    if (key.format == "decimal") // the library decides how it writes one
        return NumberIn<double>(text) ? "" : "a decimal number as text";
    if (key.format == "signed")
        return IsNumber<std::int64_t>(text) ? "" : "a number as text";
    if (key.format == "unsigned")
        return IsNumber<std::uint64_t>(text) ? "" : "a number as text that is not negative";
    return "";
}

struct Comparison
{
    const DocumentEvent& event;
    const json& payload;
    const std::vector<json>* arguments; // null: not known
    const ProductFile& product;
    bool emptyIsNone;
    std::set<std::string> places = {};
    std::vector<std::string> absentOfTheProduct = {};
    Findings findings = {};

    Findings Result()
    {
        for (const DocumentKey& key : event.keys)
        {
            if (key.place.empty())
                Compare(key, payload);
            else if (places.insert(key.place).second)
                CompareObject(key.place);
        }
        const auto isOfTheProduct = [](const DocumentKey& key) { return key.isOfTheProduct; };
        if (!absentOfTheProduct.empty() && static_cast<std::ptrdiff_t>(absentOfTheProduct.size()) ==
                                               std::count_if(event.keys.begin(), event.keys.end(), isOfTheProduct))
            absentOfTheProduct = {"the product's description"};
        for (const std::string& absent : absentOfTheProduct)
            findings.remarks.push_back(absent + " did not come");
        for (const auto& [name, value] : payload.items())
        {
            if (!places.contains(name) && FindKey(event, "", name) == nullptr)
                findings.remarks.push_back(JsonTextOf(name) + " is a key that docs/events.json does not have");
        }
        return findings;
    }

    // Null when the value is not known.
    json Expected(const DocumentKey& key) const
    {
        if (key.kind == "fixed")
            return key.fixed;
        if (arguments == nullptr || key.writtenByLibrary)
            return nullptr;
        if (key.kind == "product")
            return product.levels.at(key.level);
        return ValueOf(key, arguments->at(key.parameter.value()));
    }

    bool IsLeftOut(const DocumentKey& key) const
    {
        if (!key.leftOut)
            return false;
        if (arguments != nullptr)
            return Expected(*FindKey(event, key.leftOut->place, key.leftOut->key)) == key.leftOut->value;
        const auto object = payload.find(key.leftOut->place);
        return object != payload.end() && object->is_object() &&
               object->value(key.leftOut->key, json()) == key.leftOut->value;
    }

    // Whether the library may have left the key out because its text is empty.
    bool MayBeEmpty(const DocumentKey& key) const
    {
        const json expected = Expected(key);
        return emptyIsNone && key.kind == "text" && (expected.is_null() || expected == json(""));
    }

    void CompareObject(const std::string& place)
    {
        const auto object = payload.find(place);
        const bool isThere = object != payload.end();
        if (!isThere && std::all_of(event.keys.begin(), event.keys.end(),
                                    [&](const DocumentKey& key) { return key.place != place || MayBeEmpty(key); }))
        {
            findings.remarks.emplace_back(EmptyTextIsLeftOut);
            return;
        }
        if (!isThere || !object->is_object())
        {
            AddFault(findings.faults, place, json::object(), "an object", isThere ? &*object : nullptr);
            return;
        }
        for (const DocumentKey& key : event.keys)
        {
            if (key.place == place)
                Compare(key, *object);
        }
        for (const auto& [name, value] : object->items())
        {
            const DocumentKey* const key = FindKey(event, place, name);
            if (key == nullptr || IsLeftOut(*key))
                findings.faults.push_back(
                    {WithPlace(place, name), nullptr, value,
                     WithPlace(place, JsonTextOf(name)) + " is not expected, sent " + JsonTextOf(value)});
        }
    }

    void Compare(const DocumentKey& key, const json& object)
    {
        if (IsLeftOut(key))
            return;
        const auto found = object.find(key.name);
        const json* const sent = found != object.end() ? &*found : nullptr;
        const std::string name = WithPlace(key.place, key.name);
        if (sent == nullptr && MayBeEmpty(key))
        {
            findings.remarks.emplace_back(EmptyTextIsLeftOut);
            return;
        }
        const json expected = Expected(key);
        const std::string wantedForm = sent != nullptr && expected.is_null() ? WantedForm(key, *sent) : "";
        if (key.isOfTheProduct || key.writtenByLibrary)
        {
            if (sent == nullptr && key.isOfTheProduct)
                absentOfTheProduct.push_back(name);
            else if (sent == nullptr)
                findings.remarks.push_back(name + " did not come");
            else if (key.type == "integer" ? !sent->is_number_integer() : !sent->is_string())
                findings.remarks.push_back(name + " came in another form, as " + JsonTextOf(*sent));
            else if (!wantedForm.empty())
                AddFault(findings.faults, name, nullptr, "no negative number", sent);
            else if (!expected.is_null() && *sent != expected)
                AddFault(findings.productFaults, name, expected, JsonTextOf(expected), sent);
            return;
        }
        if (sent == nullptr && expected.is_null())
            findings.faults.push_back({name, nullptr, nullptr, name + ": not sent"});
        // 12.0 is not 12 here.
        else if (expected.is_null()
                     ? !wantedForm.empty()
                     : sent == nullptr || *sent != expected || sent->is_number_float() != expected.is_number_float())
            AddFault(findings.faults, name, expected, expected.is_null() ? wantedForm : JsonTextOf(expected), sent);
    }

    static void AddFault(std::vector<Fault>& faults, const std::string& name, const json& expected,
                         const std::string& expectedText, const json* sent)
    {
        faults.push_back({name, expected, sent != nullptr ? *sent : json(),
                          name + ": expected " + expectedText + ", " +
                              (sent != nullptr ? "sent " + JsonTextOf(*sent) : "not sent")});
    }

    static constexpr const char* EmptyTextIsLeftOut =
        "The library takes \"\" for no text: a key whose text is empty is "
        "not sent";
};

} // namespace

std::vector<std::string> Findings::Messages() const
{
    std::vector<std::string> messages;
    for (const std::vector<Fault>* const some : {&faults, &productFaults})
    {
        for (const Fault& fault : *some)
            messages.push_back(fault.message);
    }
    return messages;
}

Findings Judge::OfCall(const DocumentEvent& event, const std::vector<json>& arguments, const json& payload) const
{
    if (payload.is_null())
        return {{{"", json::object(), payload,
                  "the payload is null: the whitelist may not have been downloaded, may have expired, or may lack the "
                  "waypoint or an attribute"}}};
    if (!payload.is_object())
        return {{{"", json::object(), payload, "the payload is no object: " + JsonTextOf(payload)}}};
    return Comparison{event, payload, &arguments, product, emptyIsNone}.Result();
}

Findings Judge::OfCaptured(const DocumentEvent& event, const json& payload) const
{
    return Comparison{event, payload, nullptr, product, emptyIsNone}.Result();
}

bool LibraryTakesEmptyForNone()
{
    using namespace Veltrane::TaviDesktopSDK;
    TaviString text;
    text.SetString("");
    TaviString wideText;
    wideText.SetStringW(L"");
    JsonValue value;
    value.SetString("");
    return text.c_str() == nullptr || wideText.c_str() == nullptr || value.Compare(JsonValue()) == 0;
}

} // namespace Corvane
