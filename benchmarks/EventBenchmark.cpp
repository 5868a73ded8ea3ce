// The time of a report, from the typed call until a callback that discards the finished payload has returned: by the
// wrapper, and by other ways to make the same payload.
//
//     build/benchmark/benchmarks/reporting_benchmark --benchmark_filter=event/ --benchmark_repetitions=9
//         --benchmark_enable_random_interleaving=true
#include <cstdint>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "Benchmarks.h"
#include "Events.h"

void RegisterEventBenchmarks(Subjects& subjects)
{
    subjects.ForEach(
        [&subjects]<typename Reporter>(const char* subject, Reporter& reporter)
        {
            for (const Event<Reporter>& event : Events<Reporter>)
            {
                benchmark::RegisterBenchmark(
                    (std::string("event/") + event.name + "/" + subject).c_str(),
                    [&subjects, &reporter, event](benchmark::State& state)
                    {
                        const std::uint64_t before = subjects.delivered;
                        for (auto _ : state)
                            event.report(reporter);
                        if (std::cmp_not_equal(subjects.delivered - before, state.iterations()))
                            state.SkipWithError("payloads are missing");
                    });
            }
        });
}
