#include <harness/ExpectedPayload.h>

#include <array>
#include <cstdio>
#include <limits>

#include <harness/FacetKeys.h>
#include <harness/NarrowText.h>

using Veltrane::TaviDesktopSDK::JsonValue;

namespace Corvane
{

std::wstring ExpectedText(double number)
{
    // Sign, integral digits of the largest double, point, six decimals, terminator.
    std::array<char, 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 6 + 1> buffer;
    const int length = std::snprintf(buffer.data(), buffer.size(), "%f", number);
    std::wstring text(buffer.data(), buffer.data() + length);
    text.erase(text.find_last_not_of(L'0') + 1);
    text.erase(text.find_last_not_of(L'.') + 1);
    return text;
}

std::wstring ExpectedText(const std::wstring& text)
{
    return text;
}

JsonValue ExpectObject(std::initializer_list<ExpectedMember> members)
{
    JsonValue object;
    for (const ExpectedMember& member : members)
        object[NarrowText(member.key)].SetString(NarrowText(member.text).c_str());
    return object;
}

JsonValue ExpectWaypoint(const std::wstring& name, std::initializer_list<ExpectedMember> attributes)
{
    JsonValue expected = ExpectObject({{FacetKeys::component_name, name}});
    if (attributes.size() != 0)
        expected[NarrowText(FacetKeys::component_attributes)] = ExpectObject(attributes);
    return expected;
}

JsonValue ExpectContent(std::initializer_list<ExpectedMember> meta)
{
    JsonValue expected;
    expected[NarrowText(FacetKeys::content_meta)] = ExpectObject(meta);
    expected[NarrowText(FacetKeys::type)].SetString("D");
    return expected;
}

} // namespace Corvane
