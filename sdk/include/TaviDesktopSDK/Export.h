// Marks what the telemetry library exports. TAVI_SDK_BUILDING is defined only while the library itself is compiled.
#pragma once

#if defined(_WIN32)
#if defined(TAVI_SDK_BUILDING)
#define TAVI_SDK_API __declspec(dllexport)
#else
#define TAVI_SDK_API __declspec(dllimport)
#endif
#else
#define TAVI_SDK_API __attribute__((visibility("default")))
#endif
