#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <telemetry/UpiProductInfo.h>

#include "SharedLibrary.h"
#include "TemporaryFolder.h"

namespace
{

// Product line, release, master, build.
using Identifiers = std::array<std::string, 4>;

const Identifiers Undefined = {"undefined", "undefined", "undefined", "undefined"};

const std::string Declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)"
                                "\n";

Identifiers IdentifiersOf(const UpiProductInfo& info)
{
    return {info.GetProductLine(), info.GetRelease(), info.GetMaster(), info.GetBuild()};
}

// Reading prints nothing, whatever the file holds.
Identifiers ReadFrom(const std::filesystem::path& file)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Identifiers identifiers = IdentifiersOf(UpiProductInfo::FromFile(file));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    return identifiers;
}

Identifiers ReadBytes(std::string_view bytes)
{
    const TemporaryFolder folder;
    return ReadFrom(folder.Write("upiconfig.xml", bytes));
}

// Of a document with a declaration.
Identifiers Read(const std::string& xml)
{
    return ReadBytes(Declaration + xml);
}

std::string Entry(const std::string& name, const std::string& value)
{
    return R"(<upi_attribute name=")" + name + R"(" value=")" + value + "\"/>\n";
}

std::string Element(const std::string& name, const std::string& content)
{
    return R"(<upi_element name=")" + name + "\">\n" + content + "</upi_element>\n";
}

std::string Level(const std::string& level, const std::string& identifier, const std::string& inside = "")
{
    return Element("level", Entry("name", level) + Entry("id", identifier) + inside);
}

std::string FourLevels()
{
    return Level("release", "R", Level("build", "B", Level("productline", "P", Level("master", "M"))));
}

std::filesystem::path ConfigPath(bool fromExecutable)
{
    std::wstring path;
    EXPECT_TRUE(UpiProductInfo::GetUpiConfigPath(fromExecutable, path));
    return path;
}

} // namespace

TEST(UpiProductInfo, IsUndefinedWithoutAFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ReadFrom(folder.Path() / "upiconfig.xml"), Undefined);
    EXPECT_EQ(ReadFrom(folder.Path()), Undefined) << "a folder";
}

TEST(UpiProductInfo, IsUndefinedWhenTheFileIsNoWellFormedXml)
{
    using namespace std::string_literals;
    const std::string whole = Declaration + FourLevels();
    const std::string badFiles[] = {
        "",
        "not XML",
        "\0\x01\x02\xFF\xFE\0<upi_element name=\"level\">\0"s,
        whole.substr(0, whole.size() / 2),
        whole.substr(0, whole.size() - 3),
        Declaration + Level("productline", "P &bogus; P"),
        Declaration + Level("productline", "\xE4 is no UTF-8"),
    };
    for (const std::string& bytes : badFiles)
        EXPECT_EQ(ReadBytes(bytes), Undefined) << bytes;
}

TEST(UpiProductInfo, IsUndefinedWhenTheXmlHoldsNoLevel)
{
    const std::string entries = Entry("name", "productline") + Entry("id", "P");
    for (const std::string& xml :
         {std::string("<upi/>"), "<level>" + entries + "</level>", entries,
          "<upi_element>" + entries + "</upi_element>", "<UPI_ELEMENT name=\"level\">" + entries + "</UPI_ELEMENT>"})
        EXPECT_EQ(Read(xml), Undefined) << xml;
}

