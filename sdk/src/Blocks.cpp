#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

#if defined(TAVI_SDK_KEEPS_NO_BLOCKS)
constexpr std::size_t MostKept = 0;
#else
constexpr std::size_t MostKept = 65'536; // bytes for each size; a megabyte in all
#endif

static consteval FreeList::BySize EmptyLists()
{
    FreeList::BySize lists{};
    for (std::size_t steps = 1; steps < lists.size(); ++steps)
        lists[steps].capacity = static_cast<int>(MostKept / (steps * FreeList::Step));
    return lists;
}

constinit FreeList::BySize FreeList::all = EmptyLists();

} // namespace Veltrane::TaviDesktopSDK
