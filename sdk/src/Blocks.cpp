#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

#if defined(TAVI_SDK_KEEPS_NO_BLOCKS)
constexpr std::size_t MostKept = 0;
#else
constexpr std::size_t MostKept = 65'536; // bytes, for each size; a megabyte for all sizes
#endif

consteval KeptBlocks::BySize NothingKept()
{
    KeptBlocks::BySize empty{};
    for (std::size_t steps = 1; steps < empty.size(); ++steps)
        empty[steps].room = static_cast<int>(MostKept / (steps * KeptBlocks::Step));
    return empty;
}

} // namespace

constinit KeptBlocks::BySize KeptBlocks::all = NothingKept();

} // namespace Veltrane::TaviDesktopSDK
