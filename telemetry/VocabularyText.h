// The narrow text of the vocabulary's constants, which the telemetry library converts at their first use only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <TaviDesktopSDK/TaviString.h>

namespace VocabularyTexts
{

struct Entry
{
    const std::wstring* constant;
    const Veltrane::TaviDesktopSDK::TaviString* text;
};

// Constants that were used, by their addresses: each at its own place or, where that is taken, at one that follows.
extern const Entry* table;
extern std::size_t lastPlace; // one less than a power of two

inline std::size_t PlaceOf(const std::wstring& constant)
{
    return reinterpret_cast<std::uintptr_t>(&constant) / sizeof(std::wstring) & lastPlace;
}

const Veltrane::TaviDesktopSDK::TaviString& Find(const std::wstring& constant);

} // namespace VocabularyTexts

// `constant` is one of the vocabulary's, told by its place in memory. The result stays. For one thread.
inline const Veltrane::TaviDesktopSDK::TaviString& NarrowOf(const std::wstring& constant)
{
    const VocabularyTexts::Entry& entry = VocabularyTexts::table[VocabularyTexts::PlaceOf(constant)];
    return entry.constant == &constant ? *entry.text : VocabularyTexts::Find(constant);
}
