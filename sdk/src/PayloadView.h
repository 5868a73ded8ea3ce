// An event's payload for as long as it is handed over: made of the members that the product's description and the
// event's facets hold, without copies.
#pragma once

#include <TaviDesktopSDK/Facet.h>
#include <TaviDesktopSDK/JsonValue.h>

#include "Members.h"

namespace Veltrane::TaviDesktopSDK
{

class PayloadView
{
public:
    PayloadView() = default;
    ~PayloadView() { Members::GiveBack(payload); }
    PayloadView(const PayloadView&) = delete;
    PayloadView& operator=(const PayloadView&) = delete;

    // An object's members, or an event's, replace those of the same key. What is added stays as it is until the view is
    // gone.
    void Add(const JsonValue& object) { Members::Borrow(payload, object); }
    void Add(const Facet::Core& event);

    const JsonValue& Payload() const { return payload; }

private:
    JsonValue measured; // members that no facet holds
    JsonValue payload;
};

} // namespace Veltrane::TaviDesktopSDK
