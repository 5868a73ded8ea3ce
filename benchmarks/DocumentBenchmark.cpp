// What the report of a changed document costs while COUNT documents are registered, a power of ten. All are reported in
// turn, each far from the one before. A program of its own, since documents stay registered until the process exits.
// The counter `register_ns` is the time that registering all of them took, once.
//
//     build/benchmark/benchmarks/document_benchmark COUNT --benchmark_repetitions=9
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "Discard.h"
#include "Subjects.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const std::size_t count = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (count == 0)
    {
        std::cerr << "How many documents?" << std::endl;
        return 2;
    }

    CorvaneTavi& wrapper = CorvaneTavi::Instance();
    std::uint64_t delivered = 0;
    UseCallback(DiscardValue, &delivered);
    std::vector<std::wstring> names;
    for (std::size_t i = 0; i < count; ++i)
        names.push_back(L"document" + std::to_wstring(i));
    const auto start = std::chrono::steady_clock::now();
    for (const std::wstring& name : names)
        wrapper.AddDocument(name, L"sdy", 48'211, 0);
    const std::chrono::duration<double, std::nano> registering = std::chrono::steady_clock::now() - start;

    const auto report = [&](benchmark::State& state)
    {
        constexpr std::size_t step = 61'803; // coprime to a power of ten, so that every document has its turn
        const std::uint64_t before = delivered;
        std::size_t next = 0;
        for (auto _ : state)
        {
            wrapper.StartTrackFileChange(names[next]);
            next = (next + step) % count;
        }
        if (std::cmp_not_equal(delivered - before, state.iterations()))
            state.SkipWithError("payloads are missing");
        state.counters["register_ns"] = registering.count();
    };
    benchmark::RegisterBenchmark(("scaling/documents/" + std::to_string(count)).c_str(), report);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
