#include "Probe.h"

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

#include <telemetry/CorvaneTavi.h>

#include "Recording.h"

namespace
{

template <typename Value>
struct Sample
{
    const char* kind; // of the part of the value that differs from the first sample
    Value value;
};

using Tools = std::vector<NavBarToolState>;

// Not a concept: compilers explain an unsatisfied concept part by part.
template <typename Value>
constexpr bool HasSamples = std::is_arithmetic_v<Value> || std::is_same_v<Value, std::string> ||
                            std::is_same_v<Value, std::wstring> || std::is_same_v<Value, Tools>;

// The extreme of an integer tells whether what is sent can be negative.
template <std::integral Value>
constexpr Value Extreme()
{
    return std::signed_integral<Value> ? std::numeric_limits<Value>::min() : std::numeric_limits<Value>::max();
}

template <typename Value>
std::vector<Sample<Value>> SamplesOf()
{
    if constexpr (std::same_as<Value, bool>)
        return {{"flag", false}, {"flag", true}};
    else if constexpr (std::integral<Value>)
        return {{"number", 1}, {"number", 2}, {"number", Extreme<Value>()}};
    else if constexpr (std::floating_point<Value>)
        return {{"decimal", Value{0.25}}, {"decimal", Value{0.5}}};
    else if constexpr (std::same_as<Value, Tools>)
        return {{"text", {{L"a", false}}},
                {"text", {{L"b", false}}},
                {"flag", {{L"a", true}}},
                {"number", {{L"a", false}, {L"a", false}}},
                {"empty", {}}};
    else
        return {{"text", Value(1, 'a')}, {"text", Value(1, 'b')}};
}

template <typename Arguments, typename Report>
Veltrane::TaviDesktopSDK::JsonValue PayloadOf(const char* name, const Arguments& arguments, Report report)
{
    const auto call = [report](const auto&... values) { std::invoke(report, CorvaneTavi::Instance(), values...); };
    Recording recording = Record([&arguments, call] { std::apply(call, arguments); });
    if (recording.payloads.size() != 1)
        throw std::runtime_error(std::string(name) + " sends " + std::to_string(recording.payloads.size()) +
                                 " events, not one");
    return std::move(recording.payloads.front());
}

template <std::size_t Index, typename Arguments, typename Report>
void ProbeParameter(ProbedMethod& method, Arguments arguments, Report report)
{
    for (const auto& sample : SamplesOf<std::tuple_element_t<Index, Arguments>>())
    {
        std::get<Index>(arguments) = sample.value;
        method.calls.push_back({Index, sample.kind, PayloadOf(method.name.c_str(), arguments, report)});
    }
}

template <typename... Values, typename Report, std::size_t... Indices>
ProbedMethod ProbeReport(const char* name, const char* takesParametersOf, Report report,
                         std::index_sequence<Indices...>)
{
    const std::tuple<Values...> arguments(SamplesOf<Values>().front().value...);
    ProbedMethod method{name, takesParametersOf, {}};
    method.calls.push_back({std::nullopt, "", PayloadOf(name, arguments, report)});
    (ProbeParameter<Indices>(method, arguments, report), ...);
    return method;
}

template <typename Value>
constexpr bool CheckParameter()
{
    static_assert(HasSamples<Value>,
                  "A reporting method has a parameter of a type without samples: add them to SamplesOf().");
    return HasSamples<Value>;
}

template <typename... Parameters>
ProbedMethod Probe(const char* name, void (CorvaneTavi::*method)(Parameters...))
{
    if constexpr ((CheckParameter<std::remove_cvref_t<Parameters>>() && ...))
        return ProbeReport<std::remove_cvref_t<Parameters>...>(name, name, method,
                                                               std::index_sequence_for<Parameters...>());
    else
        return {};
}

// The only method whose event is prepared by another method.
ProbedMethod ProbeDocument()
{
    const auto report = [](CorvaneTavi& tavi, const std::wstring& name, const std::wstring& extension,
                           std::uint64_t size, std::uint32_t source)
    {
        tavi.AddDocument(name, extension, size, source);
        tavi.StartTrackFileChange(name);
    };
    return ProbeReport<std::wstring, std::wstring, std::uint64_t, std::uint32_t>("StartTrackFileChange", "AddDocument",
                                                                                 report, std::make_index_sequence<4>());
}

} // namespace

std::vector<ProbedMethod> ProbeMethods()
{
    return {
#include "ReportingMethods.inc"
        ProbeDocument(),
    };
}
