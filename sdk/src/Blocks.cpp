#include "Blocks.h"

#include <array>
#include <new>
#include <utility>

namespace Veltrane::TaviDesktopSDK
{

#if defined(TAVI_SDK_KEEPS_NO_BLOCKS)

void* AllocateBlock(std::size_t size)
{
    return ::operator new(size);
}

void FreeBlock(void* block, std::size_t) noexcept
{
    ::operator delete(block);
}

#else

namespace
{

constexpr std::size_t Step = 16;
constexpr std::size_t LargestKept = 256; // a size, in bytes
constexpr unsigned MostKept = 128;       // blocks of one size

struct FreedBlock
{
    FreedBlock* next;
};

struct KeptBlocks
{
    FreedBlock* first;
    unsigned count;
};

// By size in steps. Never destroyed: values may go after everything else.
constinit std::array<KeptBlocks, LargestKept / Step + 1> kept{};

constexpr std::size_t StepsOf(std::size_t size)
{
    return (size + Step - 1) / Step;
}

} // namespace

void* AllocateBlock(std::size_t size)
{
    if (size <= LargestKept)
    {
        KeptBlocks& blocks = kept[StepsOf(size)];
        if (blocks.first != nullptr)
        {
            --blocks.count;
            return std::exchange(blocks.first, blocks.first->next);
        }
    }
    return ::operator new(StepsOf(size) * Step);
}

void FreeBlock(void* block, std::size_t size) noexcept
{
    if (size <= LargestKept)
    {
        KeptBlocks& blocks = kept[StepsOf(size)];
        if (blocks.count < MostKept)
        {
            ++blocks.count;
            blocks.first = new (block) FreedBlock{blocks.first};
            return;
        }
    }
    ::operator delete(block);
}

#endif

} // namespace Veltrane::TaviDesktopSDK
