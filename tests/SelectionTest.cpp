#include <check/Selection.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Corvane;

namespace
{

using Texts = std::vector<std::string>;

} // namespace

TEST(Selection, AStarIsAnyTextAQuestionMarkOneCharacterAndCaseDoesNotCount)
{
    const struct
    {
        const char* pattern;
        const char* name;
        bool matches;
    } rows[] = {
        {"PPR", "PPR", true},
        {"PPR", "PP", false},
        {"PP", "PPR", false},
        {"ppr", "PPR", true},
        {"*", "PPR", true},
        {"*", "", true},
        {"", "", true},
        {"", "PPR", false},
        {"?", "", false},
        {"???", "PPR", true},
        {"??", "PPR", false},
        {"????", "PPR", false},
        {"Mesh*", "MeshSize", true},
        {"Mesh*", "Mesh", true},
        {"Mesh?*", "Mesh", false},
        {"*Size", "MeshSize", true},
        {"*size", "MeshSize", true},
        {"*s*s*", "MeshSizes", true},
        {"*es*iz*", "MeshSize", true},
        {"*iz*es*", "MeshSize", false},
        {"a*ab", "aaab", true},
        {"a*ab", "ab", false},
        {"**", "x", true},
        {"*a*b", "abab", true},
        {"[Mm]esh*", "MeshSize", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Matches(row.pattern, row.name), row.matches) << row.pattern << ' ' << row.name;
}

TEST(Selection, KeepsTheOrderAndTakesNamesOfMethodsAndTests)
{
    const auto selected = [](const Texts& patterns) { return Select(ReportingMethods(), patterns).methods; };
    EXPECT_EQ(selected({}).size(), ReportingMethods().size());
    EXPECT_EQ(selected({"ppr", "TrackMeshSize", "MESHSIZE"}), (Texts{"TrackMeshSize", "TrackPPR"}));
    EXPECT_EQ(selected({"adddocument"}), Texts{"StartTrackFileChange"});
    EXPECT_EQ(selected({"3DC?sed"}), Texts{"Track3DCUsed"});
}

TEST(Selection, TellsWhichPatternsAreOfNoNameAndWhatIsNear)
{
    const Selection selection = Select(ReportingMethods(), {"PPR", "MeshSise", "", "D*X"});
    EXPECT_EQ(selection.methods, Texts{"TrackPPR"});
    EXPECT_EQ(selection.unmatched, (Texts{"MeshSise", "", "D*X"}));
    EXPECT_EQ(NamesNear(ReportingMethods(), "MeshSise"), Texts{"MeshSize"});
    EXPECT_EQ(NamesNear(ReportingMethods(), "trackmeshsiz"), Texts{"TrackMeshSize"});
    EXPECT_EQ(NamesNear(ReportingMethods(), "something else"), Texts());
}
