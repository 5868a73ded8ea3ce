#include <telemetry/UpiProductInfo.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>

#include <mxml.h>

#include <telemetry/ExecutableFolder.h>

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

using XmlTree = std::unique_ptr<mxml_node_t, decltype(&mxmlDelete)>;

// Null when the file cannot be opened or is not well-formed.
XmlTree LoadXml(const std::filesystem::path& path)
{
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(OpenForReading(path), &std::fclose);
    if (file == nullptr)
        return {nullptr, &mxmlDelete};

    // Without a callback Mini-XML reports on the error stream. It does not tell which one was set before.
    mxmlSetErrorCallback([](const char*) {});
    XmlTree tree(mxmlLoadFile(nullptr, file.get(), nullptr), &mxmlDelete);
    mxmlSetErrorCallback(nullptr);
    return tree;
}

mxml_node_t* FindElement(mxml_node_t* start, mxml_node_t* top, const char* element, int descend)
{
    return mxmlFindElement(start, top, element, nullptr, nullptr, descend);
}

} // namespace

UpiProductInfo::UpiProductInfo()
    : levels{{"productline", "undefined"}, {"release", "undefined"}, {"master", "undefined"}, {"build", "undefined"}}
{
}

UpiProductInfo::UpiProductInfo(bool fromExecutable) : UpiProductInfo()
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

void UpiProductInfo::Read(const std::filesystem::path& file)
{
    const XmlTree tree = LoadXml(file);
    if (tree == nullptr)
        return;

    mxml_node_t* element = FindElement(tree.get(), tree.get(), "upi_element", MXML_DESCEND);
    while (element != nullptr)
    {
        const char* const elementName = mxmlElementGetAttr(element, "name");
        if (elementName != nullptr && std::string_view(elementName) == "level")
        {
            std::string level = "undefined";
            std::string identifier = "undefined";
            mxml_node_t* attribute = FindElement(element, element, "upi_attribute", MXML_DESCEND);
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
                attribute = FindElement(attribute, element, "upi_attribute", MXML_NO_DESCEND);
            }
            levels[level] = identifier;
        }
        // Start and top of the search are both the visited element, on purpose: the walk only ever goes inwards.
        element = FindElement(element, element, "upi_element", MXML_DESCEND);
    }
}
