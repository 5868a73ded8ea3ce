// What is measured: the wrapper with the library in test mode, and the comparisons, each with a discarding callback and
// two documents.
#pragma once

#include <cstdint>

#include <TaviDesktopSDK/TaviDesktopSDK.h>
#include <telemetry/CorvaneTavi.h>

#include "Comparison.h"
#include "HandWritten.h"
#include "NlohmannTree.h"
#include "RapidJsonTree.h"

// Puts the library into test mode and registers the callback. Ends the process when the library refuses.
void UseCallback(int (*callback)(const Veltrane::TaviDesktopSDK::JsonValue& payload, void* context,
                                 Veltrane::TaviDesktopSDK::JsonValue& reply),
                 void* context);

// The product as the wrapper describes it.
ProductDescription DescribeProduct();

struct Subjects
{
    Subjects();
    Subjects(const Subjects&) = delete;
    Subjects& operator=(const Subjects&) = delete;

    std::uint64_t delivered = 0; // payloads, of all subjects
    CorvaneTavi& wrapper;
    NlohmannTree nlohmannTree;
    RapidJsonTree rapidJsonTree;
    HandWritten handWritten;
    Comparison<NlohmannTree> nlohmann;
    Comparison<RapidJsonTree> rapidJson;
    Comparison<HandWritten> floor;

    // Calls visit(name, reporter) for each.
    void ForEach(const auto& visit)
    {
        visit("wrapper", wrapper);
        visit("nlohmann", nlohmann);
        visit("rapidjson", rapidJson);
        visit("floor", floor);
    }
};
