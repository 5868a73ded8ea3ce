// What the wrapper sends and prints while a function runs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

struct Recording
{
    std::vector<Veltrane::TaviDesktopSDK::JsonValue> payloads;
    std::string output;
};

// In the library's test mode; standard output is kept instead of shown.
Recording Record(const std::function<void()>& reports);
