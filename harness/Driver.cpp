#include <harness/Driver.h>

#include <algorithm>
#include <iostream>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/Catalogue.h>
#include <telemetry/CorvaneTavi.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace
{

TaviString ProductKey()
{
    return TaviString(CorvaneTavi::Instance().GetProductKey().c_str());
}

JsonValue TestingFlags()
{
    JsonValue flags;
    flags[TaviString("Testing_EnableCallback")] = JsonValue(true);
    flags[TaviString("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[TaviString("Testing_EnableUpload")] = JsonValue(false);
    return flags;
}

} // namespace

int RunDriver()
{
    // Before the wrapper exists: nothing is read or started for a user who has not opted in.
    if (Sdk::IsOptedIn(nullptr) == Sdk::StatusNotOptedIn)
    {
        std::cout << "Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi" << std::endl;
        return 1;
    }

    if (const int status = Sdk::SetTestingFlags(ProductKey(), TestingFlags()); status != Sdk::StatusSuccess)
    {
        std::cout << "Error occurred setting testing flags" << std::endl;
        return status;
    }

    TestResultList results;
    if (const int status = Sdk::SetTestingCallback(ProductKey(), VerifyPayloadCallback, &results);
        status != Sdk::StatusSuccess)
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
