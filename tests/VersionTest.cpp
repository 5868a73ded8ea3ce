#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "Program.h"

TEST(Version, TheNewestOneInTheChangelogIsTheProjects)
{
    const std::string changelog = ReadFile(PathOf(SOURCE_DIR "/CHANGELOG.md"));
    std::smatch match;
    ASSERT_TRUE(std::regex_search(changelog, match, std::regex(R"(\n## \[?(\d[^\] ]*)\]? - \d{4}-\d\d-\d\d\n)")));
    EXPECT_EQ(match[1], VERSION);
}
