// A start that runs out of memory half-way leaves the wrapper not started, so that the next access tries again. Runs on
// the faulty library, whose first Initialize() gives no identifier, and which logs its calls to the file that is given.
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <new>
#include <string>
#include <vector>

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

// Whether a start succeeds with that many allocations; the next one fails.
bool StartsWith(CorvaneTavi& tavi, int allocations)
{
    allocationsLeft = allocations;
    isLimited = true;
    try
    {
        tavi.StartSdk();
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

} // namespace

int main(int, char** argv)
{
    std::ofstream(argv[1]).close(); // emptied: the library appends to it
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    int allocations = 0;
    while (!StartsWith(tavi, allocations))
    {
        tavi.TrackNavBarClosed();
        ++allocations;
    }
    tavi.TrackNavBarClosed();

    std::vector<std::string> identifiers = SentIdentifiers(argv[1]);
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
