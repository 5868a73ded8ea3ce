#include <harness/Driver.h>

#include <algorithm>
#include <iostream>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/Catalogue.h>
#include <harness/NarrowText.h>
#include <telemetry/CorvaneTavi.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace Corvane
{

namespace
{

constexpr int NotOptedIn = 4; // the one answer of IsOptedIn() with a meaning of its own

TaviString ProductKey()
{
    return NarrowText(CorvaneTavi::Instance().GetProductKey().c_str());
}

JsonValue TestingFlags()
{
    JsonValue flags;
    flags[NarrowText("Testing_EnableCallback")] = JsonValue(true);
    flags[NarrowText("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[NarrowText("Testing_EnableUpload")] = JsonValue(false);
    return flags;
}

} // namespace

std::optional<Refusal> EnterTestMode(int (*callback)(const JsonValue& payload, void* context, JsonValue& reply),
                                     void* context)
{
    // Before the wrapper exists.
    if (Sdk::IsOptedIn(nullptr) == NotOptedIn)
        return Refusal{"Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi", std::nullopt};

    const JsonValue flags = TestingFlags();
    if (const int status = Sdk::SetTestingFlags(ProductKey(), flags); status != 0)
        return Refusal{"Error occurred setting testing flags", status};
    if (const int status = Sdk::SetTestingCallback(ProductKey(), callback, context); status != 0)
        return Refusal{"Error occurred setting testing callback", status};
    return std::nullopt;
}

int RunDriver()
{
    TestResultList results;
    if (const std::optional<Refusal> refusal = EnterTestMode(VerifyPayloadCallback, &results))
    {
        std::cout << refusal->sentence << std::endl;
        return refusal->status.value_or(1);
    }
    RunTests(results);
    return PrintSummary(results);
}

int PrintSummary(const TestResultList& results)
{
    const bool passed =
        std::all_of(results.begin(), results.end(), [](const TestResult& result) { return result.passed; });
    std::cout << std::endl;
    std::cout << (passed ? "All tests passed" : "Errors occured during testing") << std::endl;
    return passed ? 0 : 1;
}

} // namespace Corvane
