#include <harness/Driver.h>

#include <iostream>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/Catalogue.h>
#include <harness/NarrowText.h>
#include <harness/Verification.h>
#include <telemetry/CorvaneTavi.h>

using Veltrane::TaviDesktopSDK::JsonValue;
namespace Sdk = Veltrane::TaviDesktopSDK;

namespace Corvane
{

namespace
{

constexpr int NotOptedIn = 4; // any other answer of IsOptedIn() means go on

} // namespace

int RunDriver()
{
    // Ask first: the wrapper must not start without consent.
    if (Sdk::IsOptedIn(nullptr) == NotOptedIn)
    {
        std::cout << "Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi" << std::endl;
        return 1;
    }

    JsonValue flags;
    flags[NarrowText("Testing_EnableCallback")] = JsonValue(true);
    flags[NarrowText("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[NarrowText("Testing_EnableUpload")] = JsonValue(false);

    std::string productKey = CorvaneTavi::Instance().GetProductKey();
    int status = Sdk::SetTestingFlags(NarrowText(productKey.c_str()), flags);
    if (status != 0)
    {
        std::cout << "Error occurred setting testing flags" << std::endl;
        return status;
    }

    TestResultList results;
    // Taken afresh: this access starts the wrapper if the first one could not.
    productKey = CorvaneTavi::Instance().GetProductKey();
    status = Sdk::SetTestingCallback(NarrowText(productKey.c_str()), VerifyPayloadCallback, &results);
    if (status != 0)
    {
        std::cout << "Error occurred setting testing callback" << std::endl;
        return status;
    }

    RunTests(results);

    for (const TestResult& result : results)
    {
        if (result.passed)
            continue;
        std::cout << std::endl;
        std::cout << "Errors occured during testing" << std::endl;
        return 1;
    }
    std::cout << std::endl;
    std::cout << "All tests passed" << std::endl;
    return 0;
}

} // namespace Corvane
