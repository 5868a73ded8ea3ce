#include <telemetry/VocabularyText.h>

#include <array>
#include <deque>
#include <vector>

using Veltrane::TaviDesktopSDK::TaviString;

namespace VocabularyTexts
{

namespace
{

// Before the first constant.
constinit const std::array<Entry, 1> none{};

// Where the constant is, or where it is to be.
std::size_t PlaceIn(const std::vector<Entry>& entries, const std::wstring& constant)
{
    std::size_t place = PlaceOf(constant);
    while (entries[place].constant != nullptr && entries[place].constant != &constant)
        place = (place + 1) & lastPlace;
    return place;
}

// Twice the places.
void Grow(std::vector<Entry>& entries)
{
    constexpr std::size_t SmallestSize = 512;
    std::vector<Entry> larger(entries.empty() ? SmallestSize : entries.size() * 2);
    lastPlace = larger.size() - 1;
    for (const Entry& entry : entries)
    {
        if (entry.constant != nullptr)
            larger[PlaceIn(larger, *entry.constant)] = entry;
    }
    entries.swap(larger);
    table = entries.data();
}

} // namespace

constinit const Entry* table = none.data();
constinit std::size_t lastPlace = none.size() - 1;

const TaviString& Find(const std::wstring& constant)
{
    // Never destroyed: the host may report until the last of its own statics is gone.
    static std::vector<Entry>& entries = *new std::vector<Entry>;
    static std::deque<TaviString>& texts = *new std::deque<TaviString>;
    if (texts.size() >= entries.size() / 2)
        Grow(entries);
    Entry& entry = entries[PlaceIn(entries, constant)];
    if (entry.constant == nullptr)
    {
        TaviString& text = texts.emplace_back();
        text.SetStringW(constant.c_str());
        entry = {&constant, &text};
    }
    return *entry.text;
}

} // namespace VocabularyTexts
