// Memory for texts and nodes. The thread that starts the library, which is the one that reports, keeps the small blocks
// that it frees for its next event, so that a report takes none from the heap once a few have been sent; for any other
// thread a block is the heap's. A block may be freed by another thread than the one that allocated it, at any time. No
// misuse of a kept block can be seen from outside: where such is looked for, by the sanitizers first of all, none is
// kept.
#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <utility>

namespace Veltrane::TaviDesktopSDK
{

namespace Blocks
{

constexpr std::size_t Step = 16;
constexpr std::size_t LargestKept = 1024;

struct Free
{
    Free* next;
};

// The kept blocks of one size. Each size has room of its own: no value, however large, takes that of the events.
struct Kept
{
    Free* first = nullptr;
    std::size_t size = 0; // of all, in bytes
};
constexpr std::size_t LargestSize = 8'192; // half a megabyte over all sizes

// By steps. Without destructors, so that both are there for values that go after everything else.
using Store = std::array<Kept, LargestKept / Step + 1>;
extern constinit Store store;
extern constinit thread_local bool isKeeper; // whether the store is this thread's

// Makes the store the calling thread's, unless it is another's.
void Keep() noexcept;

// Where misuse is looked for, `memory` is not to be used from one call to the other, although it is not freed.
void Hide(void* memory, std::size_t size) noexcept;
void Show(void* memory, std::size_t size) noexcept;

constexpr std::size_t StepsOf(std::size_t size)
{
    return (size + Step - 1) / Step;
}

} // namespace Blocks

// Aligned for every type. Throws std::bad_alloc.
inline void* AllocateBlock(std::size_t size)
{
    const std::size_t steps = Blocks::StepsOf(size);
    if (size <= Blocks::LargestKept && Blocks::isKeeper)
    {
        Blocks::Kept& kept = Blocks::store[steps];
        if (kept.first != nullptr)
        {
            kept.size -= steps * Blocks::Step;
            return std::exchange(kept.first, kept.first->next);
        }
    }
    return ::operator new(steps* Blocks::Step);
}

// `size` is that of the allocation.
inline void FreeBlock(void* block, std::size_t size) noexcept
{
    const std::size_t steps = Blocks::StepsOf(size);
    if (size <= Blocks::LargestKept && Blocks::isKeeper)
    {
        Blocks::Kept& kept = Blocks::store[steps];
        if (kept.size < Blocks::LargestSize)
        {
            kept.size += steps * Blocks::Step;
            kept.first = new (block) Blocks::Free{kept.first};
            return;
        }
    }
    ::operator delete(block);
}

} // namespace Veltrane::TaviDesktopSDK
