// What lies behind a string's handle.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>

#include <TaviDesktopSDK/TaviString.h>

#include "Blocks.h"

namespace Veltrane::TaviDesktopSDK
{

struct KeyText;

// One block: this, the text, and a terminator.
struct TaviString::Content
{
    std::size_t size;
    std::wstring* wide;              // made on the first c_strw()
    std::atomic<const KeyText*> key; // the text as a key, once it was used as one

    char* Text() { return reinterpret_cast<char*>(this + 1); }

    // The text is yet to be filled in.
    static Content* Make(std::size_t size)
    {
        void* const block = AllocateBlock(BlockSize(size));
        static_cast<char*>(block)[sizeof(Content) + size] = '\0';
        return new (block) Content{size, nullptr, nullptr};
    }

    static Content* Make(std::string_view text)
    {
        Content* const content = Make(text.size());
        std::copy(text.begin(), text.end(), content->Text());
        return content;
    }

    static void Release(Content* content) noexcept
    {
        if (content == nullptr)
            return;
        if (content->wide != nullptr || content->key.load(std::memory_order_relaxed) != nullptr)
            ReleaseDerived(*content);
        FreeBlock(content, BlockSize(content->size));
    }

private:
    // The wide text and the key.
    static void ReleaseDerived(Content& content) noexcept;

    static std::size_t BlockSize(std::size_t textSize) { return sizeof(Content) + textSize + 1; }
};

// What the library's own code does with a string's content.
struct Contents
{
    // The string's bytes; empty for a string without text.
    static std::string_view View(const TaviString& string)
    {
        if (string.content == nullptr)
            return {};
        return {string.content->Text(), string.content->size};
    }

    // `text` holds no null character.
    static TaviString Of(std::string_view text)
    {
        TaviString string;
        string.content = TaviString::Content::Make(text);
        return string;
    }

    // Null before it is set.
    static const KeyText* Key(const TaviString& string)
    {
        return string.content != nullptr ? string.content->key.load(std::memory_order_acquire) : nullptr;
    }

    // Sets it for a string that has text; one that was set meanwhile stays. Returns the string's.
    static const KeyText& SetKey(const TaviString& string, const KeyText& key);
};

} // namespace Veltrane::TaviDesktopSDK
