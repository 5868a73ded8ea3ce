// The host product's identity: four identifiers, read from UPI/upiconfig.xml in the program's folder.
//
// The file is XML; harness/UPI/upiconfig.xml is an example. An element `upi_element` whose attribute "name" is "level"
// describes one level; inside it, elements `upi_attribute` give in their attributes "name" and "value" the level's name
// (name="name") and identifier (name="id"); if one occurs twice, the later wins. The levels "productline", "release",
// "master" and "build" are nested in any order, each the first `upi_element` inside the one before; siblings of a
// visited one are not read. The search starts below the document's first node, which is the XML declaration where there
// is one.
//
// Identifiers are UTF-8, and may be empty. Errors are not reported: a level that the file lacks is "undefined", and so
// are all levels when there is no file or Mini-XML does not read it.
#pragma once

#include <filesystem>
#include <map>
#include <string>

class UpiProductInfo
{
public:
    // With `fromExecutable`, reads the file at GetUpiConfigPath(true); otherwise the path is a folder, and every level
    // stays "undefined".
    explicit UpiProductInfo(bool fromExecutable);

    // Reads the file at `file`.
    static UpiProductInfo FromFile(const std::filesystem::path& file);

    const std::string& GetProductLine() const { return levels.at("productline"); }
    const std::string& GetRelease() const { return levels.at("release"); }
    const std::string& GetMaster() const { return levels.at("master"); }
    const std::string& GetBuild() const { return levels.at("build"); }

    // With `fromExecutable`, the full path of the product file beside the running program. Otherwise the folder alone
    // of the program or shared library that holds this code. False, with `path` untouched, when the system does not
    // return it or the path has no wide form.
    static bool GetUpiConfigPath(bool fromExecutable, std::wstring& path);

private:
    UpiProductInfo() = default;

    void Read(const std::filesystem::path& path);

    // Identifier by level name.
    std::map<std::string, std::string> levels = {
        {"productline", "undefined"}, {"release", "undefined"}, {"master", "undefined"}, {"build", "undefined"}};
};
