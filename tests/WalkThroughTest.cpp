// The walk-through of CONTRIBUTING.md, carried out in a copy of the project.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Differences.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace
{

// The edit of a file that a diff block of the page describes.
struct Edit
{
    std::string file;
    std::string before; // lines that stand in the file once
    std::string after;
};

struct WalkThrough
{
    std::vector<Edit> edits;
    std::vector<std::string> commands; // the indented lines
};

WalkThrough ReadWalkThrough()
{
    const std::string page = ReadFile(SOURCE_DIR "/CONTRIBUTING.md");
    const std::size_t begin = page.find("\n## A new reporting method");
    std::istringstream lines(page.substr(begin, page.find("\n## ", begin + 1) - begin));
    WalkThrough walkThrough;
    bool inBlock = false;
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with("```"))
        {
            inBlock = line == "```diff";
        }
        else if (inBlock && line.starts_with("--- "))
        {
            walkThrough.edits.push_back({line.substr(4), "", ""});
        }
        else if (inBlock)
        {
            Edit& edit = walkThrough.edits.back();
            const std::string text = line.substr(1) + "\n";
            edit.after += text;
            if (line.front() != '+')
                edit.before += text;
        }
        else if (line.starts_with("    "))
        {
            walkThrough.commands.push_back(line.substr(4));
        }
    }
    return walkThrough;
}

// Does nothing when that was done before.
void Apply(const Edit& edit, const std::filesystem::path& project)
{
    std::string text = ReadFile(project / edit.file);
    if (text.find(edit.after) != std::string::npos)
        return;
    const std::size_t at = text.find(edit.before);
    ASSERT_NE(at, std::string::npos) << edit.file << " has no such lines:\n" << edit.before;
    ASSERT_EQ(text.find(edit.before, at + 1), std::string::npos) << edit.file << " has more of them:\n" << edit.before;
    text.replace(at, edit.before.size(), edit.after);
    std::ofstream(project / edit.file, std::ios::binary) << text;
}

void CopyProject(const std::filesystem::path& project)
{
    std::filesystem::create_directories(project);
    for (const std::filesystem::path& entry : std::filesystem::directory_iterator(SOURCE_DIR))
    {
        if (entry.filename() != "build" && entry.filename() != ".git")
            std::filesystem::copy(entry, project / entry.filename(), std::filesystem::copy_options::recursive);
    }
}

std::map<std::string, std::string> FilesOf(const std::filesystem::path& project)
{
    std::map<std::string, std::string> files;
    for (const std::filesystem::path& file : std::filesystem::recursive_directory_iterator(project))
    {
        const std::string name = file.lexically_relative(project).string();
        if (!name.starts_with("build") && std::filesystem::is_regular_file(file))
            files[name] = ReadFile(file);
    }
    return files;
}

// Those that README.md names for it.
std::set<std::string> NamedFiles()
{
    const std::string page = ReadFile(SOURCE_DIR "/README.md");
    const std::size_t begin = page.find("\n## Add a reporting method");
    const std::string section = page.substr(begin, page.find("\n## ", begin + 1) - begin);
    const std::regex file(R"(\n\d+\. `([^`]+)`)");
    std::set<std::string> files;
    for (std::sregex_iterator match(section.begin(), section.end(), file), end; match != end; ++match)
        files.insert((*match)[1]);
    return files;
}

} // namespace

TEST(WalkThrough, ANewReportingMethodTakesTheNamedFilesAndTheCommandsDoTheRest)
{
    const WalkThrough walkThrough = ReadWalkThrough();
    std::set<std::string> editedFiles;
    for (const Edit& edit : walkThrough.edits)
        editedFiles.insert(edit.file);
    ASSERT_FALSE(editedFiles.empty()) << "no edit is found";
    ASSERT_EQ(editedFiles, NamedFiles());
    ASSERT_EQ(walkThrough.commands,
              (std::vector<std::string>{"scripts/run.sh", "scripts/reference.sh", "scripts/test.sh release"}));

    const TemporaryFolder folder;
    const std::filesystem::path project = folder.Path() / "project";
    CopyProject(project);
    for (const Edit& edit : walkThrough.edits)
        ASSERT_NO_FATAL_FAILURE(Apply(edit, project));
    const std::map<std::string, std::string> edited = FilesOf(project);

    const Outcome run = RunProgram({.program = project / "scripts/run.sh"});
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_NE(run.output.find("\nTesting MeshRepair\nPASSED\n"), std::string::npos);

    const Outcome reference = RunProgram({.program = project / "scripts/reference.sh"});
    ASSERT_EQ(reference.status, 0) << reference.errors;
    const std::map<std::string, std::string> written = FilesOf(project);
    const std::set<std::string> all = {"docs/events.csv",        "docs/events.html", "docs/events.json",
                                       "docs/events.md",         "docs/run.svg",     "docs/payloads.schema.json",
                                       "tests/data/good_run.txt"};
    std::map<std::string, std::string> different;
    std::set_symmetric_difference(edited.begin(), edited.end(), written.begin(), written.end(),
                                  std::inserter(different, different.end()));
    for (const auto& [name, text] : different)
        EXPECT_TRUE(all.contains(name)) << name;
    EXPECT_PRED_FORMAT2(IsText, written.at("tests/data/good_run.txt"), run.output);
    EXPECT_NE(written.at("docs/events.html").find("<article id='TrackMeshRepair'"), std::string::npos);
    EXPECT_NE(written.at("docs/events.md").find(R"(
    "component_name": "CV.MESH_REPAIR",
    "component_attributes": {
        "CV.MESH_REPAIR_AUTOMATIC": "False",
        "CV.MESH_REPAIR_ELEMENTS": "102"
    }
}
)"),
              std::string::npos);
}
