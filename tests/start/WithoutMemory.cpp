// What happens when the program runs out of memory. Runs on the faulty library, which has a heap of its own.
//
// With the name of a file: a start that runs out half-way leaves the wrapper not started, so that the next access tries
// again. The library's first Initialize() gives no identifier, and the library logs its calls to that file.
//
// Without: a recorder that runs out says so, and no exception leaves through the library.
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <new>
#include <string>
#include <vector>

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

// Whether the call succeeds with that many allocations; the next one fails.
template <typename Call>
bool SucceedsWith(int allocations, const Call& call)
{
    allocationsLeft = allocations;
    isLimited = true;
    try
    {
        call();
        isLimited = false;
        return true;
    }
    catch (const std::bad_alloc&)
    {
        isLimited = false;
        return false;
    }
}

// The identifier of each event, from the library's log.
std::vector<std::string> SentIdentifiers(const char* log)
{
    const std::string before = R"("hostProduct":")";
    std::vector<std::string> identifiers;
    std::ifstream calls(log);
    for (std::string line; std::getline(calls, line);)
    {
        if (line.find(R"("function":"TrackEvent")") == std::string::npos)
            continue;
        const std::size_t begin = line.find(before) + before.size();
        identifiers.push_back(line.substr(begin, line.find('"', begin) - begin));
    }
    return identifiers;
}

int CheckStart(const char* log)
{
    std::ofstream(log).close(); // emptied: the library appends to it
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    int allocations = 0;
    while (!SucceedsWith(allocations, [&tavi] { tavi.StartSdk(); }))
    {
        tavi.TrackNavBarClosed();
        ++allocations;
    }
    tavi.TrackNavBarClosed();

    std::vector<std::string> identifiers = SentIdentifiers(log);
    bool isRight = allocations > 0 && identifiers.size() == static_cast<std::size_t>(allocations) + 1;
    for (std::size_t i = 0; isRight && i + 1 < identifiers.size(); ++i)
        isRight = identifiers[i].empty();
    if (isRight && identifiers.back() == "faulty-host-product")
        return 0;
    std::cerr << "Started after " << allocations << " starts without memory. The events' identifiers:\n";
    for (const std::string& identifier : identifiers)
        std::cerr << '"' << identifier << "\"\n";
    return 1;
}

// The first report that succeeds is one for which the recorder alone lacked memory.
int CheckRecorder()
{
    const Corvane::PayloadRecorder recorder;
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    int allocations = 0;
    while (!SucceedsWith(allocations, [&tavi] { tavi.TrackNavBarClosed(); }))
        ++allocations;
    const bool hadLostAny = recorder.HasLostAny();
    const std::size_t count = recorder.Payloads().size();
    tavi.TrackNavBarClosed();
    if (hadLostAny && count == 0 && recorder.Payloads().size() == 1)
        return 0;
    std::cerr << "With " << allocations << " allocations the recorder " << (hadLostAny ? "lost a payload" : "lost none")
              << " and kept " << count << "; in the end " << recorder.Payloads().size() << "\n";
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    return argc > 1 ? CheckStart(argv[1]) : CheckRecorder();
}
