// The stand-in for the telemetry library: it builds and hands over every payload, and uploads nothing.
#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <map>
#include <string>

#include "Merge.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

constexpr int StatusFailure = 1;

struct Library
{
    std::map<TaviString, JsonValue> productDescriptions; // by host-product identifier
    bool callbackEnabled = false;
    TestingCallback callback = nullptr;
    void* callbackContext = nullptr;
};

Library& TheLibrary()
{
    // Never destroyed: the host may report until the last of its own statics is gone.
    static Library& library = *new Library;
    return library;
}

} // namespace

int Initialize(const Facet::Product& product, TaviString& hostProduct)
{
    auto& descriptions = TheLibrary().productDescriptions;
    hostProduct = TaviString(("host-product-" + std::to_string(descriptions.size() + 1)).c_str());
    descriptions[hostProduct] = product.Build(JsonValue());
    return StatusSuccess;
}

bool SetHostProduct(const TaviString& hostProduct)
{
    return TheLibrary().productDescriptions.contains(hostProduct);
}

int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra)
{
    const Library& library = TheLibrary();
    const auto description = library.productDescriptions.find(hostProduct);
    if (description == library.productDescriptions.end())
        return StatusFailure;
    if (!library.callbackEnabled || library.callback == nullptr)
        return StatusSuccess;

    JsonValue payload = core.Build(description->second);
    if (extra != nullptr)
        MergeMembers(payload, *extra);
    JsonValue reply;
    library.callback(payload, library.callbackContext, reply);
    return StatusSuccess;
}

int IsOptedIn(JsonValue*)
{
    return StatusSuccess;
}

int SetTestingFlags(const TaviString&, const JsonValue& flags)
{
    const bool isObject = *flags.GetJsonString().c_str() == '{';
    if (!isObject)
        return StatusFailure;
    TheLibrary().callbackEnabled = flags[TaviString("Testing_EnableCallback")].Compare(JsonValue(true)) == 0;
    return StatusSuccess;
}

int SetTestingCallback(const TaviString&, TestingCallback callback, void* context)
{
    TheLibrary().callback = callback;
    TheLibrary().callbackContext = context;
    return StatusSuccess;
}

} // namespace Veltrane::TaviDesktopSDK
