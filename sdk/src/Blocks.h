// Memory for texts, values and members. Small blocks that are freed are kept and used again for the same size, so that
// after the first few reports hardly anything is allocated from the heap. Not thread-safe, as the whole library.
//
// Tools that check the use of the heap, such as the sanitizers, cannot see a kept block being used after it was freed.
// For them Blocks.cpp is compiled with TAVI_SDK_KEEPS_NO_BLOCKS, and every block is allocated from and freed to the
// heap.
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
    int room; // how many more blocks may be kept; always 0 when none are kept

    // Indexed by size / Step, rounded up. Never destroyed: values may be destroyed after everything else.
    using BySize = std::array<KeptBlocks, LargestSize / Step + 1>;
    static BySize all;
};

// Aligned for every type without an alignment of its own. Throws std::bad_alloc.
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

// `size` is the one that the block was allocated with.
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

// Base of classes whose objects are created by new and deleted by delete.
struct InBlocks
{
    // NOLINTNEXTLINE(misc-new-delete-overloads,cert-dcl54-cpp): its counterpart is the delete that takes the size
    static void* operator new(std::size_t size) { return AllocateBlock(size); }
    static void operator delete(void* memory, std::size_t size) noexcept { FreeBlock(memory, size); }
};

} // namespace Veltrane::TaviDesktopSDK
