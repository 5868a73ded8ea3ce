// A shared library that contains the wrapper, in a folder other than the program's.
#include <string>

#include <telemetry/UpiProductInfo.h>

#if defined(_WIN32)
#define MODULE_PROBE_API __declspec(dllexport)
#else
#define MODULE_PROBE_API __attribute__((visibility("default")))
#endif

// The folder that the wrapper in this library takes for its module's; kept by the library.
extern "C" MODULE_PROBE_API const wchar_t* ModuleProbeFolder()
{
    static std::wstring folder;
    return UpiProductInfo::GetUpiConfigPath(false, folder) ? folder.c_str() : nullptr;
}
