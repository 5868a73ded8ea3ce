// The groups of benchmarks in reporting_benchmark; each function registers one.
#pragma once

#include "Subjects.h"

void RegisterEventBenchmarks(Subjects& subjects);
void RegisterScalingBenchmarks(CorvaneTavi& wrapper);
void RegisterJsonValueBenchmarks();
