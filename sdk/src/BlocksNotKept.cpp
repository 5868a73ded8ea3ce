// In place of BlocksKept.cpp where every block is to be the heap's own.
#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK::Blocks
{

void Keep() noexcept {}

void Hide(void*, std::size_t) noexcept {}
void Show(void*, std::size_t) noexcept {}

} // namespace Veltrane::TaviDesktopSDK::Blocks
