// In place of BlocksKept.cpp under the sanitizers: every block is the heap's own, and what is hidden is theirs to
// watch.
#include <sanitizer/asan_interface.h>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK::Blocks
{

void Keep() noexcept {}

void Hide(void* memory, std::size_t size) noexcept
{
    ASAN_POISON_MEMORY_REGION(memory, size);
}

void Show(void* memory, std::size_t size) noexcept
{
    ASAN_UNPOISON_MEMORY_REGION(memory, size);
}

} // namespace Veltrane::TaviDesktopSDK::Blocks
