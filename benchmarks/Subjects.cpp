#include "Subjects.h"

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "Discard.h"
#include "Events.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

void UseCallback(Sdk::TestingCallback callback, void* context)
{
    const TaviString productKey(CorvaneTavi::Instance().GetProductKey().c_str());
    JsonValue flags;
    flags[TaviString("Testing_EnableCallback")] = JsonValue(true);
    flags[TaviString("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[TaviString("Testing_EnableUpload")] = JsonValue(false);
    if (Sdk::SetTestingFlags(productKey, flags) != Sdk::StatusSuccess ||
        Sdk::SetTestingCallback(productKey, callback, context) != Sdk::StatusSuccess)
    {
        std::cerr << "The library does not go into test mode" << std::endl;
        std::exit(1);
    }
}

ProductDescription DescribeProduct()
{
    std::istringstream productKey(CorvaneTavi::Instance().GetProductKey());
    ProductDescription product;
    for (std::string* level : {&product.line, &product.release, &product.master, &product.build})
        std::getline(productKey, *level, '&');
    product.provider = "upi1";
    return product;
}

Subjects::Subjects()
    : wrapper(CorvaneTavi::Instance()), nlohmannTree(DescribeProduct(), DiscardNlohmann, &delivered),
      rapidJsonTree(DescribeProduct(), DiscardRapidJson, &delivered),
      handWritten(DescribeProduct(), DiscardText, &delivered), nlohmann(nlohmannTree), rapidJson(rapidJsonTree),
      floor(handWritten)
{
    UseCallback(DiscardValue, &delivered);
    ForEach([](const char*, auto& reporter) { AddDocuments(reporter); });
}
