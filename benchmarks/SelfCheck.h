// Whether every comparison makes the JSON that the wrapper's payload holds, for every event under measurement and for
// texts and numbers that are hard to convert. Otherwise something would be measured that does less.
#pragma once

// Prints the differences. Leaves the library in test mode, without a callback.
bool ComparisonsMakeTheWrappersPayloads();
