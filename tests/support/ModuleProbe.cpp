#include "ModuleProbe.h"

#include <string>

#include <telemetry/UpiProductInfo.h>

const wchar_t* ModuleProbeFolder()
{
    static std::wstring folder;
    return UpiProductInfo::GetUpiConfigPath(false, folder) ? folder.c_str() : nullptr;
}
