#include <telemetry/UpiProductInfo.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>

#include <telemetry/ExecutableFolder.h>
#include <telemetry/MiniXml.h>

using namespace Corvane;

namespace
{

std::optional<std::filesystem::path> ConfigPath(bool fromExecutable)
{
    if (!fromExecutable)
        return ModuleFolder();
    std::optional<std::filesystem::path> path = ExecutableFolder();
    if (path)
        *path /= std::filesystem::path("UPI") / "upiconfig.xml";
    return path;
}

struct FileCloser
{
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

} // namespace

UpiProductInfo::UpiProductInfo(bool fromExecutable)
{
    if (const std::optional<std::filesystem::path> file = ConfigPath(fromExecutable))
        Read(*file);
}

UpiProductInfo UpiProductInfo::FromFile(const std::filesystem::path& file)
{
    UpiProductInfo info;
    info.Read(file);
    return info;
}

bool UpiProductInfo::GetUpiConfigPath(bool fromExecutable, std::wstring& path)
{
    const std::optional<std::filesystem::path> file = ConfigPath(fromExecutable);
    if (!file)
        return false;
    try
    {
        path = file->wstring();
        return true;
    }
    catch (const std::filesystem::filesystem_error&)
    {
        return false;
    }
}

void UpiProductInfo::Read(const std::filesystem::path& path)
{
    const std::unique_ptr<std::FILE, FileCloser> file(OpenForReading(path));
    if (file == nullptr)
        return;
    const std::unique_ptr<mxml_node_t, void (*)(mxml_node_t*)> tree(LoadXmlFile(file.get()), &mxmlDelete);
    if (tree == nullptr)
        return;

    mxml_node_t* element = FindElement(tree.get(), tree.get(), "upi_element", true);
    while (element != nullptr)
    {
        const char* const elementName = mxmlElementGetAttr(element, "name");
        if (elementName != nullptr && std::string_view(elementName) == "level")
        {
            std::string level = "undefined";
            std::string identifier = "undefined";
            mxml_node_t* attribute = FindElement(element, element, "upi_attribute", true);
            while (attribute != nullptr)
            {
                const char* const name = mxmlElementGetAttr(attribute, "name");
                const char* const value = mxmlElementGetAttr(attribute, "value");
                if (name != nullptr && value != nullptr)
                {
                    if (std::string_view(name) == "name")
                        level = value;
                    else if (std::string_view(name) == "id")
                        identifier = value;
                }
                attribute = FindElement(attribute, element, "upi_attribute", false);
            }
            levels[level] = identifier;
        }
        // Start and top of the search are both the visited element, on purpose: the walk only ever goes inwards.
        element = FindElement(element, element, "upi_element", true);
    }
}
