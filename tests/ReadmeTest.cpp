#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "Differences.h"
#include "Program.h"
#include "Utf8Path.h"

namespace
{

// The lines that a picture of a terminal shows, without empty ones.
std::vector<std::string> LinesOfThePicture(const std::string& picture)
{
    const std::string screen = picture.substr(picture.find("<g id=\"screen\""));
    std::vector<std::string> lines;
    const std::regex shown(R"(<text[^>]*>([^<\n]+)</text>)");
    for (std::sregex_iterator match(screen.begin(), screen.end(), shown), end; match != end; ++match)
        lines.push_back(std::regex_replace((*match)[1].str(), std::regex("&#160;"), " "));
    return lines;
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
    {
        if (!line.empty())
            lines.push_back(line);
    }
    return lines;
}

std::string Joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

} // namespace

TEST(Readme, ShowsTheExamplesAsTheyAre)
{
    const std::string readme = ReadFile(PathOf(SOURCE_DIR "/README.md"));
    for (const std::string& block : {"```cpp\n" + ReadFile(PathOf(SOURCE_DIR "/examples/minimal/main.cpp")),
                                     "```cmake\n" + ReadFile(PathOf(SOURCE_DIR "/examples/minimal/CMakeLists.txt")),
                                     "```cpp\n" + ReadFile(PathOf(SOURCE_DIR "/examples/host_test/MeshTest.cpp"))})
        EXPECT_NE(readme.find(block + "```\n"), std::string::npos) << block;
}

TEST(Readme, OpensWithAPictureOfAGoodRun)
{
    const std::string readme = ReadFile(PathOf(SOURCE_DIR "/README.md"));
    EXPECT_LT(readme.find("](docs/run.svg)"), readme.find("\n\n", readme.find("\n\n") + 2));

    // The first three tests and the last one; a title and a verdict each.
    std::vector<std::string> expected = LinesOf(GoodRun());
    ASSERT_GT(expected.size(), 9U);
    const auto middle = expected.begin() + 6;
    const auto end = expected.end() - 3;
    const std::string omitted = "... " + std::to_string((end - middle) / 2) + " more, PASSED each ...";
    expected.insert(expected.erase(middle, end), omitted);
    expected.insert(expected.begin(),
                    {"$ scripts/run.sh", "[1/4] Looking for missing packages", "[2/4] Configuring in build/run",
                     "[3/4] Building", "[4/4] Running build/run/bin/cvtavi_test"});
    expected.emplace_back("$");
    EXPECT_PRED_FORMAT2(IsText, Joined(LinesOfThePicture(ReadFile(PathOf(SOURCE_DIR "/docs/run.svg")))),
                        Joined(expected))
        << "Run scripts/reference.sh, and commit what it writes.";
}
