// In place of BlocksKept.cpp where every block is to be the heap's own.
#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK::Blocks
{

void Keep() noexcept {}

} // namespace Veltrane::TaviDesktopSDK::Blocks
