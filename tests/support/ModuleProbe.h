// The wrapper inside a shared library of its own, in a folder of its own.
#pragma once

#include <TaviDesktopSDK/Export.h>

#if defined(MODULE_PROBE_BUILDING) && defined(_WIN32)
#define MODULE_PROBE_API __declspec(dllexport)
#else
#define MODULE_PROBE_API TAVI_SDK_API
#endif

// The folder that the wrapper in this library takes for its module's; kept by the library.
extern "C" MODULE_PROBE_API const wchar_t* ModuleProbeFolder();
