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

void Hide(void*, std::size_t) noexcept {}
void Show(void*, std::size_t) noexcept {}

} // namespace Veltrane::TaviDesktopSDK::Blocks
