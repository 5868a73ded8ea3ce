// Any bytes as the product file: the reader returns, leaks nothing of its own, and has four identifiers without a null
// character.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include <telemetry/UpiProductInfo.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const int file = memfd_create("upiconfig", 0);
    if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size))
        std::abort();
    const UpiProductInfo info = UpiProductInfo::FromFile("/proc/self/fd/" + std::to_string(file));
    close(file);
    for (const std::string* identifier :
         {&info.GetProductLine(), &info.GetRelease(), &info.GetMaster(), &info.GetBuild()})
    {
        if (identifier->find('\0') != std::string::npos)
            std::abort();
    }
    return 0;
}
