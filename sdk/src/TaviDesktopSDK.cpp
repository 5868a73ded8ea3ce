// The stand-in for the telemetry library: it builds and hands over every payload, and uploads nothing.
#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <string>
#include <utility>

#include "Blocks.h"
#include "PayloadView.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

constexpr int StatusFailure = 1;

struct Library
{
    JsonValue productDescriptions; // by host-product identifier; none is null
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
    Blocks::Keep();
    JsonValue& descriptions = TheLibrary().productDescriptions;
    hostProduct = TaviString(("host-product-" + std::to_string(descriptions.GetCount() + 1)).c_str());
    JsonValue description = product.Build(JsonValue());
    if (description.IsNull())
        description = JsonValue(true); // has no members either
    descriptions[hostProduct] = std::move(description);
    return StatusSuccess;
}

bool SetHostProduct(const TaviString& hostProduct)
{
    return !std::as_const(TheLibrary().productDescriptions)[hostProduct].IsNull();
}

int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra)
{
    const Library& library = TheLibrary();
    const JsonValue& description = library.productDescriptions[hostProduct];
    if (description.IsNull())
        return StatusFailure;
    if (!library.callbackEnabled || library.callback == nullptr)
        return StatusSuccess;

    PayloadView view;
    view.Add(description);
    view.Add(core);
    if (extra != nullptr)
        view.Add(*extra);
    JsonValue reply;
    library.callback(view.Payload(), library.callbackContext, reply);
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
