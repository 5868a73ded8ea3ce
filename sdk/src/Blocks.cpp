#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK::Blocks
{

constinit Store store{};
constinit thread_local bool isKeeper = false;

} // namespace Veltrane::TaviDesktopSDK::Blocks
