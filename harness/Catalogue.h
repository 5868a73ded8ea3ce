// The catalogue: every reporting method of the wrapper, called once, with the payload that it must send.
#pragma once

#include <harness/Verification.h>

// Runs all tests in order, prints their titles and appends one record each to `results`. VerifyPayloadCallback must be
// registered with `results` as its context. The last test registers another callback and leaves it registered with a
// context that is gone afterwards: before any further event another must be registered.
void RunTests(TestResultList& results);
