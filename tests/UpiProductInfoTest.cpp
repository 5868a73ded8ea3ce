#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <telemetry/UpiProductInfo.h>

#include "SharedLibrary.h"
#include "TemporaryFolder.h"
#include "Utf8Path.h"

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
    return Level("productline", "P", Level("release", "R", Level("master", "M", Level("build", "B"))));
}

std::filesystem::path ConfigPath(bool fromExecutable)
{
    std::wstring path;
    EXPECT_TRUE(UpiProductInfo::GetUpiConfigPath(fromExecutable, path));
    return path;
}

} // namespace

TEST(UpiProductInfo, ReadsFourNestedLevels)
{
    EXPECT_EQ(Read(FourLevels()), (Identifiers{"P", "R", "M", "B"}));
}

TEST(UpiProductInfo, ReadsLevelsInWhateverOrderTheyNest)
{
    EXPECT_EQ(Read(Level("build", "B", Level("master", "M", Level("productline", "P", Level("release", "R"))))),
              (Identifiers{"P", "R", "M", "B"}));
}

TEST(UpiProductInfo, IsUndefinedWithoutAFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ReadFrom(folder.Path() / "upiconfig.xml"), Undefined);
    EXPECT_EQ(ReadFrom(folder.Path() / "UPI" / "upiconfig.xml"), Undefined);
}

TEST(UpiProductInfo, IsUndefinedWhenTheFileIsAFolder)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ReadFrom(folder.Path()), Undefined);
}

TEST(UpiProductInfo, IsUndefinedWhenTheFileIsNoWellFormedXml)
{
    using namespace std::string_literals;
    const std::string whole = Declaration + FourLevels();
    const std::string badFiles[] = {
        "",
        " \r\n",
        "not XML",
        "\0\x01\x02\xFF\xFE\0<upi_element name=\"level\">\0"s,
        whole.substr(0, whole.size() / 2),
        whole.substr(0, whole.rfind("</upi_element>")),
        whole.substr(0, whole.size() - 3),
        Declaration + R"(<upi_element name="level"><upi_attribute name="id" val)",
        R"(<upi_element name="level")",
        Declaration + "<upi_element name=\"level\">" + Entry("name", "productline") + Entry("id", "P") + "</other>",
        Declaration + Level("productline", "P &bogus; P"),
        Declaration + Level("productline", "P & P"),
        Declaration + Level("productline", "\xE4 is no UTF-8"),
    };
    for (const std::string& bytes : badFiles)
        EXPECT_EQ(ReadBytes(bytes), Undefined) << bytes;
}

// What Mini-XML accepts, beyond what is well-formed, is read.
TEST(UpiProductInfo, TextBesideTheRootElementIsReadPast)
{
    const std::string complete = "<upi>" + FourLevels() + "</upi>";
    const std::string rows[] = {
        Declaration + "text " + complete,
        Declaration + complete + "text ",
        complete + "text beside the root element ",
    };
    for (const std::string& row : rows)
        EXPECT_EQ(ReadBytes(row), (Identifiers{"P", "R", "M", "B"})) << row;
}

TEST(UpiProductInfo, ARootElementThatIsNotClosedIsReadWithoutADeclarationOnly)
{
    const std::string unclosed = "<upi>" + FourLevels();
    EXPECT_EQ(ReadBytes(unclosed), (Identifiers{"P", "R", "M", "B"}));
    EXPECT_EQ(ReadBytes(Declaration + unclosed), Undefined);
}

TEST(UpiProductInfo, IsUndefinedWhenTheFirstNodeIsNotAroundTheLevels)
{
    const std::string complete = "<upi>" + FourLevels() + "</upi>";
    for (const char* const first : {"text ", "<!-- comment -->", "<upi/>"})
        EXPECT_EQ(ReadBytes(first + complete), Undefined) << first;
}

