#include <check/Selection.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Corvane;

namespace
{

using Texts = std::vector<std::string>;

} // namespace

TEST(Selection, AStarIsAnyTextAQuestionMarkOneCharacterAndTheWholeNameCounts)
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
        {"ppr", "PPR", false},
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
        {"*size", "MeshSize", false},
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

TEST(Selection, KeepsTheOrderAndTakesEachNameOnce)
{
    const Texts names = {"B", "A", "C"};
    EXPECT_EQ(Select(names, {"C", "A", "?"}).names, names);
    EXPECT_EQ(Select(names, {"C", "B"}).names, (Texts{"B", "C"}));
    EXPECT_EQ(Select(names, {}).names, names);
}

TEST(Selection, TellsWhichPatternsAreOfNoName)
{
    const Selection selection = Select({"A", "B"}, {"A", "C", "", "D*"});
    EXPECT_EQ(selection.names, Texts{"A"});
    EXPECT_EQ(selection.unmatched, (Texts{"C", "", "D*"}));
}
