#include "Recording.h"

#include <utility>

#include <telemetry/Vocabulary.h>

#include "OutputCapture.h"
#include "PayloadRecorder.h"
#include "Text.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

constexpr long long ExampleOfTheEditTimer = 90'000;

TaviString EditTimerKey()
{
    TaviString key;
    key.SetStringW(Corvane::Vocabulary::document_editing_length_ms.c_str());
    return key;
}

void SetEditTimer(JsonValue& payload)
{
    const JsonValue& sent = std::as_const(payload)[EditTimerKey()];
    if (Json(sent).find_first_not_of("0123456789") == std::string::npos)
        payload[EditTimerKey()] = JsonValue(ExampleOfTheEditTimer);
}

void AddLeaves(std::vector<Leaf>& leaves, const std::string& object, const JsonValue& value)
{
    const JsonValue keys = value.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
    {
        const TaviString key = TextValue(keys[i]);
        const JsonValue& member = value[key];
        if (object.empty() && member.GetKeyList().GetCount() > 0)
            AddLeaves(leaves, Text(key), member);
        else
            leaves.push_back({object, Text(key), Json(member)});
    }
}

} // namespace

Recording Record(const std::function<void()>& reports)
{
    const OutputCapture capture;
    PayloadRecorder recorder;
    reports();
    for (JsonValue& payload : recorder.payloads)
        SetEditTimer(payload);
    return {recorder.payloads, capture.Text()};
}

bool Leaf::IsEditTimer() const
{
    return object.empty() && key == Text(EditTimerKey());
}

std::vector<Leaf> LeavesOf(const JsonValue& payload)
{
    std::vector<Leaf> leaves;
    AddLeaves(leaves, "", payload);
    return leaves;
}
