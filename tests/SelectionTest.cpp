#include <check/Selection.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Corvane;

namespace
{

using Texts = std::vector<std::string>;

} // namespace

TEST(Selection, MatchesAnyTextForAStarAndOneCharacterForAQuestionMark)
{
    const struct
    {
        const char* pattern;
        const char* name;
        bool matches;
    } rows[] = {
        {"ppr", "PPR", true},
        {"PP", "PPR", false},
        {"*", "", true},
        {"?", "", false},
        {"Mesh*", "Mesh", true},
        {"Mesh?*", "Mesh", false},
        {"*size", "MeshSize", true},
        {"*s*s*", "MeshSizes", true},
        {"a*ab", "aaab", true},
        {"a*ab", "ab", false},
        {"[Mm]esh*", "MeshSize", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Matches(row.pattern, row.name), row.matches) << row.pattern << ' ' << row.name;
}

TEST(Selection, TakesNamesOfMethodsAndTestsAndKeepsTheirOrder)
{
    const auto selected = [](const Texts& patterns) { return Select(ReportingMethods(), patterns).methods; };
    EXPECT_EQ(selected({}).size(), ReportingMethods().size());
    EXPECT_EQ(selected({"ppr", "TrackMeshSize", "MESHSIZE"}), (Texts{"TrackMeshSize", "TrackPPR"}));
    EXPECT_EQ(selected({"adddocument"}), Texts{"StartTrackFileChange"});
    EXPECT_EQ(selected({"3DC?sed"}), Texts{"Track3DCUsed"});
}

TEST(Selection, ReportsPatternsThatMatchNothingAndNamesLikeThem)
{
    const Selection selection = Select(ReportingMethods(), {"PPR", "MeshSise", "", "D*X"});
    EXPECT_EQ(selection.methods, Texts{"TrackPPR"});
    EXPECT_EQ(selection.unmatched, (Texts{"MeshSise", "", "D*X"}));
    EXPECT_EQ(NamesNear(ReportingMethods(), "TRACKMESHSIZ"), Texts{"TrackMeshSize"});
    EXPECT_EQ(NamesNear(ReportingMethods(), "MoldPropertyChange"), Texts{"MoldPropertyChanged"});
    for (const char* const unlike : {"something else", ""})
        EXPECT_EQ(NamesNear(ReportingMethods(), unlike), Texts());
}
