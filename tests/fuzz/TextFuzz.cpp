// Any bytes as narrow and as wide text: narrow text is kept byte for byte, wide text becomes well-formed UTF-8, and
// well-formed text is the same after conversion to wide text and back.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

bool IsUtf8(const std::string& text)
{
    // nlohmann::json refuses to write text that is not UTF-8.
    try
    {
        return !nlohmann::json(text).dump().empty();
    }
    catch (const nlohmann::json::type_error&)
    {
        return false;
    }
}

void CheckNarrow(const std::string& text)
{
    TaviString narrow;
    narrow.SetString(text.c_str());
    Require(std::strcmp(narrow.c_str(), text.c_str()) == 0);
    Require(narrow.size() == std::strlen(text.c_str()));

    TaviString back;
    back.SetStringW(narrow.c_strw());
    Require(IsUtf8(back.c_str()));
    if (IsUtf8(narrow.c_str()))
        Require(std::strcmp(back.c_str(), narrow.c_str()) == 0);

    JsonValue value;
    value.SetString(narrow.c_str());
    Require(nlohmann::json::parse(value.GetJsonString().c_str()).get<std::string>() == back.c_str());
}

void CheckWide(const std::vector<wchar_t>& text)
{
    TaviString narrow;
    narrow.SetStringW(text.data());
    Require(IsUtf8(narrow.c_str()));
    TaviString again;
    again.SetStringW(narrow.c_strw());
    Require(std::strcmp(again.c_str(), narrow.c_str()) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CheckNarrow(std::string(reinterpret_cast<const char*>(data), size));
    std::vector<wchar_t> units(size / sizeof(wchar_t) + 1); // the last one ends the text
    if (size >= sizeof(wchar_t))
        std::memcpy(units.data(), data, size / sizeof(wchar_t) * sizeof(wchar_t));
    CheckWide(units);
    std::vector<wchar_t> smallUnits(size / 2 + 1); // units of two bytes are more often surrogates
    for (std::size_t i = 0; i + 1 < size; i += 2)
        smallUnits[i / 2] = static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
    CheckWide(smallUnits);
    return 0;
}
