#include "CountedAllocations.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#define COUNTED [[gnu::visibility("default")]]

namespace
{

AllocationCount counted;

void Count(std::size_t bytes)
{
    ++counted.allocations;
    counted.bytes += bytes;
}

} // namespace

AllocationCount CountedAllocations()
{
    return counted;
}

// The GNU C library's own functions, which it also exports under these names.
extern "C"
{
    void* __libc_malloc(std::size_t size);
    void* __libc_calloc(std::size_t count, std::size_t size);
    void* __libc_realloc(void* memory, std::size_t size);
    void* __libc_memalign(std::size_t alignment, std::size_t size);
    void __libc_free(void* memory);

    COUNTED void* malloc(std::size_t size) noexcept
    {
        Count(size);
        return __libc_malloc(size);
    }

    COUNTED void* calloc(std::size_t count, std::size_t size) noexcept
    {
        Count(count * size);
        return __libc_calloc(count, size);
    }

    COUNTED void* realloc(void* memory, std::size_t size) noexcept
    {
        Count(size);
        return __libc_realloc(memory, size);
    }

    COUNTED void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept
    {
        Count(size);
        return __libc_memalign(alignment, size);
    }

    COUNTED int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept
    {
        Count(size);
        *memory = __libc_memalign(alignment, size);
        return *memory != nullptr ? 0 : ENOMEM;
    }

    COUNTED void free(void* memory) noexcept
    {
        if (memory != nullptr)
            ++counted.releases;
        __libc_free(memory);
    }
}
