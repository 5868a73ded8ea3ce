// The telemetry library: opt-in query, start-up, event tracking and test mode.
//
// The library is not thread-safe: make all calls, and use all strings, values and facets, on one thread. The testing
// callback runs on it too, inside TrackEvent. A status is 0 for success and any other value for failure, except
// IsOptedIn's.
#pragma once

#include <TaviDesktopSDK/Export.h>
#include <TaviDesktopSDK/Facet.h>
#include <TaviDesktopSDK/JsonValue.h>
#include <TaviDesktopSDK/TaviString.h>

namespace Veltrane::TaviDesktopSDK
{

// Starts the library for `product`, whose entries as they are now go into every payload, and writes the text that
// identifies the host product from then on. After success that text is not empty; after a failure it may be.
TAVI_SDK_API int Initialize(const Facet::Product& product, TaviString& hostProduct);

// Returns false if Initialize has not given out `hostProduct`.
TAVI_SDK_API bool SetHostProduct(const TaviString& hostProduct);

// Sends the event that `core` and its sub-facets describe; the members of `extra`, if given, are added last. In test
// mode the testing callback has been called with the payload when this returns. An event for a host product that
// Initialize did not give out fails, and the callback is not called.
TAVI_SDK_API int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra);

// Returns 4 if the user has not opted in; any other value means go on. `details` may be null.
TAVI_SDK_API int IsOptedIn(JsonValue* details);

// `flags` is an object of booleans: "Testing_EnableCallback", "Testing_EnableWhitelistDownload",
// "Testing_EnableUpload". It replaces the earlier flags: the callback is called only while its flag is present and
// true. Any other value is refused, and the earlier flags stay in force. `productKey` is the product's line, release,
// master and build identifier joined by "&".
TAVI_SDK_API int SetTestingFlags(const TaviString& productKey, const JsonValue& flags);

// Registers `callback`, in place of any earlier one; a null `callback` withdraws it. It receives each payload that
// would be uploaded, `context`, which stays the caller's and is passed on unchanged, and a reply to fill in. The
// payload is one flat object: the host product's entries, the event's own, those of its sub-facets in the order of
// creation, and the extra members; a later one replaces an earlier one of the same key. Payload and reply are valid
// during the call only; a copy stays valid. The callback's result is not used.
//
// The callback may report further events and register another callback. An event that it reports is passed, before
// TrackEvent returns, to the callback registered by then. It must not throw, and must not change, clear or destroy the
// core, the sub-facets or the extra members of the event it was called for.
TAVI_SDK_API int SetTestingCallback(const TaviString& productKey,
                                    int (*callback)(const JsonValue& payload, void* context, JsonValue& reply),
                                    void* context);

} // namespace Veltrane::TaviDesktopSDK
