// What CONTRIBUTING.md says.
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <regex>
#include <string>

#include "Program.h"

TEST(Contributing, EveryCommandIsOneOfTheScripts)
{
    // Commands stand in the tables and on indented lines.
    const std::string page = ReadFile(SOURCE_DIR "/CONTRIBUTING.md");
    const std::regex command(R"re(\n\|[^\n]*\| `([^`]+)`(?:, `([^`]+)`)? \|(?=\n)|\n    (\S[^\n]*))re");
    std::size_t count = 0;
    for (std::sregex_iterator match(page.begin(), page.end(), command), end; match != end; ++match)
    {
        for (std::size_t group = 1; group < match->size(); ++group)
        {
            const std::string text = (*match)[group];
            if (text.empty())
                continue;
            ++count;
            EXPECT_TRUE(text.starts_with("scripts/")) << text;
            EXPECT_TRUE(std::filesystem::is_regular_file(SOURCE_DIR "/" + text.substr(0, text.find(' ')))) << text;
        }
    }
    EXPECT_NE(count, 0U) << "commands are not found";
}
