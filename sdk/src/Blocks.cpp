#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

#if defined(TAVI_SDK_KEEPS_NO_BLOCKS)
constexpr int MostKept = 0;
#else
constexpr int MostKept = 128; // of one size
#endif

consteval KeptBlocks::BySize None()
{
    KeptBlocks::BySize none{};
    for (KeptBlocks& kept : none)
        kept.room = MostKept;
    return none;
}

} // namespace

constinit KeptBlocks::BySize KeptBlocks::all = None();

} // namespace Veltrane::TaviDesktopSDK