TEST(UpiProductInfo, LevelsAreReadInwardsEachTheFirstInTheOneBefore)
{
    const struct
    {
        const char* what;
        std::string xml;
        Identifiers identifiers;
    } rows[] = {
        {"nested in any order", FourLevels(), {"P", "R", "M", "B"}},
        {"at any depth",
         "<a><b/><c>" + Level("productline", "P", "<d><e>" + Level("build", "B") + "</e></d>") + "</c></a>",
         {"P", "undefined", "undefined", "B"}},
        {"siblings",
         "<upi>" + Level("productline", "P") + Level("release", "R") + Level("master", "M") + "</upi>",
         {"P", "undefined", "undefined", "undefined"}},
        {"a sibling of a nested level",
         Level("productline", "P", Level("release", "R") + Level("master", "M", Level("build", "B"))),
         {"P", "R", "undefined", "undefined"}},
        {"in an element that is no level",
         Element("Level", Entry("name", "productline") + Entry("id", "P") + Level("release", "R")),
         {"undefined", "R", "undefined", "undefined"}},
        {"two of one name",
         Level("build", "outer", Level("master", "M", Level("build", "inner"))),
         {"undefined", "undefined", "M", "inner"}},
        {"of other names",
         Level("patch", "X", Level("Build", "Y", Level("", "Z", Level("build", "B")))),
         {"undefined", "undefined", "undefined", "B"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Read(row.xml), row.identifiers) << row.what;
}

TEST(UpiProductInfo, OfALevelsEntriesTheLastNameAndIdentifierCount)
{
    const std::string name = Entry("name", "productline");
    const std::string valueless = R"(<upi_attribute name="id"/><upi_attribute name="name"/>)";
    const struct
    {
        const char* what;
        std::string entries;
        Identifiers identifiers;
    } rows[] = {
        {"no name", Entry("id", "P") + Level("release", "R"), {"undefined", "R", "undefined", "undefined"}},
        {"no identifier", name + Level("release", "R"), {"undefined", "R", "undefined", "undefined"}},
        {"an empty one", name + Entry("id", ""), {"", "undefined", "undefined", "undefined"}},
        {"two identifiers",
         name + Entry("id", "first") + Entry("id", "later"),
         {"later", "undefined", "undefined", "undefined"}},
        {"two names", name + Entry("id", "R") + Entry("name", "release"), {"undefined", "R", "undefined", "undefined"}},
        {"below the nested level",
         name + Level("release", "R") + Entry("id", "P"),
         {"P", "R", "undefined", "undefined"}},
        {"without values", name + Entry("id", "P") + valueless, {"P", "undefined", "undefined", "undefined"}},
        {"of other names",
         Entry("Name", "release") + name + Entry("id", "P") + Entry("ID", "X") + "<upi_attribute value=\"X\"/>",
         {"P", "undefined", "undefined", "undefined"}},
        {"with text", name + "text" + Entry("id", "P") + "text", {"P", "undefined", "undefined", "undefined"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Read(Element("level", row.entries)), row.identifiers) << row.what;
}

TEST(UpiProductInfo, TheSearchStartsBelowTheFirstNode)
{
    EXPECT_EQ(ReadBytes("<upi>" + FourLevels() + "</upi>"), (Identifiers{"P", "R", "M", "B"}));
    EXPECT_EQ(ReadBytes(FourLevels()), (Identifiers{"P", "undefined", "M", "B"}));
    EXPECT_EQ(ReadBytes("<!-- comment -->" + FourLevels()), Undefined);
}

TEST(UpiProductInfo, WhatIsNoElementIsReadPast)
{
    const std::string type = R"(<!DOCTYPE upi [ <!ELEMENT upi ANY> <!ENTITY name "value"> ]>)";
    const std::string comment = "<!-- " + Level("productline", "X") + " -->";
    EXPECT_EQ(ReadBytes("\xEF\xBB\xBF" + Declaration + type + comment + "<upi>" + comment + FourLevels() + "</upi>"),
              (Identifiers{"P", "R", "M", "B"}));
}

TEST(UpiProductInfo, ThePredefinedEntitiesAndCharacterReferencesAreReadAndNoOthers)
{
    EXPECT_EQ(Read(Level("productline", "&amp;&lt;&gt;&quot;&apos;",
                         Level("release", "&#65;&#39;&#8364;",
                               Level("master", "&#x41;&#x27;&#x20AC;&#x1F600;", Level("build", "M\xC3\xBCnchen"))))),
              (Identifiers{"&<>\"'", "A'\xE2\x82\xAC", "A'\xE2\x82\xAC\xF0\x9F\x98\x80", "M\xC3\xBCnchen"}));
    for (const char* const unknown : {"&apo;", "&aposs;", "&APOS;", "&;"})
        EXPECT_EQ(Read(Level("productline", "P", Level("build", unknown))), Undefined) << unknown;
}

// A program in another working folder, and in folders of any name, is tested with the whole program.
TEST(UpiProductInfo, TheConfigurationLiesInAFolderBesideTheProgramAndIsRead)
{
    const std::filesystem::path path = ConfigPath(true);
    EXPECT_TRUE(path.is_absolute()) << path;
    EXPECT_TRUE(std::filesystem::is_regular_file(path)) << path;
    EXPECT_EQ(ConfigPath(false) / "UPI" / "upiconfig.xml", path);
    EXPECT_EQ(IdentifiersOf(UpiProductInfo(true)),
              (Identifiers{"CVSTUDIO", "2027.0.F", "CVSTUDIO_2027_0_EN", "27.0.214"}));
    EXPECT_EQ(IdentifiersOf(UpiProductInfo(false)), Undefined) << "the module's path is a folder";
}

TEST(UpiProductInfo, InASharedLibraryTheModuleIsThatLibrary)
{
    const std::filesystem::path library = std::filesystem::relative(PathOf(MODULE_FILE));
    const auto moduleFolder = reinterpret_cast<const wchar_t* (*)()>(FunctionOf(library, "ModuleProbeFolder"));
    ASSERT_NE(moduleFolder, nullptr);
    const wchar_t* const folder = moduleFolder();
    ASSERT_NE(folder, nullptr);
    EXPECT_TRUE(std::filesystem::path(folder).is_absolute());
    EXPECT_TRUE(std::filesystem::equivalent(folder, library.parent_path()));
}
