#include "Subjects.h"

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include <telemetry/ValueText.h>

#include "Discard.h"
#include "Events.h"

using Corvane::TextOf;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Sdk = Veltrane::TaviDesktopSDK;

void UseCallback(int (*callback)(const JsonValue& payload, void* context, JsonValue& reply), void* context)
{
    const TaviString productKey = TextOf(CorvaneTavi::Instance().GetProductKey());
    JsonValue flags;
    flags[TextOf("Testing_EnableCallback")] = JsonValue(true);
    flags[TextOf("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[TextOf("Testing_EnableUpload")] = JsonValue(false);
    if (Sdk::SetTestingFlags(productKey, flags) != 0 || Sdk::SetTestingCallback(productKey, callback, context) != 0)
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
