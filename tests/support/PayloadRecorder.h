// While it lives, the telemetry library is in test mode and every payload is kept, in the order of the events.
#pragma once

#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

class PayloadRecorder
{
public:
    PayloadRecorder();
    ~PayloadRecorder();
    PayloadRecorder(const PayloadRecorder&) = delete;
    PayloadRecorder& operator=(const PayloadRecorder&) = delete;

    std::vector<Veltrane::TaviDesktopSDK::JsonValue> payloads;
};
