// The catalogue: every reporting method of the wrapper, called once, with the payload that must come of it.
#pragma once

#include <harness/Verification.h>

// Runs all tests in order and appends one record each to `results`. VerifyPayloadCallback must be registered with
// `results` as its context; the last test registers a callback of its own and leaves it registered.
void RunTests(TestResultList& results);
