// The scripts as people call them, where nothing is built or installed: help, bad options, what they lack, and what
// else goes on around them.
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

// A checkout of the scripts alone, in a system on which there are these commands, a shell script each, and few others.
class Checkout
{
public:
    explicit Checkout(std::map<std::string, std::string> commands)
    {
        for (const std::string tool :
             {"bash", "cat", "dirname", "env", "flock", "grep", "mkdir", "mktemp", "python3", "realpath", "rm", "sed"})
            commands.try_emplace(tool, "exec /usr/bin/" + tool + " \"$@\"");
        for (const auto& [name, text] : commands)
            std::filesystem::permissions(folder.Write("commands/" + name, "#!/bin/sh\n" + text + "\n"),
                                         std::filesystem::perms::owner_all);
        std::filesystem::create_directories(Path());
        std::filesystem::create_directories(TemporaryFiles());
        std::filesystem::copy(Scripts, Path() / "scripts");
    }

    // With a blank, a comma and a "$" in it.
    std::filesystem::path Path() const { return folder.Path() / "a checkout, of $5"; }
    std::filesystem::path TemporaryFiles() const { return folder.Path() / "temporary"; }

    void Write(const std::string& name, const std::string& text) const { folder.Write(Path() / name, text); }

    Outcome Run(const std::filesystem::path& program, const std::vector<std::string>& arguments = {},
                std::map<std::string, std::string> environment = {}) const
    {
        environment["PATH"] = (folder.Path() / "commands").string();
        environment["TMPDIR"] = TemporaryFiles().string();
        return RunProgram({.program = program,
                           .arguments = arguments,
                           .environment = environment,
                           .workingFolder = std::filesystem::is_directory(Path()) ? Path() : folder.Path()});
    }

private:
    TemporaryFolder folder;
};

// All that run.sh needs is installed, and cmake is this shell script.
Checkout WithCMake(const std::string& cmake)
{
    return Checkout({{"dpkg-query", "printf 'install ok installed'"}, {"cmake", cmake}});
}

// All that test.sh needs is installed. Ctest has two tests, One and Two, also for the walk-through; it reports these
// test cases in JUnit's form and exits with this status.
Checkout WithCTest(const std::string& cases, int status)
{
    const std::string ctest = "cases=\"" + cases + "\" status=" + std::to_string(status) + R"sh(
listed() {
    printf '{"name": "%s", "properties": [{"name": "LABELS", "value": ["walk-through"]}]}' "$1"
}
case "$*" in
*--show-only=json-v1*) printf '{"backtraceGraph": {}, "tests": [%s, %s]}' "$(listed One)" "$(listed Two)" ;;
*)
    for report; do :; done
    echo "<testsuite>$cases</testsuite>" >"$report"
    exit $status
    ;;
esac)sh";
    return Checkout({{"dpkg-query", "printf 'install ok installed'"}, {"cmake", "exit 0"}, {"ctest", ctest}});
}

} // namespace

TEST(Scripts, HelpIsTheCommentAtTheHead)
{
    ASSERT_FALSE(AllScripts().empty());
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
            // It compares, as diff does: 1 says that there are differences.
            EXPECT_EQ(run.status, script.filename() == "events_diff.sh" ? 2 : 1) << script;
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
    const std::string packages = "g++ cmake ninja-build libmxml-dev libcli11-dev nlohmann-json3-dev";
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
         "/build cannot be written: run this as its owner, or in a copy of your own"},
        {{{"dpkg-query", "printf 'install ok installed'"}}, "cmake is missing: install it, or add its folder to PATH"},
    };
    for (const auto& row : rows)
    {
        const Checkout checkout(row.commands);
        const Outcome run = checkout.Run("scripts/run.sh");
        const std::string path = row.lastLine.starts_with('/') ? checkout.Path().string() : "";
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(LastLine(run.errors), "run.sh: " + path + row.lastLine);
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
    const Checkout checkout({{"dpkg-query", "exit 1"}, {"id", "echo 0"}, {"apt-get", "exit 1"}});
    const std::string failure = "run.sh: the package lists cannot be fetched: check the network and "
                                "/etc/apt/sources.list, then run this again\n";
    EXPECT_EQ(checkout.Run("scripts/run.sh").errors, failure);

    if (!HasTerminals())
        GTEST_SKIP() << WithoutTerminals;
    const Outcome onTerminal = checkout.Run("/usr/bin/script", {"-qec", "scripts/run.sh", "/dev/null"});
    std::string screen = onTerminal.output;
    std::erase(screen, '\r');
    EXPECT_EQ(screen, "[1/4] Looking for missing packages\nInstalling g++ cmake ninja-build libmxml-dev libcli11-dev "
                      "nlohmann-json3-dev\n" +
                          failure);
    EXPECT_EQ(onTerminal.status, 1);
}

TEST(Scripts, TheCheckoutIsTheirOwnWhateverTheSearchPathOfCdSays)
{
    const Checkout other = WithCMake("exit 0");
    const Checkout checkout = WithCMake("pwd >&2; exit 1");
    const Outcome run = checkout.Run("scripts/run.sh", {}, {{"CDPATH", other.Path().string()}});
    EXPECT_EQ(run.errors, checkout.Path().string() + "\nrun.sh: configuring failed, see above\n");
}

