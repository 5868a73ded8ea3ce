// The scripts as people call them, where nothing is built or installed: help, bad options, and what they lack.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "Program.h"
#include "TemporaryFolder.h"

namespace
{

const std::filesystem::path Scripts(SOURCE_DIR "/scripts");

std::vector<std::filesystem::path> AllScripts()
{
    std::vector<std::filesystem::path> scripts;
    for (const std::filesystem::path& file : std::filesystem::directory_iterator(Scripts))
        if (file.extension() != ".bash")
            scripts.push_back(file);
    return scripts;
}

bool IsOneLine(const std::string& text)
{
    return text.ends_with('\n') && std::count(text.begin(), text.end(), '\n') == 1;
}

std::string LastLine(const std::string& text)
{
    const std::size_t end = text.find_last_not_of('\n');
    return text.substr(text.find_last_of('\n', end) + 1, end - text.find_last_of('\n', end));
}

// A system on which there are these commands, a shell script each, and few others.
class Commands
{
public:
    explicit Commands(std::map<std::string, std::string> scripts)
    {
        for (const std::string tool :
             {"bash", "basename", "cat", "dirname", "env", "mkdir", "mktemp", "realpath", "rm", "sed"})
            scripts.try_emplace(tool, "exec /usr/bin/" + tool + " \"$@\"");
        for (const auto& [name, text] : scripts)
            std::filesystem::permissions(folder.Write(name, "#!/bin/sh\n" + text + "\n"),
                                         std::filesystem::perms::owner_all);
    }

    Outcome Run(const std::filesystem::path& program, const std::vector<std::string>& arguments = {}) const
    {
        return RunProgram(
            {.program = program, .arguments = arguments, .environment = {{"PATH", folder.Path().string()}}});
    }

private:
    TemporaryFolder folder;
};

} // namespace

TEST(Scripts, HelpIsTheCommentAtTheHead)
{
    ASSERT_EQ(AllScripts().size(), 10U);
    for (const std::filesystem::path& script : AllScripts())
    {
        const std::string source = ReadFile(script);
        const std::string name = script.filename().string();
        for (const char* const option : {"--help", "-h"})
        {
            const Outcome run = RunProgram({.program = script, .arguments = {option}, .workingFolder = "/"});
            EXPECT_EQ(run.status, 0) << script;
            EXPECT_EQ(run.errors, "") << script;
            EXPECT_NE(run.output.find("\n    " + (script.extension() == ".sh" ? "scripts/" + name : name)),
                      std::string::npos)
                << run.output;
            EXPECT_EQ(run.output.find('#'), std::string::npos) << run.output;
            const std::string firstLine = run.output.substr(0, run.output.find('\n'));
            const std::string lastLine = LastLine(run.output);
            EXPECT_GT(firstLine.size(), 20U) << script;
            EXPECT_GT(source.find(lastLine + "\n"), source.find(firstLine + "\n")) << script;
            EXPECT_NE(source.find(lastLine + "\n"), std::string::npos) << script;
        }
    }
}

TEST(Scripts, AnUnknownOptionOrArgumentEndsInOneLineThatNamesTheScript)
{
    for (const std::filesystem::path& script : AllScripts())
        for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--unknown"}, {"unknown"}})
        {
            const Outcome run = RunProgram({.program = script, .arguments = arguments});
            EXPECT_EQ(run.status, 1) << script;
            EXPECT_EQ(run.output, "") << script;
            EXPECT_TRUE(IsOneLine(run.errors)) << run.errors;
            EXPECT_TRUE(run.errors.starts_with(script.filename().string() + ": ")) << run.errors;
        }
}

TEST(Scripts, AnUnknownPresetEndsBeforeAnythingIsBuilt)
{
    const Outcome run = RunProgram({.program = Scripts / "test.sh", .arguments = {"release", "relaese"}});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors,
              "test.sh: unknown preset relaese: there are release, debug, sanitize, clang, windows, fuzz and "
              "coverage\n");
}

TEST(Scripts, WhatTheSystemLacksIsSaidInTheLastLine)
{
    const std::string packages = "g++ cmake ninja-build libmxml-dev";
    const struct
    {
        std::map<std::string, std::string> commands;
        std::string lastLine;
    } rows[] = {
        {{}, "dpkg-query is missing: run this on Debian, whose packages it takes"},
        {{{"dpkg-query", "exit 1"}, {"id", "echo 1000"}, {"apt-get", "exit 1"}},
         "installing takes root: run \"apt-get install " + packages + "\" as root, then this again"},
        {{{"dpkg-query", "exit 1"}, {"id", "echo 1000"}, {"sudo", "exit 1"}, {"apt-get", "exit 1"}},
         "installing takes root: run \"apt-get install " + packages + "\" as root, then this again"},
        {{{"dpkg-query", "exit 1"}, {"id", "echo 0"}, {"apt-get", "echo unreachable >&2; exit 100"}},
         "the package lists cannot be fetched: check the network and /etc/apt/sources.list, then run this again"},
        {{{"dpkg-query", "exit 1"}, {"id", "echo 0"}, {"apt-get", "[ $1 = update ]"}},
         "these packages cannot be installed, see above: " + packages},
        {{{"dpkg-query", "printf 'install ok installed'"}, {"mkdir", "exit 1"}},
         SOURCE_DIR "/build cannot be written: run this as its owner, or in a copy of your own"},
        {{{"dpkg-query", "printf 'install ok installed'"}}, "cmake is missing: install it, or add its folder to PATH"},
    };
    for (const auto& row : rows)
    {
        const Outcome run = Commands(row.commands).Run(Scripts / "run.sh");
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(LastLine(run.errors), "run.sh: " + row.lastLine);
    }
}

TEST(Scripts, WithoutResultsThereIsNoReportOfThem)
{
    const TemporaryFolder folder;
    const std::string nowhere = (folder.Path() / "nowhere").string();
    const Outcome run =
        RunProgram({.program = Scripts / "benchmark_report.py", .arguments = {nowhere, "page", "figure"}});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "benchmark_report.py: there is no " + nowhere + ": run scripts/bench.sh, which makes it\n");
}

TEST(Scripts, RunShowsItsStepsOnATerminalOnly)
{
    const Commands commands({{"dpkg-query", "exit 1"}, {"id", "echo 0"}, {"apt-get", "exit 1"}});
    const std::string failure = "run.sh: the package lists cannot be fetched: check the network and "
                                "/etc/apt/sources.list, then run this again\n";
    EXPECT_EQ(commands.Run(Scripts / "run.sh").errors, failure);

    const Outcome onTerminal = commands.Run("/usr/bin/script", {"-qec", (Scripts / "run.sh").string(), "/dev/null"});
    std::string screen = onTerminal.output;
    std::erase(screen, '\r');
    EXPECT_EQ(screen, "[1/4] Looking for missing packages\nInstalling g++ cmake ninja-build libmxml-dev\n" + failure);
    EXPECT_EQ(onTerminal.status, 1);
}
