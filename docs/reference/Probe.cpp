#include "Probe.h"

#include <concepts>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

#include <telemetry/CorvaneTavi.h>

namespace
{

template <typename Value>
struct Sample
{
    Kind kind; // of the part of the value that differs from the first sample
    Value value;
};

using Tools = std::vector<NavBarToolState>;

// Not a concept: compilers explain an unsatisfied concept part by part.
template <typename Value>
constexpr bool HasSamples = std::is_arithmetic_v<Value> || std::is_same_v<Value, std::string> ||
                            std::is_same_v<Value, std::wstring> || std::is_same_v<Value, Tools>;

template <typename Value>
std::vector<Sample<Value>> SamplesOf()
{
    if constexpr (std::same_as<Value, bool>)
        return {{Kind::Flag, false}, {Kind::Flag, true}};
    else if constexpr (std::integral<Value>)
        return {{Kind::Integer, 1}, {Kind::Integer, 2}};
    else if constexpr (std::floating_point<Value>)
        return {{Kind::Decimal, Value{0.25}}, {Kind::Decimal, Value{0.5}}};
    else if constexpr (std::same_as<Value, Tools>)
        return {{Kind::Text, {{L"a", false}}},
                {Kind::Text, {{L"b", false}}},
                {Kind::Flag, {{L"a", true}}},
                {Kind::Integer, {{L"a", false}, {L"a", false}}}};
    else
        return {{Kind::Text, Value(1, 'a')}, {Kind::Text, Value(1, 'b')}};
}

void AddOrigins(ProbedMethod& method, const std::vector<Leaf>& leaves, std::size_t parameter, Kind kind)
{
    if (leaves.size() != method.leaves.size())
        throw std::runtime_error(method.name + " sends other keys for other arguments");
    for (std::size_t i = 0; i < leaves.size(); ++i)
    {
        if (leaves[i].json != method.leaves[i].json)
            method.origins.push_back({leaves[i], parameter, kind});
    }
}

template <typename Arguments, typename Report>
std::vector<Leaf> LeavesFor(const Arguments& arguments, Report report)
{
    const auto call = [report](const auto&... values) { std::invoke(report, CorvaneTavi::Instance(), values...); };
    const Recording recording = Record([&arguments, call] { std::apply(call, arguments); });
    return LeavesOf(recording.payloads.at(0));
}

template <std::size_t Index, typename Arguments, typename Report>
void ProbeParameter(ProbedMethod& method, Arguments arguments, Report report)
{
    for (const auto& sample : SamplesOf<std::tuple_element_t<Index, Arguments>>())
    {
        std::get<Index>(arguments) = sample.value;
        AddOrigins(method, LeavesFor(arguments, report), Index, sample.kind);
    }
}

template <typename... Values, typename Report, std::size_t... Indices>
ProbedMethod ProbeReport(const char* name, const char* takesParametersOf, Report report,
                         std::index_sequence<Indices...>)
{
    const std::tuple<Values...> arguments(SamplesOf<Values>().front().value...);
    ProbedMethod method{name, takesParametersOf, LeavesFor(arguments, report), {}};
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
