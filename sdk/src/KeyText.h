// The keys of members. The texts that programs use as keys are few and come again with every event: each is kept, once
// and for the rest of the process, and members point to it, so that a key is copied and hashed at its first use only
// and compared by address. There is room for some hundreds; any other goes with the last string or member that has it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <TaviDesktopSDK/TaviString.h>

#include "StringContent.h"

namespace Veltrane::TaviDesktopSDK
{

// One block: this, and the text.
struct KeyText
{
    std::size_t size;
    std::uint32_t hash;
    mutable std::atomic<std::uint32_t> owners; // strings and members; 0 where it is kept

    bool IsKept() const { return owners.load(std::memory_order_relaxed) == 0; }

    std::string_view View() const { return {reinterpret_cast<const char*>(this + 1), size}; }

    // One of 64, for a quick no.
    std::uint64_t SeenBit() const { return std::uint64_t{1} << (hash >> 26); }

    // Of the kept ones, no two have the same text.
    bool Is(const KeyText& other) const
    {
        return this == &other || (!IsKept() && !other.IsKept() && hash == other.hash && View() == other.View());
    }

    // For one more owner.
    const KeyText* Share() const
    {
        if (!IsKept())
            owners.fetch_add(1, std::memory_order_relaxed);
        return this;
    }

    void GiveUp() const noexcept
    {
        if (!IsKept() && owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
            Free(this);
    }

    static const KeyText* Make(std::string_view text, std::uint32_t hash, std::uint32_t owners);
    static void Free(const KeyText* key) noexcept;
};

// The string's text as a key: made at its first use as one, and there as long as the text is.
const KeyText& MakeKey(const TaviString& string);

inline const KeyText& KeyOf(const TaviString& string)
{
    const KeyText* const made = Contents::Key(string);
    return made != nullptr ? *made : MakeKey(string);
}

} // namespace Veltrane::TaviDesktopSDK