TEST(Scripts, AnotherRunInTheSameFolderIsWaitedFor)
{
    // Instead of waiting, this one says that it would.
    const std::string flock = "[ $1 != -n ] || exec /usr/bin/flock \"$@\"\necho waited >&2";
    const Checkout checkout({{"dpkg-query", "printf 'install ok installed'"}, {"cmake", "exit 1"}, {"flock", flock}});
    const std::string failure = "run.sh: configuring failed, see above\n";
    EXPECT_EQ(checkout.Run("scripts/run.sh").errors, failure);

    const Outcome whileHeld = checkout.Run("/usr/bin/flock", {"build/.run.lock", "scripts/run.sh"});
    EXPECT_EQ(whileHeld.errors, "waited\n" + failure);
    EXPECT_EQ(checkout.Run("/usr/bin/flock", {"build/.release.lock", "scripts/run.sh"}).errors, failure);
}

TEST(Scripts, NothingIsLeftInTheTemporaryFolderAfterAnInterruption)
{
    for (const std::string signal : {"HUP", "INT", "TERM"})
    {
        const Checkout checkout = WithCMake("mktemp >&2 && kill -" + signal + " $PPID && kill -" + signal + " $$");
        const Outcome run = checkout.Run("scripts/run.sh");
        EXPECT_GT(run.status, 128) << signal << ": " << run.errors;
        EXPECT_TRUE(std::filesystem::is_empty(checkout.TemporaryFiles())) << signal;
    }
}

TEST(Scripts, ABuildOfAMovedCheckoutIsNamedWithWhatToDo)
{
    const Checkout checkout = WithCMake("echo configured >&2; exit 1");
    checkout.Write("build/run/CMakeCache.txt", "CMAKE_HOME_DIRECTORY:INTERNAL=/where it/was\n");
    EXPECT_EQ(checkout.Run("scripts/run.sh").errors, "run.sh: build/run was made in /where it/was: remove " +
                                                         checkout.Path().string() +
                                                         "/build/run, then run this again\n");

    checkout.Write("build/run/CMakeCache.txt", "CMAKE_HOME_DIRECTORY:INTERNAL=" + checkout.Path().string() + "\n");
    EXPECT_EQ(checkout.Run("scripts/run.sh").errors, "configured\nrun.sh: configuring failed, see above\n");
}

TEST(Scripts, TestSaysWhyATestFailedAndDoesNoWalkThroughThen)
{
    const Checkout checkout =
        WithCTest("<testcase name='One' status='run'/>"
                  "<testcase name='Two' status='fail'><failure/><system-out>the cause</system-out>"
                  "</testcase>",
                  8);
    const Outcome run = checkout.Run("scripts/test.sh", {"release"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 1);
    const std::string end = " s, testing\n"
                            "Two failed\n"
                            "    the cause\n"
                            "ctest's whole output is in build/test-results/release.log, the report in "
                            "build/test-results/release.xml\n"
                            "release: 1 passed, 1 failed\n"
                            "[4/4] CONTRIBUTING.md's walk-through: not done, for tests of release failed\n"
                            "1 passed, 1 failed\n";
    EXPECT_TRUE(run.output.ends_with(end)) << run.output;
}

TEST(Scripts, TestCountsAllRunsAndFailsWhenCtestDoes)
{
    for (const int status : {0, 1})
    {
        const Checkout checkout = WithCTest("<testcase name='One' status='run'/>"
                                            "<testcase name='Two' status='notrun'>"
                                            "<skipped message='SKIP_RETURN_CODE=77'/></testcase>",
                                            status);
        const Outcome run = checkout.Run("scripts/test.sh", {"release", "debug"});
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(LastLine(run.output) == "3 passed, 0 failed, 3 skipped", status == 0) << run.output;
        EXPECT_EQ(run.errors, status == 0 ? "" : "run_tests.py: ctest ended with 1, although no test failed\n");
        for (const std::string name : {"release.xml", "walk-through.xml", "debug.xml"})
            EXPECT_EQ(std::filesystem::exists(checkout.Path() / "build/test-results" / name), status == 0) << name;
    }
}

TEST(Scripts, NoReportOfAnEarlierRunStaysWhenTheBuildFails)
{
    const Checkout checkout = WithCMake("exit 1");
    for (const std::string name : {"release.xml", "release.log", "walk-through.xml", "debug.xml", "clang.xml"})
        checkout.Write("build/test-results/" + name, "of an earlier run");
    EXPECT_EQ(checkout.Run("scripts/test.sh", {"release", "debug"}).errors, "test.sh: configuring failed, see above\n");
    std::vector<std::filesystem::path> left;
    for (const std::filesystem::path& file :
         std::filesystem::directory_iterator(checkout.Path() / "build/test-results"))
        left.push_back(file.filename());
    EXPECT_EQ(left, std::vector<std::filesystem::path>{"clang.xml"});
}

TEST(Scripts, WithoutMiniXmlsSourcesTheWindowsTestsAreSkippedAndToldOf)
{
    const Checkout checkout({{"dpkg-query", "printf 'install ok installed'"},
                             {"apt-get", "echo unreachable >&2; exit 100"},
                             {"cp", "exit 1"}});
    checkout.Write("build/windows-libraries/versions", "earlier\n");
    const Outcome run = checkout.Run("scripts/test.sh", {"windows"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.output.find("No source package mxml install ok installed: name a mirror that has it in "
                              "/etc/apt/sources.list.d/, then run this again\n"),
              std::string::npos)
        << run.output;
    EXPECT_EQ(LastLine(run.output), "0 passed, 0 failed, all tests of windows skipped");
    EXPECT_EQ(ReadFile(checkout.Path() / "build/windows-libraries/versions"), "earlier\n");
}
