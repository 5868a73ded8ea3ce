#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

#if defined(TAVI_SDK_KEEPS_NO_BLOCKS)
constexpr std::size_t MostKept = 0;
#else
constexpr std::size_t MostKept = 65'536; // of one size, in bytes; a megabyte in all
#endif

consteval KeptBlocks::BySize None()
{
    KeptBlocks::BySize none{};
    for (std::size_t steps = 1; steps < none.size(); ++steps)
        none[steps].room = static_cast<int>(MostKept / (steps * KeptBlocks::Step));
    return none;
}

} // namespace

constinit KeptBlocks::BySize KeptBlocks::all = None();

} // namespace Veltrane::TaviDesktopSDK
