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

int RunDriver()
{
    // Before the wrapper exists: nothing is read or started for a user who has not opted in.
    if (Sdk::IsOptedIn(nullptr) == NotOptedIn)
    {
        std::cout << "Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi" << std::endl;
        return 1;
    }

    const JsonValue flags = TestingFlags();
    if (const int status = Sdk::SetTestingFlags(ProductKey(), flags); status != 0)
    {
        std::cout << "Error occurred setting testing flags" << std::endl;
        return status;
    }

    TestResultList results;
    if (const int status = Sdk::SetTestingCallback(ProductKey(), VerifyPayloadCallback, &results); status != 0)
    {
        std::cout << "Error occurred setting testing callback" << std::endl;
        return status;
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
