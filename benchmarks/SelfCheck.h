// Checks that every comparison makes the same JSON as the wrapper, for every measured event and for texts and numbers
// that are hard to convert. Otherwise the wrapper might be compared with code that does less.
#pragma once

// Prints the differences. Leaves the library in test mode, without a callback.
bool ComparisonsMakeTheWrappersPayloads();
