// One open document of the host and the event that is sent when its user starts changing it.
//
// The event is made when the document is registered, and its edit timer runs from then on. The rules of CorvaneTavi.h
// for text and threads hold here as well.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

class CorvaneTavi;

class TaviDocument
{
public:
    // A document without an event, for which TrackEvent() does nothing.
    TaviDocument();

    // `size` is sent as a signed 64-bit integer: from 2^63 on it comes out negative. `source` is the host's code for
    // where the document came from.
    TaviDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size, std::uint32_t source);

    TaviDocument(const TaviDocument&) = delete;
    TaviDocument& operator=(const TaviDocument&) = delete;
    virtual ~TaviDocument();

    // Sends the event again on each call, for the host product of `tavi`; the timer keeps running. When the library
    // refuses it, "TaviDocument::TrackEvent TaviDesktopSDK::TrackEvent" is printed on standard output.
    void TrackEvent(const CorvaneTavi& tavi) const;

private:
    std::unique_ptr<Veltrane::TaviDesktopSDK::Facet::Core> core; // null: nothing to send
};
