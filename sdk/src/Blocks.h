// Memory for texts, values and members. Small blocks that are freed are kept for the next ones of their size, so that a
// report takes next to nothing from the heap once a few have been sent. For one thread, as all of the library.
//
// No misuse of a kept block can be seen from outside. Where such is looked for, by the sanitizers first of all,
// TAVI_SDK_KEEPS_NO_BLOCKS is defined for Blocks.cpp, and every block is the heap's own.
#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <utility>

namespace Veltrane::TaviDesktopSDK
{

struct KeptBlocks
{
    struct Block
    {
        Block* next;
    };

    static constexpr std::size_t Step = 16;
    static constexpr std::size_t LargestSize = 256; // in bytes

    Block* first;
    int room; // for so many more; never any where no blocks are kept

    // By size in steps. Never destroyed: values may go after everything else.
    using BySize = std::array<KeptBlocks, LargestSize / Step + 1>;
    static BySize all;
};

// Aligned for every type. Throws std::bad_alloc.
inline void* AllocateBlock(std::size_t size)
{
    const std::size_t steps = (size + KeptBlocks::Step - 1) / KeptBlocks::Step;
    if (size <= KeptBlocks::LargestSize)
    {
        KeptBlocks& kept = KeptBlocks::all[steps];
        if (kept.first != nullptr)
        {
            ++kept.room;
            return std::exchange(kept.first, kept.first->next);
        }
    }
    const std::size_t allocated = steps * KeptBlocks::Step;
    return ::operator new(allocated);
}

// `size` is that of the allocation.
inline void FreeBlock(void* block, std::size_t size) noexcept
{
    if (size <= KeptBlocks::LargestSize)
    {
        KeptBlocks& kept = KeptBlocks::all[(size + KeptBlocks::Step - 1) / KeptBlocks::Step];
        if (kept.room > 0)
        {
            --kept.room;
            kept.first = new (block) KeptBlocks::Block{kept.first};
            return;
        }
    }
    ::operator delete(block);
}

// For what is made by new and delete.
struct InBlocks
{
    // NOLINTNEXTLINE(misc-new-delete-overloads,cert-dcl54-cpp): deleted by the form that is given the size
    static void* operator new(std::size_t size) { return AllocateBlock(size); }
    static void operator delete(void* memory, std::size_t size) noexcept { FreeBlock(memory, size); }
};

} // namespace Veltrane::TaviDesktopSDK
