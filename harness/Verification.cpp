#include <harness/Verification.h>

#include <iostream>
#include <string>
#include <utility>

#include <harness/FacetKeys.h>
#include <harness/NarrowText.h>
#include <telemetry/Vocabulary.h>

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace
{

std::wstring WideOf(const TaviString& text)
{
    return text.c_strw() != nullptr ? text.c_strw() : L"";
}

// `==` and `if` would go by the value's conversion to a number.
bool IsNull(const JsonValue& value)
{
    return value.Compare(JsonValue()) == 0;
}

// Copied, because the library decides how long the reference is valid.
JsonValue CopyOf(const JsonValue& value)
{
    return value;
}

bool PrintVerdict(bool passed)
{
    std::cout << (passed ? "PASSED" : "FAILED") << std::endl;
    return passed;
}

bool MatchesDocument(const JsonValue& payload, const JsonValue& expected)
{
    const TaviString metaKey = NarrowText(FacetKeys::content_meta);
    const JsonValue payloadMeta = CopyOf(payload[metaKey]);
    const JsonValue expectedMeta = CopyOf(expected[metaKey]);
    if (IsNull(payloadMeta) || IsNull(expectedMeta))
        return false;
    const auto isEqual = [](const JsonValue& left, const JsonValue& right, const std::wstring& key)
    { return left[NarrowText(key)].Compare(right[NarrowText(key)]) == 0; };
    return isEqual(payloadMeta, expectedMeta, Vocabulary::COMMON_FILE_NAME) &&
           isEqual(payloadMeta, expectedMeta, Vocabulary::COMMON_FILE_TYPE) &&
           isEqual(payloadMeta, expectedMeta, Vocabulary::COMMON_FILE_SOURCE) &&
           isEqual(payloadMeta, expectedMeta, Vocabulary::COMMON_FILE_SIZE) &&
           isEqual(payload, expected, FacetKeys::type);
}

} // namespace

int VerifyPayloadCallback(const JsonValue& payload, void* context, JsonValue&)
{
    auto& results = *static_cast<TestResultList*>(context);
    if (results.empty())
        return 0; // an event that no test has caused
    TestResult& record = results.back();
    if (IsNull(payload) && !IsNull(record.expected))
    {
        std::cout << "Unexpectedly recieved null JSON." << std::endl;
        std::cout
            << "This could indicate a failure to download a whitelist, an expired whitelist, or a failure to have "
               "specified a waypoint or attribute in the uploaded whitelist."
            << std::endl;
        return 0;
    }

    bool passed = true;
    for (const TaviString& key : GetSortedKeys(record.expected))
    {
        const JsonValue expected = CopyOf(std::as_const(record.expected)[key]);
        const JsonValue received = CopyOf(payload[key]);
        if (expected.Compare(received) == 0)
            continue;
        passed = false;
        std::cout << std::endl;
        std::cout << "Error: Mismatch between expected and recieved Json for key ";
        if (key.size() != 0)
            std::cout << key.c_str();
        std::cout << std::endl;
        std::cout << "Expected:" << std::endl;
        PrintJsonValue(expected, 0);
        std::cout << "Recieved:" << std::endl;
        PrintJsonValue(received, 0);
    }
    record.passed = PrintVerdict(passed);
    return 0;
}

int VerifyFileInputPayload(const JsonValue& payload, void* context, JsonValue&)
{
    TestResult& record = *static_cast<TestResult*>(context);
    if (IsNull(payload) && !IsNull(record.expected))
    {
        std::cout << "Unexpectedly recieved null JSON." << std::endl;
        std::cout << "This could indicate a failure to download a whitelist, or a failure to have specified a waypoint "
                     "or attribute in the uploaded whitelist."
                  << std::endl;
        return 0;
    }
    record.passed = PrintVerdict(MatchesDocument(payload, record.expected));
    return 0;
}

std::set<TaviString> GetSortedKeys(const JsonValue& value)
{
    std::set<TaviString> sorted;
    const JsonValue keys = value.GetKeyList();
    for (int i = 0; i < keys.GetCount(); ++i)
        sorted.insert(keys[i].operator TaviString());
    return sorted;
}

void PrintJsonValue(const JsonValue& value, unsigned depth)
{
    if (IsNull(value))
        return;
    const std::wstring indent(std::size_t{depth} * 4, L' ');
    if (value.GetCount() == 0)
    {
        std::wcout << indent << WideOf(value.GetJsonString()) << std::endl;
        return;
    }
    for (const TaviString& key : GetSortedKeys(value))
    {
        std::wcout << indent << WideOf(key) << std::endl;
        PrintJsonValue(value[key], depth + 1);
    }
}
