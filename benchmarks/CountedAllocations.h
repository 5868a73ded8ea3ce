// Counts every heap allocation of the process, the telemetry library's included: this program replaces malloc() and its
// relatives by functions that count and then call the C library's. A reallocation counts as one allocation of its new
// size.
#pragma once

#include <cstdint>

struct AllocationCount
{
    std::uint64_t allocations = 0;
    std::uint64_t bytes = 0;
    std::uint64_t releases = 0;
};

// Since the start of the process.
AllocationCount CountedAllocations();
