#include <check/Text.h>

using nlohmann::json;

namespace Corvane
{

std::string JsonTextOf(const json& value)
{
    constexpr std::size_t most = 200;
    std::string text = value.dump(-1, ' ', false, json::error_handler_t::replace);
    if (text.size() <= most)
        return text;
    // Never cut within a character of several bytes.
    std::size_t end = most / 2;
    while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80)
        --end;
    return text.substr(0, end) + "... (" + std::to_string(text.size()) + " bytes)";
}

std::string WellFormed(const std::string& text)
{
    return json::parse(json(text).dump(-1, ' ', false, json::error_handler_t::replace)).get<std::string>();
}

std::string CountOf(std::size_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string JoinedBy(const std::string& separator, const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts)
        joined += (joined.empty() ? "" : separator) + text;
    return joined;
}

nlohmann::ordered_json TextOrNull(const std::string& text)
{
    return text.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(text);
}

} // namespace Corvane
