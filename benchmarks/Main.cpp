// Runs after the check that nothing is compared with something that does less.
#include <benchmark/benchmark.h>

#include "Benchmarks.h"
#include "SelfCheck.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv) || !ComparisonsMakeTheWrappersPayloads())
        return 1;

    RegisterJsonValueBenchmarks(); // has a callback of its own, for now
    Subjects subjects;
    RegisterEventBenchmarks(subjects);
    RegisterScalingBenchmarks(subjects.wrapper);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
