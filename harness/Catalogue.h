// The catalogue: every reporting method of the wrapper, called once, with the payload that must come of it.
#pragma once

#include <functional>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/Verification.h>
#include <telemetry/CorvaneTavi.h>

using ReportingCall = void (*)(CorvaneTavi& tavi);

// Takes a test: its name, the keys that its payload must have, and the call that sends it.
using TestVisitor =
    std::function<void(const char* name, Veltrane::TaviDesktopSDK::JsonValue expected, ReportingCall call)>;

// Hands over each test in order, but for the documents', which is the last one. What is expected of a test is built
// just before it is handed over. Nothing is called.
void VisitTests(const TestVisitor& test);

using DocumentStep = void (*)();

// As TestVisitor: `prepare` registers documents and sends nothing, `report` sends the change of one of them.
using DocumentTestVisitor = std::function<void(const char* name, Veltrane::TaviDesktopSDK::JsonValue expected,
                                               DocumentStep prepare, DocumentStep report)>;

void VisitDocumentTest(const DocumentTestVisitor& test);

// Runs all tests in order, prints their titles and appends one record each to `results`. VerifyPayloadCallback must be
// registered with `results` as its context. The last test registers a callback of its own and leaves it registered with
// a context that is gone afterwards: before any further event another must be registered.
void RunTests(TestResultList& results);
