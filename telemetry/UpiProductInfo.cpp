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

XmlTree Owned(mxml_node_t* tree)
{
    return {tree, &mxmlDelete};
}

// Without a callback Mini-XML reports on the error stream. It does not tell which one was set before.
class SilentMiniXml
{
public:
    SilentMiniXml()
    {
        mxmlSetErrorCallback([](const char*) {});
    }
    ~SilentMiniXml() { mxmlSetErrorCallback(nullptr); }
    SilentMiniXml(const SilentMiniXml&) = delete;
    SilentMiniXml& operator=(const SilentMiniXml&) = delete;
};

// Mini-XML loses memory over an error in the first tag and over text beside the root element. Here a parent of our own
// takes such nodes. Its name is no UTF-8, so that no closing tag in the file can be its.
bool IsWellFormed(std::FILE* file)
{
    const XmlTree parent = Owned(mxmlNewElement(MXML_NO_PARENT, "\xFF"));
    if (mxmlLoadFile(parent.get(), file, MXML_NO_CALLBACK) == nullptr)
        return false;
    for (mxml_node_t* node = mxmlGetFirstChild(parent.get()); node != nullptr; node = mxmlGetNextSibling(node))
    {
        const char* const text = mxmlGetType(node) == MXML_TEXT ? mxmlGetText(node, nullptr) : nullptr;
        if (text != nullptr && *text != '\0')
            return false;
    }
    return true;
}

// Null when the file cannot be opened or is not well-formed.
XmlTree LoadXml(const std::filesystem::path& path)
{
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(OpenForReading(path), &std::fclose);
    const SilentMiniXml silent;
    if (file == nullptr || !IsWellFormed(file.get()))
        return Owned(nullptr);
    std::rewind(file.get());
    return Owned(mxmlLoadFile(nullptr, file.get(), nullptr));
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
