// Memory for texts, values and members. Small blocks that are freed are pooled and reused for the same size, so that
// after the first few reports hardly anything is allocated from the heap. Not thread-safe, like the whole library.
//
// Tools that check the use of the heap, such as the sanitizers, cannot see that a pooled block is used after it was
// freed. For them Blocks.cpp is compiled with TAVI_SDK_KEEPS_NO_BLOCKS, and every block is allocated from and freed to
// the heap.
#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <utility>

namespace Veltrane::TaviDesktopSDK
{

struct FreeList
{
    struct Block
    {
        Block* next;
    };

    static constexpr std::size_t Step = 16;
    static constexpr std::size_t LargestSize = 256; // in bytes

    Block* first;
    int capacity; // remaining, in blocks; always 0 in a build that keeps no blocks

    // Indexed by size / Step, rounded up. Never destroyed: values may be destroyed after everything else.
    using BySize = std::array<FreeList, LargestSize / Step + 1>;
    static BySize all;
};

// Aligned as by the global operator new. Throws std::bad_alloc.
inline void* AllocateBlock(std::size_t size)
{
    const std::size_t steps = (size + FreeList::Step - 1) / FreeList::Step;
    if (size <= FreeList::LargestSize)
    {
        FreeList& list = FreeList::all[steps];
        if (list.first != nullptr)
        {
            ++list.capacity;
            return std::exchange(list.first, list.first->next);
        }
    }
    return ::operator new(steps* FreeList::Step);
}

// `size` is the one that the block was allocated with.
inline void FreeBlock(void* block, std::size_t size) noexcept
{
    if (size <= FreeList::LargestSize)
    {
        FreeList& list = FreeList::all[(size + FreeList::Step - 1) / FreeList::Step];
        if (list.capacity > 0)
        {
            --list.capacity;
            list.first = new (block) FreeList::Block{list.first};
            return;
        }
    }
    ::operator delete(block);
}

// Base of classes whose objects are created by new and deleted by delete.
struct BlockAllocated
{
    // NOLINTNEXTLINE(misc-new-delete-overloads,cert-dcl54-cpp): its counterpart is the delete that takes the size
    static void* operator new(std::size_t size) { return AllocateBlock(size); }
    static void operator delete(void* memory, std::size_t size) noexcept { FreeBlock(memory, size); }
};

} // namespace Veltrane::TaviDesktopSDK
