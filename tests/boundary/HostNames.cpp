// A host application with names of its own that our sources use as well, classes, functions and namespaces. It compiles
// and links only while ours are out of its way.
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

class Attribute
{
};
class Attributes
{
};
class EventScopes
{
};
class EventTypes
{
};
class FacetAccess
{
};
class FacetField
{
};
class FacetFields
{
};
class FacetKeys
{
};
class Vocabulary
{
};

std::string ComponentFacet(const std::string& text);
std::optional<std::filesystem::path> ExecutableFolder();
std::string FacetEntries(const std::string& text);
std::string FindElement(std::FILE* file, const char* element);
std::string LoadXmlFile(std::FILE* file);
std::optional<std::filesystem::path> ModuleFolder();
std::string NarrowText(const std::wstring& text);
std::FILE* OpenForReading(const std::filesystem::path& file);
std::string ScopeLetters();
std::string SetFacetObjectMembers(const std::string& text);
std::string SetText(const char* text);
std::string TextOf(const std::string& text);
std::string TextOf(const std::wstring& text);
std::string TextOf(double number);

#include "PublicHeaders.h"
#include <recorder/PayloadRecorder.h>

// Each returns its own name.
std::string ComponentFacet(const std::string&)
{
    return __func__;
}
std::optional<std::filesystem::path> ExecutableFolder()
{
    return __func__;
}
std::string FacetEntries(const std::string&)
{
    return __func__;
}
std::string FindElement(std::FILE*, const char*)
{
    return __func__;
}
std::string LoadXmlFile(std::FILE*)
{
    return __func__;
}
std::optional<std::filesystem::path> ModuleFolder()
{
    return __func__;
}
std::string NarrowText(const std::wstring&)
{
    return __func__;
}
std::FILE* OpenForReading(const std::filesystem::path&)
{
    return nullptr;
}
std::string ScopeLetters()
{
    return __func__;
}
std::string SetFacetObjectMembers(const std::string&)
{
    return __func__;
}
std::string SetText(const char*)
{
    return __func__;
}
std::string TextOf(const std::string&)
{
    return __func__;
}
std::string TextOf(const std::wstring&)
{
    return __func__;
}
std::string TextOf(double)
{
    return __func__;
}

int main()
{
    // The wrapper reads its product file by functions of its own, and not by the host's of the same names.
    const UpiProductInfo info(true);
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    tavi.AddDocument(L"name", L"extension", 1, 2);
    tavi.StartTrackFileChange(L"name");
    const std::string expected =
        info.GetProductLine() + "&" + info.GetRelease() + "&" + info.GetMaster() + "&" + info.GetBuild();
    if (info.GetProductLine() == "undefined" || tavi.GetProductKey() != expected)
    {
        std::cout << "The product key is " << tavi.GetProductKey() << " and not " << expected << std::endl;
        return 1;
    }
    const bool areTheHosts = ExecutableFolder() == "ExecutableFolder" && ModuleFolder() == "ModuleFolder" &&
                             OpenForReading("UPI/upiconfig.xml") == nullptr && TextOf(1.0) == "TextOf";
    std::cout << (areTheHosts ? "Each calls its own functions" : "The host calls functions of ours") << std::endl;
    return areTheHosts ? 0 : 1;
}