TEST(UpiProductInfo, ADocumentTypeBeforeTheRootElementIsReadPast)
{
    const std::string complete = "<upi>" + FourLevels() + "</upi>";
    const char* const types[] = {
        "<!DOCTYPE upi>",
        R"(<!DOCTYPE upi SYSTEM "upi.dtd">)",
        "<!DOCTYPE upi []>",
        R"(<!DOCTYPE upi [ <!ELEMENT upi ANY> <!ENTITY name "value"> ]>)",
    };
    for (const char* const type : types)
    {
        EXPECT_EQ(Read(type + complete), (Identifiers{"P", "R", "M", "B"})) << type;
        EXPECT_EQ(ReadBytes(type + complete), (Identifiers{"P", "R", "M", "B"})) << type << " without a declaration";
    }
}

TEST(UpiProductInfo, IsUndefinedWhenTheXmlHoldsNoLevel)
{
    const std::string documents[] = {
        "",
        "<upi/>",
        "<level>" + Entry("name", "productline") + Entry("id", "P") + "</level>",
        Entry("name", "productline") + Entry("id", "P"),
        "<upi_element>" + Entry("name", "productline") + Entry("id", "P") + "</upi_element>",
        "<UPI_ELEMENT name=\"level\">" + Entry("name", "productline") + Entry("id", "P") + "</UPI_ELEMENT>",
        Element("other", Entry("name", "productline") + Entry("id", "P")),
        "<upi_element name=\"level\">productline P</upi_element>",
    };
    for (const std::string& xml : documents)
        EXPECT_EQ(Read(xml), Undefined) << xml;
}

TEST(UpiProductInfo, OfSiblingLevelsOnlyTheFirstIsRead)
{
    const std::string siblings =
        Level("productline", "P") + Level("release", "R") + Level("master", "M") + Level("build", "B");
    EXPECT_EQ(Read("<upi>" + siblings + "</upi>"), (Identifiers{"P", "undefined", "undefined", "undefined"}));
    EXPECT_EQ(Read(siblings), (Identifiers{"P", "undefined", "undefined", "undefined"}));
}

TEST(UpiProductInfo, ASiblingAfterTheNestedLevelIsNotRead)
{
    EXPECT_EQ(Read(Level("productline", "P", Level("release", "R") + Level("master", "M", Level("build", "B")))),
              (Identifiers{"P", "R", "undefined", "undefined"}));
}

TEST(UpiProductInfo, AnElementThatIsNoLevelIsIgnoredButDescendedInto)
{
    const char* const names[] = {"Level", "LEVEL", "levels", "level ", "", "other"};
    for (const char* const name : names)
    {
        const std::string ignored = Element(name, Entry("name", "productline") + Entry("id", "P") +
                                                      Level("release", "R", Level("master", "M")));
        EXPECT_EQ(Read(ignored), (Identifiers{"undefined", "R", "M", "undefined"})) << name;
    }
}

TEST(UpiProductInfo, AnIdentifierWithoutALevelNameGoesToNoneOfTheFour)
{
    EXPECT_EQ(Read(Element("level", Entry("id", "P") + Level("release", "R"))),
              (Identifiers{"undefined", "R", "undefined", "undefined"}));
}

TEST(UpiProductInfo, ALevelWithoutAnIdentifierIsUndefined)
{
    EXPECT_EQ(Read(Element("level", Entry("name", "productline") + Level("release", "R"))),
              (Identifiers{"undefined", "R", "undefined", "undefined"}));
    EXPECT_EQ(Read(Level("release", "R", Element("level", Entry("name", "release")))), Undefined);
}

TEST(UpiProductInfo, TheLaterOfTwoEntriesInALevelWins)
{
    EXPECT_EQ(Read(Element("level", Entry("name", "productline") + Entry("id", "first") + Entry("id", "later"))),
              (Identifiers{"later", "undefined", "undefined", "undefined"}));
    EXPECT_EQ(Read(Element("level", Entry("name", "productline") + Entry("id", "R") + Entry("name", "release"))),
              (Identifiers{"undefined", "R", "undefined", "undefined"}));
}

TEST(UpiProductInfo, EntriesAfterTheNestedLevelCount)
{
    EXPECT_EQ(Read(Element("level", Entry("name", "productline") + Level("release", "R") + Entry("id", "P"))),
              (Identifiers{"P", "R", "undefined", "undefined"}));
}

TEST(UpiProductInfo, TheInnerOfTwoLevelsWithOneNameWins)
{
    EXPECT_EQ(Read(Level("build", "outer", Level("master", "M", Level("build", "inner")))),
              (Identifiers{"undefined", "undefined", "M", "inner"}));
}

