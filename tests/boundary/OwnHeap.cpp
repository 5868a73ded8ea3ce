#include "OwnHeap.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace
{

constexpr std::uint64_t MarkOf(const char* owner)
{
    std::uint64_t mark = 0xCBF29CE484222325; // FNV-1a
    for (; *owner != '\0'; ++owner)
        mark = (mark ^ static_cast<unsigned char>(*owner)) * 0x100000001B3;
    return mark;
}

// HEAP_OWNER names the module, and no block has HEAP_LIMIT bytes or more: both are set for each module.
constexpr std::uint64_t Mark = MarkOf(HEAP_OWNER);

// Precedes every block, and keeps it aligned by its own size.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Header
{
    std::uint64_t mark;
    std::byte unused[__STDCPP_DEFAULT_NEW_ALIGNMENT__ - sizeof(std::uint64_t)];
};

std::atomic<std::size_t> blockCount = 0;

} // namespace

std::size_t OwnBlockCount()
{
    return blockCount;
}

void* operator new(std::size_t size)
{
    auto* const header = size < HEAP_LIMIT ? static_cast<Header*>(std::malloc(sizeof(Header) + size)) : nullptr;
    if (header == nullptr)
        throw std::bad_alloc();
    header->mark = Mark;
    ++blockCount;
    return header + 1;
}

void operator delete(void* memory) noexcept
{
    if (memory == nullptr)
        return;
    Header* const header = static_cast<Header*>(memory) - 1;
    if (header->mark != Mark)
    {
        static_cast<void>(std::fputs("The " HEAP_OWNER " frees a block that is not its own\n", stderr));
        std::abort();
    }
    --blockCount;
    std::free(header);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}
