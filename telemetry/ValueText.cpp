#include <telemetry/ValueText.h>

using Veltrane::TaviDesktopSDK::TaviString;

TaviString TextOf(const std::wstring& value)
{
    TaviString text;
    text.SetStringW(value.c_str());
    return text;
}

TaviString TextOf(const std::string& value)
{
    return TaviString(value.c_str());
}

TaviString TextOf(std::int32_t value)
{
    return TextOf(std::to_string(value));
}

TaviString TextOf(std::int64_t value)
{
    return TextOf(std::to_string(value));
}

TaviString TextOf(std::uint64_t value)
{
    return TextOf(std::to_string(value));
}

TaviString TextOf(double value)
{
    return TaviString(value);
}
