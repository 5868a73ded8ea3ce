// Runs the benchmarks, after a check that every comparison makes the wrapper's payloads.
#include <benchmark/benchmark.h>

#include "Benchmarks.h"
#include "SelfCheck.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv) || !ComparisonsMakeTheWrappersPayloads())
        return 1;

    RegisterJsonValueBenchmarks(); // before the Subjects, whose callback it would replace
    Subjects subjects;
    RegisterEventBenchmarks(subjects);
    RegisterScalingBenchmarks(subjects.wrapper);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
