#include "KeyText.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <new>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

constexpr std::size_t TableSize = 1024; // a power of two
constexpr std::size_t PlacesOfAKey = 4; // from the one that its hash names on
constexpr std::size_t LongestKept = 128;

// Nothing is ever taken out again, so that whoever finds all places of a key taken will always do so.
constinit std::array<std::atomic<const KeyText*>, TableSize> table{};

std::size_t BlockSize(std::size_t textSize)
{
    return sizeof(KeyText) + textSize;
}

std::uint32_t HashOf(std::string_view text)
{
    constexpr std::uint64_t Factor = 0x9E3779B97F4A7C15;
    const char* at = text.data();
    std::size_t left = text.size();
    std::uint64_t hash = left * Factor;
    const auto add = [&hash](std::uint64_t bytes)
    {
        hash = (hash ^ bytes) * Factor;
        hash ^= hash >> 32;
    };
    for (; left >= sizeof(std::uint64_t); at += sizeof(std::uint64_t), left -= sizeof(std::uint64_t))
    {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, at, sizeof(bytes));
        add(bytes);
    }
    std::uint64_t rest = 0;
    for (std::size_t i = 0; i < left; ++i)
        rest = rest << 8 | static_cast<unsigned char>(at[i]);
    add(rest);
    return static_cast<std::uint32_t>(hash);
}

// Null when there is no room for it.
const KeyText* Keep(std::string_view text, std::uint32_t hash)
{
    if (text.size() > LongestKept)
        return nullptr;
    struct Freeing
    {
        void operator()(const KeyText* key) const noexcept { KeyText::Free(key); }
    };
    std::unique_ptr<const KeyText, Freeing> made;
    for (std::size_t i = 0; i < PlacesOfAKey; ++i)
    {
        std::atomic<const KeyText*>& place = table[(hash + i) % TableSize];
        const KeyText* present = place.load(std::memory_order_acquire);
        if (present == nullptr)
        {
            if (made == nullptr)
                made.reset(KeyText::Make(text, hash, 0));
            if (place.compare_exchange_strong(present, made.get(), std::memory_order_acq_rel))
                return made.release();
        }
        // Present from the start, or another thread's since.
        // cppcheck-suppress nullPointerRedundantCheck
        if (present->hash == hash && present->View() == text)
            return present;
    }
    return nullptr;
}

} // namespace

const KeyText* KeyText::Make(std::string_view text, std::uint32_t hash, std::uint32_t owners)
{
    void* const block = AllocateBlock(BlockSize(text.size()));
    std::copy(text.begin(), text.end(), static_cast<char*>(block) + sizeof(KeyText));
    return new (block) KeyText{text.size(), hash, owners};
}

void KeyText::Free(const KeyText* key) noexcept
{
    FreeBlock(const_cast<KeyText*>(key), BlockSize(key->size));
}

const KeyText& MakeKey(const TaviString& string)
{
    static constinit const KeyText empty{0, 0, 0};
    const std::string_view text = Contents::View(string);
    if (text.empty())
        return empty;
    const std::uint32_t hash = HashOf(text);
    const KeyText* made = Keep(text, hash);
    if (made == nullptr)
        made = KeyText::Make(text, hash, 1);
    return Contents::SetKey(string, *made);
}

const KeyText& Contents::SetKey(const TaviString& string, const KeyText& key)
{
    const KeyText* present = nullptr;
    if (string.content->key.compare_exchange_strong(present, &key, std::memory_order_acq_rel))
        return key;
    key.GiveUp();
    return *present;
}

} // namespace Veltrane::TaviDesktopSDK
