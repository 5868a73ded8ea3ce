// Memory for texts and nodes. Small blocks that are freed are kept for the next ones of their size, so that a report
// takes next to nothing from the heap once a few have been sent. For one thread, as all of the library.
//
// No misuse of a kept block can be seen from outside. Where such is looked for, by the sanitizers first of all,
// TAVI_SDK_KEEPS_NO_BLOCKS is defined for Blocks.cpp, and every block is the heap's own.
#pragma once

#include <cstddef>

namespace Veltrane::TaviDesktopSDK
{

// Aligned for every type. Throws std::bad_alloc.
void* AllocateBlock(std::size_t size);

// `size` is that of the allocation.
void FreeBlock(void* block, std::size_t size) noexcept;

// For the standard library's containers.
template <typename Value>
struct BlockAllocator
{
    using value_type = Value;

    BlockAllocator() = default;
    template <typename Other>
    BlockAllocator(const BlockAllocator<Other>&) noexcept // NOLINT(google-explicit-constructor): containers convert it
    {
    }

    Value* allocate(std::size_t count) { return static_cast<Value*>(AllocateBlock(count * sizeof(Value))); }
    void deallocate(Value* values, std::size_t count) noexcept { FreeBlock(values, count * sizeof(Value)); }

    friend bool operator==(const BlockAllocator&, const BlockAllocator&) { return true; }
};

} // namespace Veltrane::TaviDesktopSDK
