#include <recorder/PayloadRecorder.h>

#include <algorithm>
#include <ostream>

#include <telemetry/Attributes.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/FacetFields.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace Corvane
{

namespace
{

constexpr int NotOptedIn = 4; // any other answer of IsOptedIn() means go on

TaviString ProductKey()
{
    return TextOf(CorvaneTavi::Instance().GetProductKey());
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
    flags[TextOf("Testing_EnableCallback")] = JsonValue(true);
    flags[TextOf("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[TextOf("Testing_EnableUpload")] = JsonValue(false);
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
    const TaviString text = TextOf(event);
    JsonValue name;
    name.SetString(text.c_str());
    const auto isOfTheEvent = [&text, &name](const JsonValue& payload)
    {
        return !IsNull(payload) && (name.Compare(payload[TextOf(FacetFields::component_name)]) == 0 ||
                                    HasMember(payload[TextOf(FacetFields::content_meta)], text) ||
                                    HasMember(payload[TextOf(FacetFields::entitlement_properties)], text));
    };
    return static_cast<std::size_t>(std::count_if(payloads.begin(), payloads.end(), isOfTheEvent));
}

std::string PayloadRecorder::JsonText(std::size_t index) const
{
    std::string line = StandardString(payloads.at(index).GetJsonString());
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
