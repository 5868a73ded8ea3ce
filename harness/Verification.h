// Judges the payloads that the telemetry library hands back in test mode.
//
// Verdicts go to std::cout and value trees to std::wcout, every line flushed. A payload is judged on the expected keys
// alone: it may hold any others.
#pragma once

#include <set>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

struct TestResult
{
    Veltrane::TaviDesktopSDK::JsonValue expected;
    bool passed = false;
};

using TestResultList = std::vector<TestResult>; // in the order in which the tests ran

// The testing callback of all tests but the last. `context` is the TestResultList, whose last record is judged: each
// expected key that differs is reported with both values, then "PASSED" or "FAILED" is printed and stored. For a null
// payload a message is printed instead and the record stays as it is, unless null was expected. While the list is empty
// nothing is judged. Always returns 0, and never touches `reply`.
int VerifyPayloadCallback(const Veltrane::TaviDesktopSDK::JsonValue& payload, void* context,
                          Veltrane::TaviDesktopSDK::JsonValue& reply);

// The testing callback for documents. `context` is one TestResult. Compares the document's name, type, source and size
// under "content_meta", and "type"; prints the verdict without details, and stores it. For a null payload a shorter
// message is printed, and no verdict. Always returns 0, and never touches `reply`.
int VerifyFileInputPayload(const Veltrane::TaviDesktopSDK::JsonValue& payload, void* context,
                           Veltrane::TaviDesktopSDK::JsonValue& reply);

// The keys of an object, ascending; none for any other value.
std::set<Veltrane::TaviDesktopSDK::TaviString> GetSortedKeys(const Veltrane::TaviDesktopSDK::JsonValue& value);

// Prints an object as its keys in ascending order, each above its value, which is indented by four more blanks; any
// other value as its JSON text. Null prints nothing, and so does an array that is not empty. `depth` indents the whole
// tree.
void PrintJsonValue(const Veltrane::TaviDesktopSDK::JsonValue& value, unsigned depth);
