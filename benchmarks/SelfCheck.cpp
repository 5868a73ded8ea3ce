#include "SelfCheck.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "Events.h"
#include "Subjects.h"

using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

using Texts = std::vector<std::string>;

int KeepText(void* context, std::string text)
{
    static_cast<Texts*>(context)->push_back(std::move(text));
    return 0;
}

int KeepValue(const JsonValue& payload, void* context, JsonValue&)
{
    return KeepText(context, payload.GetJsonString().c_str());
}

int KeepNlohmann(const nlohmann::json& payload, void* context)
{
    return KeepText(context, payload.dump());
}

int KeepRapidJson(const rapidjson::Document& payload, void* context)
{
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer> writer(text);
    payload.Accept(writer);
    return KeepText(context, {text.GetString(), text.GetSize()});
}

int KeepWritten(std::string_view payload, void* context)
{
    return KeepText(context, std::string(payload));
}

template <typename Reporter>
void ReportAll(Reporter& reporter)
{
    AddDocuments(reporter);
    for (const Event<Reporter>& event : Events<Reporter>)
        event.report(reporter);

    const std::wstring escaped = L"\"quoted\"\\ \b\f\n\r\t\x01\x1F/";
    const std::wstring wide = L"\x7F\x80\x7FF\x800\xFFFD\U00010000\U0010FFFF";
    const std::wstring loneSurrogates = {L'a', wchar_t{0xD800}, L'b', wchar_t{0xDC00}, wchar_t{0xDBFF}};
    const std::wstring longText(10000, L'\xFC');
    for (const std::wstring& text : {std::wstring(), escaped, wide, loneSurrogates, longText})
        reporter.Track3DCKeyPressed(text);
    reporter.TrackMaterialSelection(escaped, wide, std::numeric_limits<std::uint64_t>::max(), L"", L" ", L"x", L"y");
    reporter.TrackSteerWheelLoadOption(true, false, std::numeric_limits<std::int32_t>::min(),
                                       std::numeric_limits<std::int32_t>::max(), 0.0, -1.0, true, true, true, true,
                                       1234.5678904, true, true, true, true);
}

nlohmann::json Parse(const Texts& texts)
{
    nlohmann::json payloads = nlohmann::json::array();
    for (const std::string& text : texts)
    {
        nlohmann::json payload = nlohmann::json::parse(text);
        // The time since a document was opened differs; that it is there does not.
        if (payload.contains("document_editing_length_ms") && payload["document_editing_length_ms"].is_number_integer())
            payload["document_editing_length_ms"] = "some";
        payloads.push_back(payload);
    }
    return payloads;
}

template <typename Engine>
bool Makes(const char* name, typename Engine::Callback callback, const nlohmann::json& expected)
{
    Texts texts;
    const Engine engine(DescribeProduct(), callback, &texts);
    Comparison<Engine> comparison(engine);
    ReportAll(comparison);
    const nlohmann::json payloads = Parse(texts);
    if (payloads == expected)
        return true;
    std::cerr << name << " makes other payloads than the wrapper: " << nlohmann::json::diff(expected, payloads)
              << std::endl;
    return false;
}

} // namespace

bool ComparisonsMakeTheWrappersPayloads()
{
    Texts texts;
    UseCallback(KeepValue, &texts);
    ReportAll(CorvaneTavi::Instance());
    UseCallback(nullptr, nullptr);
    const nlohmann::json expected = Parse(texts);

    constexpr std::size_t hardCalls = 7;
    if (expected.size() != Events<CorvaneTavi>.size() + hardCalls)
    {
        std::cerr << "The wrapper handed over " << expected.size() << " payloads" << std::endl;
        return false;
    }
    const bool nlohmann = Makes<NlohmannTree>("nlohmann", KeepNlohmann, expected);
    const bool rapidJson = Makes<RapidJsonTree>("RapidJSON", KeepRapidJson, expected);
    const bool floor = Makes<HandWritten>("the hand-written text", KeepWritten, expected);
    return nlohmann && rapidJson && floor;
}
