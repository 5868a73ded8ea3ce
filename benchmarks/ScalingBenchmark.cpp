// What a report costs as its arguments grow. How it grows with the documents is in DocumentBenchmark.cpp.
//
//     build/benchmark/benchmarks/reporting_benchmark --benchmark_filter=scaling/ --benchmark_repetitions=9
//         --benchmark_enable_random_interleaving=true
#include <cstddef>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Benchmarks.h"

namespace
{

void Text(benchmark::State& state, CorvaneTavi& wrapper)
{
    const std::wstring text(static_cast<std::size_t>(state.range(0)), L'x');
    for (auto _ : state)
        wrapper.Track3DCKeyPressed(text);
}

void Tools(benchmark::State& state, CorvaneTavi& wrapper)
{
    const std::wstring position = L"positionName";
    std::vector<NavBarToolState> tools;
    for (int i = 0; i < state.range(0); ++i)
        tools.push_back({L"tool" + std::to_wstring(i), i % 2 == 0});
    for (auto _ : state)
        wrapper.TrackNavBarStartup(true, false, position, false, tools);
}

} // namespace

void RegisterScalingBenchmarks(CorvaneTavi& wrapper)
{
    benchmark::RegisterBenchmark("scaling/text", [&wrapper](benchmark::State& state) { Text(state, wrapper); })
        ->Arg(0)
        ->Arg(10)
        ->Arg(100)
        ->Arg(10'000);
    benchmark::RegisterBenchmark("scaling/tools", [&wrapper](benchmark::State& state) { Tools(state, wrapper); })
        ->Arg(0)
        ->Arg(10)
        ->Arg(1000)
        ->Arg(10'000)
        ->Arg(100'000);
}
