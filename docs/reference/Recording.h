// What the wrapper sends while a function runs, and what a payload consists of.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

struct Recording
{
    std::vector<Veltrane::TaviDesktopSDK::JsonValue> payloads; // the edit timer, which varies, at a fixed example
    std::string output;
};

// In the library's test mode; standard output is kept instead of shown.
Recording Record(const std::function<void()>& reports);

// A member of the payload that is no object, or a member of one that is.
struct Leaf
{
    std::string object; // the key of the object; empty for the payload itself
    std::string key;
    std::string json;

    bool SamePlace(const Leaf& other) const { return object == other.object && key == other.key; }
    bool IsEditTimer() const;
};

// In the payload's order.
std::vector<Leaf> LeavesOf(const Veltrane::TaviDesktopSDK::JsonValue& payload);
