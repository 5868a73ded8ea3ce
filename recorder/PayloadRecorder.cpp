#include <recorder/PayloadRecorder.h>

#include <algorithm>
#include <ostream>

#include <telemetry/CorvaneTavi.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace Corvane
{

namespace
{

constexpr int NotOptedIn = 4; // the one answer of IsOptedIn() with a meaning of its own

TaviString Text(const std::string& text)
{
    TaviString copy;
    copy.SetString(text.c_str());
    return copy;
}

TaviString ProductKey()
{
    return Text(CorvaneTavi::Instance().GetProductKey());
}

bool IsNull(const JsonValue& value)
{
    return value.Compare(JsonValue()) == 0;
}

bool HasMember(const JsonValue& object, const TaviString& key)
{
    return !IsNull(object) && !IsNull(object[key]);
}

int Ignore(const JsonValue&, void*, JsonValue&)
{
    return 0;
}

} // namespace

PayloadRecorder::PayloadRecorder()
{
    if (Sdk::IsOptedIn(nullptr) == NotOptedIn)
    {
        refusal = "the user has not opted in to usage-data collection";
        return;
    }
    JsonValue flags;
    flags[Text("Testing_EnableCallback")] = JsonValue(true);
    flags[Text("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[Text("Testing_EnableUpload")] = JsonValue(false);
    if (const int flagsStatus = Sdk::SetTestingFlags(ProductKey(), flags); flagsStatus != 0)
        refusal = "SetTestingFlags returned " + std::to_string(flagsStatus);
    else if (const int status = Sdk::SetTestingCallback(ProductKey(), Record, this); status != 0)
        refusal = "SetTestingCallback returned " + std::to_string(status);
}

PayloadRecorder::~PayloadRecorder()
{
    if (refusal.empty())
        Sdk::SetTestingCallback(ProductKey(), Ignore, nullptr);
}

std::size_t PayloadRecorder::CountOf(const std::wstring& event) const
{
    TaviString text;
    text.SetStringW(event.c_str());
    JsonValue name;
    name.SetString(text.c_str());
    const auto isOfTheEvent = [&text, &name](const JsonValue& payload)
    {
        return !IsNull(payload) &&
               (name.Compare(payload[Text("component_name")]) == 0 || HasMember(payload[Text("content_meta")], text) ||
                HasMember(payload[Text("entitlement_properties")], text));
    };
    return static_cast<std::size_t>(std::count_if(payloads.begin(), payloads.end(), isOfTheEvent));
}

std::string PayloadRecorder::JsonText(std::size_t index) const
{
    const TaviString text = payloads.at(index).GetJsonString();
    std::string line = text.c_str() != nullptr ? text.c_str() : "";
    std::replace_if(
        line.begin(), line.end(), [](char character) { return character == '\n' || character == '\r'; }, ' ');
    return line;
}

void PayloadRecorder::WriteLines(std::ostream& output) const
{
    for (std::size_t i = 0; i < payloads.size(); ++i)
        output << JsonText(i) << '\n';
}

int PayloadRecorder::Record(const JsonValue& payload, void* context, JsonValue&)
{
    auto& recorder = *static_cast<PayloadRecorder*>(context);
    try
    {
        recorder.payloads.push_back(payload);
    }
    catch (...) // no exception may leave through the library
    {
        recorder.hasLostAny = true;
    }
    return 0;
}

} // namespace Corvane
