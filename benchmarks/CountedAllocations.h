// Every heap allocation of the process, the telemetry library's included: malloc and its kin are this program's own,
// which count and pass on to the C library's. A reallocation counts as one allocation of its new size.
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
