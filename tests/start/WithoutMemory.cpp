// A start that runs out of memory half-way leaves the wrapper not started, so that the next access tries again; a
// recorder that runs out of memory reports it, and no exception leaves through the library. Runs on the faulty library,
// which has its own heap.
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <new>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

namespace
{

constinit bool isLimited = false;
constinit int allocationsLeft = 0;

} // namespace

void* operator new(std::size_t size)
{
    if (isLimited && allocationsLeft-- == 0)
        throw std::bad_alloc();
    if (void* const memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace
{

// Makes the call until it succeeds: with one more allocation each time, the next of which fails. Returns how often the
// call failed.
template <typename Call>
int FailuresOf(const Call& call)
{
    for (int allocations = 0;; ++allocations)
    {
        allocationsLeft = allocations;
        isLimited = true;
        try
        {
            call();
            isLimited = false;
            return allocations;
        }
        catch (const std::bad_alloc&)
        {
            isLimited = false;
        }
    }
}

} // namespace

int main()
{
    const int failedStarts = FailuresOf([] { CorvaneTavi::Instance(); });
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    const std::string productKey = tavi.GetProductKey();

    // The first report that succeeds is one for which the recorder alone lacked memory.
    const Corvane::PayloadRecorder recorder;
    FailuresOf([&tavi] { tavi.TrackNavBarClosed(); });
    const bool hadLostAny = recorder.HasLostAny();
    const std::size_t count = recorder.Payloads().size();
    tavi.TrackNavBarClosed();

    if (failedStarts > 0 && productKey == "undefined&undefined&undefined&undefined" && hadLostAny && count == 0 &&
        recorder.Payloads().size() == 1)
        return 0;
    std::cerr << "After " << failedStarts << " failed starts the product key is \"" << productKey
              << "\". Without memory the recorder lost " << (hadLostAny ? "a" : "no") << " payload and kept " << count
              << "; in the end it has " << recorder.Payloads().size() << ".\n";
    return 1;
}
