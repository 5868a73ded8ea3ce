#include <atomic>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK::Blocks
{

void Keep() noexcept
{
    static constinit std::atomic<bool> hasKeeper = false;
    if (!hasKeeper.exchange(true))
        isKeeper = true;
}

} // namespace Veltrane::TaviDesktopSDK::Blocks
