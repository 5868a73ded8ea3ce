#include <telemetry/Attributes.h>

#include <array>
#include <utility>

using Veltrane::TaviDesktopSDK::TaviString;

namespace Corvane
{

namespace
{

TaviString DecimalText(bool isNegative, std::uint64_t magnitude)
{
    std::array<char, 20> digits; // the longest has twenty, or a sign and nineteen; filled from the end
    char* first = digits.data() + digits.size();
    do
    {
        *--first = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (isNegative)
        *--first = '-';
    return TextOf(std::string(first, digits.data() + digits.size()));
}

} // namespace

TaviString TextOf(const char* value)
{
    TaviString text;
    text.SetString(value);
    return text;
}

TaviString TextOf(const std::string& value)
{
    return TextOf(value.c_str());
}

TaviString TextOf(const std::wstring& value)
{
    TaviString text;
    text.SetStringW(value.c_str());
    return text;
}

TaviString TextOf(std::int32_t value)
{
    return TextOf(std::int64_t{value});
}

TaviString TextOf(std::int64_t value)
{
    // The magnitude of the smallest value has no signed form.
    const auto bits = static_cast<std::uint64_t>(value);
    return DecimalText(value < 0, value < 0 ? 0 - bits : bits);
}

TaviString TextOf(std::uint64_t value)
{
    return DecimalText(false, value);
}

TaviString TextOf(double value)
{
    return TaviString(value);
}

std::string StandardString(const TaviString& text)
{
    return text.c_str() != nullptr ? text.c_str() : "";
}

AttributeMap Attributes(std::initializer_list<Attribute> attributes)
{
    AttributeMap gathered;
    for (const Attribute& attribute : attributes)
        gathered[std::move(attribute.key)] = std::move(attribute.text);
    return gathered;
}

} // namespace Corvane
