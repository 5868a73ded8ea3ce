// The stand-in for the telemetry library: it builds every payload and passes it to the callback, and uploads nothing.
#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <map>
#include <string>
#include <utility>

#include "Node.h"

namespace Veltrane::TaviDesktopSDK
{

namespace
{

constexpr int StatusSuccess = 0;
constexpr int StatusFailure = 1;

struct Library
{
    std::map<TaviString, JsonValue> products; // each one's description, by host-product identifier
    bool callbackEnabled = false;
    int (*callback)(const JsonValue&, void*, JsonValue&) = nullptr;
    void* callbackContext = nullptr;
};

Library& TheLibrary()
{
    // Never destroyed: a host may report from the destructor of a static object.
    static Library& library = *new Library;
    return library;
}

} // namespace

int Initialize(const Facet::Product& product, TaviString& hostProduct)
{
    auto& products = TheLibrary().products;
    hostProduct.SetString(("host-product-" + std::to_string(products.size() + 1)).c_str());
    products[hostProduct] = product.Build(JsonValue());
    return StatusSuccess;
}

bool SetHostProduct(const TaviString& hostProduct)
{
    return TheLibrary().products.contains(hostProduct);
}

int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra)
{
    const Library& library = TheLibrary();
    const auto product = library.products.find(hostProduct);
    if (product == library.products.end())
        return StatusFailure;
    if (!library.callbackEnabled || library.callback == nullptr)
        return StatusSuccess;

    JsonValue payload = core.Build(product->second);
    if (extra != nullptr)
        AddMembers(payload, *extra);
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
    if (*flags.GetJsonString().c_str() != '{') // no object
        return StatusFailure;
    TaviString enableCallback;
    enableCallback.SetString("Testing_EnableCallback");
    TheLibrary().callbackEnabled = flags[enableCallback].Compare(JsonValue(true)) == 0;
    return StatusSuccess;
}

int SetTestingCallback(const TaviString&, int (*callback)(const JsonValue& payload, void* context, JsonValue& reply),
                       void* context)
{
    TheLibrary().callback = callback;
    TheLibrary().callbackContext = context;
    return StatusSuccess;
}

} // namespace Veltrane::TaviDesktopSDK
