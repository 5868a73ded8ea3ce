// The library's values alone: objects of many members and of many levels, and the text of the large event's payload
// beside that of the same tree by another library. The times include the destruction of what a benchmark makes.
//
//     build/benchmark/benchmarks/reporting_benchmark --benchmark_filter='(members|levels|payload_text)/'
//         --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
#include <cstddef>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Benchmarks.h"
#include "Events.h"
#include "Shapes.h"

using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

template <typename Shape>
void Build(benchmark::State& state)
{
    const Shape shape(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(shape.Build());
}

template <typename Shape>
void Copy(benchmark::State& state)
{
    const JsonValue object = Shape(static_cast<std::size_t>(state.range(0))).Build();
    for (auto _ : state)
        benchmark::DoNotOptimize(JsonValue(object));
}

template <typename Shape>
void Compare(benchmark::State& state)
{
    const JsonValue object = Shape(static_cast<std::size_t>(state.range(0))).Build();
    const JsonValue other = Shape(static_cast<std::size_t>(state.range(0))).Build();
    for (auto _ : state)
    {
        if (object.Compare(other) != 0)
            state.SkipWithError("equal values compare unequal");
    }
}

template <typename Shape>
void LookUp(benchmark::State& state)
{
    const Shape shape(static_cast<std::size_t>(state.range(0)));
    const JsonValue object = shape.Build();
    for (auto _ : state)
    {
        if (!shape.LookUp(object))
            state.SkipWithError("a member is missing");
    }
}

template <typename Shape>
void Text(benchmark::State& state)
{
    const JsonValue object = Shape(static_cast<std::size_t>(state.range(0))).Build();
    for (auto _ : state)
        benchmark::DoNotOptimize(object.GetJsonString());
}

template <typename Shape>
void RegisterShape(const std::string& name, const std::vector<int>& sizes)
{
    const auto registerOne = [&](const char* action, void (*run)(benchmark::State&))
    {
        benchmark::internal::Benchmark* const registered =
            benchmark::RegisterBenchmark((name + "/" + action).c_str(), run);
        for (const int size : sizes)
            registered->Arg(size);
    };
    registerOne("build", Build<Shape>);
    registerOne("copy", Copy<Shape>);
    registerOne("compare", Compare<Shape>);
    registerOne("look_up", LookUp<Shape>);
    registerOne("text", Text<Shape>);
}

int KeepPayload(const JsonValue& payload, void* context, JsonValue&)
{
    *static_cast<JsonValue*>(context) = payload;
    return 0;
}

JsonValue LargePayload()
{
    JsonValue payload;
    UseCallback(KeepPayload, &payload);
    Events<CorvaneTavi>[2].report(CorvaneTavi::Instance());
    UseCallback(nullptr, nullptr);
    return payload;
}

void WrapperText(benchmark::State& state, const JsonValue& payload)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(payload.GetJsonString());
}

void NlohmannText(benchmark::State& state, const nlohmann::json& payload)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(payload.dump());
}

} // namespace

void RegisterJsonValueBenchmarks()
{
    RegisterShape<Members>("members", {10, 100, 1000, 10'000, 100'000});
    RegisterShape<Levels>("levels", {1, 10, 100, 1000});

    const JsonValue payload = LargePayload();
    const auto tree = nlohmann::json::parse(payload.GetJsonString().c_str());
    benchmark::RegisterBenchmark("payload_text/wrapper",
                                 [payload](benchmark::State& state) { WrapperText(state, payload); });
    benchmark::RegisterBenchmark("payload_text/nlohmann",
                                 [tree](benchmark::State& state) { NlohmannText(state, tree); });
}
