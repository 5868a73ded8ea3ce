#include <check/ProductFile.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include <check/FileNames.h>
#include <telemetry/ExecutableFolder.h>
#include <telemetry/MiniXml.h>

namespace Corvane
{

namespace
{

// In the order of the product key.
constexpr std::array<const char*, 4> Levels = {"productline", "release", "master", "build"};
constexpr const char* Undefined = "undefined";

using Tree = std::unique_ptr<mxml_node_t, void (*)(mxml_node_t*)>;

std::string AttributeOf(mxml_node_t* element, const char* name)
{
    const char* const value = mxmlElementGetAttr(element, name);
    return value != nullptr ? value : "";
}

// The value of the level's attribute "name" or "id"; the last one counts.
std::string LevelText(mxml_node_t* level, const std::string& name)
{
    std::string text = Undefined;
    for (mxml_node_t* attribute = FindElement(level, level, "upi_attribute", true); attribute != nullptr;
         attribute = FindElement(attribute, level, "upi_attribute", false))
    {
        if (AttributeOf(attribute, "name") == name && mxmlElementGetAttr(attribute, "value") != nullptr)
            text = AttributeOf(attribute, "value");
    }
    return text;
}

struct Close
{
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

} // namespace

std::string ProductFile::ProductKey() const
{
    std::string key;
    for (const char* const level : Levels)
    {
        if (levels.at(level).empty())
            return "";
        key += (key.empty() ? "" : "&") + levels.at(level);
    }
    return key;
}

ProductFile ReadProductFile(const std::filesystem::path& file)
{
    ProductFile product;
    for (const char* const level : Levels)
        product.levels[level] = Undefined;

    const std::string subject = "The product file " + Utf8Of(file);
    const std::string consequence = std::string(": the product is \"") + Undefined + "\"";
    errno = 0;
    const std::unique_ptr<std::FILE, Close> opened(OpenForReading(file));
    if (opened == nullptr)
    {
        product.remark = subject + " cannot be read, " + std::generic_category().message(errno) + consequence;
        return product;
    }
    const Tree tree(LoadXmlFile(opened.get()), &mxmlDelete);
    if (tree == nullptr)
    {
        product.remark = subject + " is not well-formed XML" + consequence;
        return product;
    }
    mxml_node_t* element = tree.get();
    while ((element = FindElement(element, element, "upi_element", true)) != nullptr)
    {
        if (AttributeOf(element, "name") == "level")
            product.levels[LevelText(element, "name")] = LevelText(element, "id");
    }
    std::string lacking;
    for (const char* const level : Levels)
    {
        if (product.levels[level] == Undefined)
            lacking.append(lacking.empty() ? " has no " : ", no ").append(level);
    }
    if (!lacking.empty())
        product.remark = subject + lacking + ": sent is \"" + Undefined + "\"";
    return product;
}

std::filesystem::path ProductFilePath()
{
    return ExecutableFolder().value_or(std::filesystem::path()) / "UPI" / "upiconfig.xml";
}

} // namespace Corvane
