// Heap allocations, and bytes allocated, per report in the steady state, as JSON. Fails when the library's allocations
// are not counted.
//
//     build/benchmark/benchmarks/allocation_benchmark
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <string>

#include <nlohmann/json.hpp>

#include "CountedAllocations.h"
#include "Events.h"
#include "Subjects.h"

using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

constexpr std::uint64_t WarmUpCalls = 1000;
constexpr std::uint64_t CountedCalls = 10'000;

AllocationCount operator-(const AllocationCount& after, const AllocationCount& before)
{
    return {after.allocations - before.allocations, after.bytes - before.bytes, after.releases - before.releases};
}

// Whether the library's copy of a text is counted. If it is not, the counts below mean nothing.
bool CountsTheLibrarysAllocations()
{
    const std::string text(std::size_t{1} << 24, 'x');
    const AllocationCount before = CountedAllocations();
    {
        TaviString copy;
        copy.SetString(text.c_str());
        if (copy.size() != text.size())
            return false;
    }
    const AllocationCount within = CountedAllocations() - before;
    return within.allocations > 0 && within.bytes >= text.size() && within.releases > 0;
}

} // namespace

int main()
{
    if (!CountsTheLibrarysAllocations())
    {
        std::cerr << "An allocation inside the library is not counted" << std::endl;
        return 1;
    }

    Subjects subjects;
    nlohmann::json counts;
    subjects.ForEach(
        [&]<typename Reporter>(const char* subject, Reporter& reporter)
        {
            for (const Event<Reporter>& event : Events<Reporter>)
            {
                for (std::uint64_t i = 0; i < WarmUpCalls; ++i)
                    event.report(reporter);
                const AllocationCount before = CountedAllocations();
                for (std::uint64_t i = 0; i < CountedCalls; ++i)
                    event.report(reporter);
                const AllocationCount within = CountedAllocations() - before;
                const auto perCall = [](std::uint64_t count) { return static_cast<double>(count) / CountedCalls; };
                counts[event.name][subject] = {{"allocations", perCall(within.allocations)},
                                               {"bytes", perCall(within.bytes)},
                                               {"releases", perCall(within.releases)}};
            }
        });
    std::cout << counts.dump(2) << std::endl;
    return 0;
}
