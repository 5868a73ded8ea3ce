#include <check/ReportingMethods.h>

#include <array>
#include <concepts>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <tuple>
#include <type_traits>
#include <utility>

#include <telemetry/CorvaneTavi.h>
#include <telemetry/Vocabulary.h>

using nlohmann::json;

namespace Corvane
{

namespace
{

template <typename Value>
struct Sample
{
    const char* kind; // of the part of the value that differs from the first sample
    Value value;
    json argument;
};

using Tools = std::vector<NavBarToolState>;

template <typename Text>
Sample<Text> PlainText(const std::string& text)
{
    return {"text", Text(text.begin(), text.end()), text};
}

// Letters of two, three and four bytes in UTF-8. The last one is beyond U+FFFF.
constexpr const char* LettersInUtf8 = "\xC3\xBC \xD0\x96 \xE6\xBC\xA2 \xF0\x9F\x98\x80";

template <typename Text>
Sample<Text> Letters()
{
    if constexpr (std::same_as<Text, std::wstring>)
        return {"text", L"\u00FC \u0416 \u6F22 \U0001F600", LettersInUtf8};
    else
        return {"text", LettersInUtf8, LettersInUtf8};
}

template <typename Text>
Sample<Text> LongText()
{
    std::string text;
    for (int i = 0; i < 5000; ++i)
        text += static_cast<char>('a' + i % 26);
    return PlainText<Text>(text);
}

// A list of `count` tools; `lastName` and `isHidden` are the last one's.
Sample<Tools> List(const char* kind, std::size_t count, const Sample<std::wstring>& lastName, bool isHidden)
{
    const std::wstring otherName = L"first tool";
    Tools tools(count, {otherName, !isHidden});
    if (count == 0)
        return {kind, tools, {{"count", 0}}};
    tools.back() = {lastName.value, isHidden};
    return {kind, tools, {{"count", count}, {"last", {{"name", lastName.argument}, {"hidden", isHidden}}}}};
}

template <typename Value>
std::vector<Sample<Value>> Numbers(const char* kind, std::initializer_list<Value> values)
{
    std::vector<Sample<Value>> samples;
    for (const Value value : values)
        samples.push_back({kind, value, value});
    return samples;
}

// The first sample is the first call's, and differs from other parameters' by `position`, counted from 0. The samples
// of an event's name begin with the known `names`. Decimals are exact in binary with six places; those of a double do
// not fit into a float.
template <typename Value>
std::vector<Sample<Value>> SamplesOf([[maybe_unused]] std::size_t position,
                                     [[maybe_unused]] const std::vector<std::string>& names)
{
    using Limits = std::numeric_limits<Value>;
    if constexpr (std::same_as<Value, bool>)
        return {{"flag", position % 2 != 0, position % 2 != 0}, {"flag", position % 2 == 0, position % 2 == 0}};
    else if constexpr (std::signed_integral<Value>)
        return Numbers<Value>("number", {static_cast<Value>(101 + position), Limits::min(), Limits::max(), 0, -1});
    else if constexpr (std::unsigned_integral<Value>)
        return Numbers<Value>("number", {static_cast<Value>(101 + position), Limits::max(), Limits::max() / 2, 0});
    else if constexpr (std::same_as<Value, double>)
        return Numbers<Value>("decimal", {static_cast<Value>(position) + 0.5, -8388608.015625, 0.015625, 0.0});
    else if constexpr (std::same_as<Value, float>)
        return Numbers<Value>("decimal", {static_cast<Value>(position) + 0.5F, -16384.015625F, 0.015625F, 0.0F});
    else if constexpr (std::same_as<Value, std::string> || std::same_as<Value, std::wstring>)
    {
        std::vector<Sample<Value>> samples;
        samples.reserve(names.size() + 4);
        for (const std::string& name : names)
            samples.push_back(PlainText<Value>(name));
        if (names.empty())
            samples.push_back(PlainText<Value>("text " + std::to_string(position + 1)));
        samples.push_back(PlainText<Value>(""));
        samples.push_back(LongText<Value>());
        samples.push_back(Letters<Value>());
        return samples;
    }
    else if constexpr (std::same_as<Value, Tools>)
    {
        const auto last = PlainText<std::wstring>("last tool");
        return {List("number", 2, last, true),
                List("text", 2, PlainText<std::wstring>("another tool"), true),
                List("text", 2, LongText<std::wstring>(), true),
                List("text", 2, Letters<std::wstring>(), true),
                List("flag", 2, last, false),
                List("number", 1, last, true),
                List("number", 300, last, true),
                List("empty", 0, last, true)};
    }
    else
    {
        static_assert(std::same_as<Value, void>,
                      "A reporting method has a parameter of a type without samples: add them to SamplesOf().");
        return {};
    }
}

template <typename Value>
std::vector<std::string> KindsOf(const std::vector<Sample<Value>>& samples)
{
    std::vector<std::string> kinds;
    kinds.reserve(samples.size());
    for (const Sample<Value>& sample : samples)
        kinds.emplace_back(sample.kind);
    return kinds;
}

template <typename... Values, typename Report, std::size_t... Indices>
ReportingMethod MethodOf(ReportingMethod method, Report report, std::index_sequence<Indices...>)
{
    const std::array<bool, sizeof...(Values)> isFlag = {std::same_as<Values, bool>...};
    // Flags are counted apart from the others, so that they alternate.
    [[maybe_unused]] const auto position = [&isFlag](std::size_t index) -> std::size_t
    { return isFlag.at(index) ? std::accumulate(isFlag.begin(), isFlag.begin() + index, std::size_t{0}) : index; };
    [[maybe_unused]] const auto namesFor = [&method](std::size_t index)
    { return index == 0 ? method.eventNames : std::vector<std::string>(); };
    const auto samples = std::make_shared<const std::tuple<std::vector<Sample<Values>>...>>(
        SamplesOf<Values>(position(Indices), namesFor(Indices))...);
    method.samples = {KindsOf(std::get<Indices>(*samples))...};
    method.call = [samples, report](const std::vector<std::size_t>& chosen)
    {
        ProbingCall call;
        call.arguments = {std::get<Indices>(*samples).at(chosen.at(Indices)).argument...};
        call.make = [samples, report, chosen]
        { report(CorvaneTavi::Instance(), std::get<Indices>(*samples)[chosen[Indices]].value...); };
        return call;
    };
    return method;
}

// `eventNames` are plain ASCII.
template <typename... Parameters>
ReportingMethod Method(const char* name, void (CorvaneTavi::*method)(Parameters...),
                       const std::vector<std::wstring>& eventNames = {})
{
    ReportingMethod made{name, "", {}, {}, {}};
    for (const std::wstring& eventName : eventNames)
        made.eventNames.emplace_back(eventName.begin(), eventName.end());
    const auto report = [method](CorvaneTavi& tavi, const auto&... values) { (tavi.*method)(values...); };
    return MethodOf<std::remove_cvref_t<Parameters>...>(std::move(made), report,
                                                        std::index_sequence_for<Parameters...>());
}

// `method` sends an event that `prepare` has prepared from the values.
template <typename Name, typename... Parameters>
ReportingMethod PreparedMethod(const char* preparedBy, void (CorvaneTavi::*prepare)(Name, Parameters...),
                               const char* name, void (CorvaneTavi::*method)(Name))
{
    const auto report = [prepare, method](CorvaneTavi& tavi, const auto& document, const auto&... values)
    {
        (tavi.*prepare)(document, values...);
        (tavi.*method)(document);
    };
    return MethodOf<std::remove_cvref_t<Name>, std::remove_cvref_t<Parameters>...>(
        {name, preparedBy, {}, {}, {}}, report, std::index_sequence_for<Name, Parameters...>());
}

// Long texts are plain ASCII.
json Shortened(json argument)
{
    constexpr std::size_t most = 40;
    if (argument.is_object())
    {
        for (json& member : argument)
            member = Shortened(member);
    }
    else if (argument.is_string() && argument.get_ref<const std::string&>().size() > most)
    {
        const std::string text = argument;
        argument = text.substr(0, most / 2) + "... (" + std::to_string(text.size()) + " letters)";
    }
    return argument;
}

} // namespace

const std::vector<ReportingMethod>& ReportingMethods()
{
    static const std::vector<ReportingMethod> methods = {
        Method("TrackCommandInvoked", &CorvaneTavi::TrackCommandInvoked),
        Method("TrackFileInput", &CorvaneTavi::TrackFileInput),
        Method("TrackUpdateLicense", &CorvaneTavi::TrackUpdateLicense),
        Method("TrackUserEvent", &CorvaneTavi::TrackUserEvent, {Vocabulary::CV_COMMAND_FIRED}),
        Method("TrackExportPublish", &CorvaneTavi::TrackExportPublish),
        Method("TrackHelpDialog", &CorvaneTavi::TrackHelpDialog),
        Method("TrackMaterialSelection", &CorvaneTavi::TrackMaterialSelection),
        Method("TrackReport", &CorvaneTavi::TrackReport),
        Method("TrackResultsUsage", &CorvaneTavi::TrackResultsUsage),
        Method("TrackAnalysisPropertyChanged", &CorvaneTavi::TrackAnalysisPropertyChanged),
        Method("TrackAnalysisDetails", &CorvaneTavi::TrackAnalysisDetails),
        Method("TrackMeshSize", &CorvaneTavi::TrackMeshSize),
        Method("TrackMeshPropertyChanged", &CorvaneTavi::TrackMeshPropertyChanged),
        Method("TrackMoldPropertyChanged", &CorvaneTavi::TrackMoldPropertyChanged),
        Method("Track3DCKeyPressed", &CorvaneTavi::Track3DCKeyPressed),
        Method("Track3DCModeActivated", &CorvaneTavi::Track3DCModeActivated),
        Method("Track3DCUsed", &CorvaneTavi::Track3DCUsed),
        Method("TrackNavBarClosed", &CorvaneTavi::TrackNavBarClosed),
        Method("TrackNavBarCustomizationClicked", &CorvaneTavi::TrackNavBarCustomizationClicked),
        Method("TrackNavBarDragMove", &CorvaneTavi::TrackNavBarDragMove,
               {Vocabulary::COMMON_ZEPH_NB_DRAGGED, Vocabulary::COMMON_ZEPH_NB_MOVED}),
        Method("TrackNavBarMoreControlsClicked", &CorvaneTavi::TrackNavBarMoreControlsClicked),
        Method("TrackNavBarStartup", &CorvaneTavi::TrackNavBarStartup),
        Method("TrackNavBarToolClicked", &CorvaneTavi::TrackNavBarToolClicked),
        Method("TrackNavBarToolRightClicked", &CorvaneTavi::TrackNavBarToolRightClicked),
        Method("TrackSteerWheelActivated", &CorvaneTavi::TrackSteerWheelActivated),
        Method("TrackSteerWheelClicked", &CorvaneTavi::TrackSteerWheelClicked),
        Method("TrackSteerWheelDragBegin", &CorvaneTavi::TrackSteerWheelDragBegin),
        Method("TrackSteerWheelKeyUp", &CorvaneTavi::TrackSteerWheelKeyUp),
        Method("TrackSteerWheelLoadOption", &CorvaneTavi::TrackSteerWheelLoadOption),
        Method("TrackSteerWheelWelcomeClicked", &CorvaneTavi::TrackSteerWheelWelcomeClicked),
        Method("TrackDorvelClicked", &CorvaneTavi::TrackDorvelClicked),
        Method("TrackDorvelDragBegin", &CorvaneTavi::TrackDorvelDragBegin),
        Method("TrackDorvelLoadOption", &CorvaneTavi::TrackDorvelLoadOption),
        Method("TrackPPR", &CorvaneTavi::TrackPPR),
        PreparedMethod("AddDocument", &CorvaneTavi::AddDocument, "StartTrackFileChange",
                       &CorvaneTavi::StartTrackFileChange),
    };
    return methods;
}

std::vector<ProbingCall> ProbingCalls(const ReportingMethod& method)
{
    std::vector<std::size_t> chosen(method.samples.size());
    std::vector<ProbingCall> calls = {method.call(chosen)};
    for (std::size_t parameter = 0; parameter < chosen.size(); ++parameter)
    {
        for (chosen[parameter] = 1; chosen[parameter] < method.samples[parameter].size(); ++chosen[parameter])
        {
            calls.push_back(method.call(chosen));
            calls.back().parameter = parameter;
            calls.back().sample = method.samples[parameter][chosen[parameter]];
        }
        chosen[parameter] = 0;
    }
    return calls;
}

std::string TestName(const std::string& method)
{
    return method.starts_with("Track") ? method.substr(5) : method;
}

std::string CallText(const ReportingMethod& method, const ProbingCall& call)
{
    std::string arguments;
    for (const json& argument : call.arguments)
        arguments += (arguments.empty() ? "" : ", ") + Shortened(argument).dump();
    if (method.preparedBy.empty())
        return method.name + "(" + arguments + ")";
    return method.preparedBy + "(" + arguments + "), " + method.name + "(" + Shortened(call.arguments.at(0)).dump() +
           ")";
}

} // namespace Corvane
