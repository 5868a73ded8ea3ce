#include <gtest/gtest.h>

#include "Program.h"

TEST(Readme, ShowsTheMinimalHostApplicationAsItIs)
{
    const std::string readme = ReadFile(SOURCE_DIR "/README.md");
    EXPECT_NE(readme.find("```cpp\n" + ReadFile(SOURCE_DIR "/examples/minimal/main.cpp") + "```\n"), std::string::npos);
    EXPECT_NE(readme.find("```cmake\n" + ReadFile(SOURCE_DIR "/examples/minimal/CMakeLists.txt") + "```\n"),
              std::string::npos);
}