TEST(UpiProductInfo, LevelsOfOtherNamesAreOfNoEffect)
{
    EXPECT_EQ(Read(Level("patch", "X", Level("Build", "Y", Level("", "Z", Level("build", "B"))))),
              (Identifiers{"undefined", "undefined", "undefined", "B"}));
}

TEST(UpiProductInfo, EntriesOfOtherNamesAreIgnored)
{
    const std::string nameless = "<upi_attribute value=\"X\"/><upi_attribute/>";
    EXPECT_EQ(Read(Element("level", Entry("Name", "release") + Entry("name", "productline") + Entry("id", "P") +
                                        Entry("ID", "X") + Entry("version", "X") + nameless)),
              (Identifiers{"P", "undefined", "undefined", "undefined"}));
}

TEST(UpiProductInfo, AnEntryWithoutAValueIsIgnored)
{
    EXPECT_EQ(Read(Level("productline", "P", "<upi_attribute name=\"id\"/><upi_attribute name=\"name\"/>")),
              (Identifiers{"P", "undefined", "undefined", "undefined"}));
    EXPECT_EQ(Read(Element("level", Entry("name", "productline") + "<upi_attribute name=\"id\"/>")), Undefined);
}

TEST(UpiProductInfo, AnEmptyIdentifierIsKeptEmpty)
{
    EXPECT_EQ(Read(Level("productline", "", Level("build", ""))), (Identifiers{"", "undefined", "undefined", ""}));
}

TEST(UpiProductInfo, TextOfElementsIsNotRead)
{
    EXPECT_EQ(Read(Element("level", Entry("name", "productline") + "text <upi_attribute name=\"id\" value=\"P\">X"
                                                                   "</upi_attribute> more text")),
              (Identifiers{"P", "undefined", "undefined", "undefined"}));
}

TEST(UpiProductInfo, CommentsAreSkipped)
{
    EXPECT_EQ(Read("<!-- before -->" +
                   Element("level", "<!-- <upi_attribute name=\"id\" value=\"X\"/> -->" + Entry("name", "productline") +
                                        "<!-- between -->" + Entry("id", "P") + "<!-- " + Entry("id", "X") + " -->" +
                                        "<!-- " + Level("release", "X") + " -->" + Level("release", "R")) +
                   "<!-- after -->"),
              (Identifiers{"P", "R", "undefined", "undefined"}));
}

TEST(UpiProductInfo, AByteOrderMarkIsSkipped)
{
    EXPECT_EQ(ReadBytes("\xEF\xBB\xBF" + Declaration + FourLevels()), (Identifiers{"P", "R", "M", "B"}));
}

TEST(UpiProductInfo, WithoutADeclarationTheSearchStartsBelowTheRootElement)
{
    EXPECT_EQ(ReadBytes("<upi>" + FourLevels() + "</upi>"), (Identifiers{"P", "R", "M", "B"}));
    EXPECT_EQ(ReadBytes(FourLevels()), (Identifiers{"undefined", "R", "M", "B"}));
}

TEST(UpiProductInfo, LevelsAreFoundAtAnyDepth)
{
    EXPECT_EQ(Read("<a><b/><c>" + Level("productline", "P", "<d><e>" + Level("build", "B") + "</e></d>") + "</c></a>"),
              (Identifiers{"P", "undefined", "undefined", "B"}));
}

TEST(UpiProductInfo, EntitiesAndUtf8AreRead)
{
    EXPECT_EQ(Read(Level("productline", "a &amp; &lt;b&gt; &quot;c&quot;",
                         Level("release", "M\xC3\xBCnchen \xE6\xA8\xA1\xE5\x85\xB7", Level("build", "&#252;")))),
              (Identifiers{"a & <b> \"c\"", "M\xC3\xBCnchen \xE6\xA8\xA1\xE5\x85\xB7", "undefined", "\xC3\xBC"}));
}

TEST(UpiProductInfo, ThePredefinedEntitiesAndCharacterReferencesAreReadAndNoOthers)
{
    EXPECT_EQ(Read(Level("productline", "&amp;&lt;&gt;&quot;&apos;",
                         Level("release", "&#65;&#39;&#8364;", Level("master", "&#x41;&#x27;&#x20AC;&#x1F600;")))),
              (Identifiers{"&<>\"'", "A'\xE2\x82\xAC", "A'\xE2\x82\xAC\xF0\x9F\x98\x80", "undefined"}));
    for (const char* const unknown : {"&apo;", "&aposs;", "&APOS;", "&;"})
        EXPECT_EQ(Read(Level("productline", "P", Level("build", unknown))), Undefined) << unknown;
}

TEST(UpiProductInfo, TwoThousandNestedLevelsAreRead)
{
    std::string before;
    std::string after;
    for (int i = 0; i < 2000; ++i)
    {
        before += "<upi_element name=\"level\">" + Entry("name", "master") + Entry("id", std::to_string(i));
        after += "</upi_element>";
    }
    EXPECT_EQ(Read(before + Level("build", "innermost") + after),
              (Identifiers{"undefined", "undefined", "1999", "innermost"}));
}

TEST(UpiProductInfo, AnIdentifierOfHalfAMegabyteIsReadWhole)
{
    const std::string identifier(std::size_t{512} * 1024, 'x');
    const Identifiers read = Read(Level("productline", identifier, Level("build", "B")));
    EXPECT_TRUE(read[0] == identifier) << read[0].size() << " bytes";
    EXPECT_EQ(read[3], "B");
}

TEST(UpiProductInfo, ReadingAgainGivesTheFileAsItIsThen)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Write("upiconfig.xml", Declaration + Level("build", "1"));
    EXPECT_EQ(ReadFrom(file)[3], "1");
    folder.Write("upiconfig.xml", "broken");
    EXPECT_EQ(ReadFrom(file)[3], "undefined");
    folder.Write("upiconfig.xml", Declaration + Level("build", "2"));
    EXPECT_EQ(ReadFrom(file)[3], "2");
}

TEST(UpiProductInfo, TheConfigurationLiesInAFolderBesideTheProgram)
{
    const std::filesystem::path path = ConfigPath(true);
    EXPECT_TRUE(path.is_absolute()) << path;
    EXPECT_EQ(path.filename(), "upiconfig.xml");
    EXPECT_EQ(path.parent_path().filename(), "UPI");
    EXPECT_TRUE(std::filesystem::is_regular_file(path)) << path;
}

TEST(UpiProductInfo, TheModuleGivesItsFolderAlone)
{
    EXPECT_EQ(ConfigPath(false) / "UPI" / "upiconfig.xml", ConfigPath(true));
}

TEST(UpiProductInfo, InASharedLibraryTheModuleIsThatLibrary)
{
    const std::filesystem::path library = PathOf(MODULE_FILE);
    const auto moduleFolder = reinterpret_cast<const wchar_t* (*)()>(FunctionOf(library, "ModuleProbeFolder"));
    ASSERT_NE(moduleFolder, nullptr);
    const wchar_t* const folder = moduleFolder();
    ASSERT_NE(folder, nullptr);
    EXPECT_TRUE(std::filesystem::equivalent(folder, library.parent_path()));
}

TEST(UpiProductInfo, PathsDoNotDependOnTheWorkingFolder)
{
    const std::filesystem::path beside = ConfigPath(true);
    const std::filesystem::path module = ConfigPath(false);
    const std::filesystem::path workingFolder = std::filesystem::current_path();
    const TemporaryFolder folder;
    std::filesystem::current_path(folder.Path());
    EXPECT_EQ(ConfigPath(true), beside);
    EXPECT_EQ(ConfigPath(false), module);
    std::filesystem::current_path(workingFolder);
}

TEST(UpiProductInfo, IsReadFromTheFileBesideTheProgram)
{
    EXPECT_EQ(IdentifiersOf(UpiProductInfo(true)),
              (Identifiers{"CVSTUDIO", "2027.0.F", "CVSTUDIO_2027_0_EN", "27.0.214"}));
}

TEST(UpiProductInfo, IsUndefinedFromTheModuleSinceItsPathIsAFolder)
{
    EXPECT_EQ(IdentifiersOf(UpiProductInfo(false)), Undefined);
}
