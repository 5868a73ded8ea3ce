#!/usr/bin/env python3
"""Has run_tests.py run tests of all kinds by a real ctest, and checks what it prints and the reports that it leaves.

    run_tests_test.py SCRIPT CTEST

What a report may hold is what JUnit's readers agree on, as the schema of Jenkins' xUnit plugin has it.
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

SCRIPT, CTEST = map(Path, sys.argv[1:3])

# A test: does as the file says.
ACTOR = """
import json, os, sys, time
with open(sys.argv[1]) as file:
    act = json.load(file)
with open("ran", "a") as ran:
    ran.write(act["name"] + "\\n")
sys.stdout.buffer.write(act["output"].encode("latin-1"))
sys.stdout.flush()
if act["status"] == "crash":
    os.abort()
if act["status"] == "hang":
    time.sleep(60)
if act["status"] == "pass when repeated":
    sys.exit(open("ran").read().split("\\n").count(act["name"]) < 2)
sys.exit(act["status"])
"""

FAILURE = """Running main() from gtest_main.cc
Note: Google Test filter = Unit.Rule
[==========] Running 1 test from 1 test suite.
[ RUN      ] Unit.Rule
printed before
{root}/tests/UnitTest.cpp:12: Failure
Expected equality of these values:
  1
  2

{root}/tests/UnitTest.cpp:14: Failure
Failed
said by the test
[  FAILED  ] Unit.Rule (0 ms)
[  FAILED  ] 1 test, listed below:
 1 FAILED TEST
"""


class Checkout(unittest.TestCase):
    """A project with run_tests.py and tests of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="a checkout, ")
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        self.build = self.root / "build" / "some"
        self.build.mkdir(parents=True)
        (self.root / "scripts").mkdir()
        shutil.copy(SCRIPT, self.root / "scripts")
        (self.root / "actor.py").write_text(ACTOR)
        self.preset(outputOnFailure=True, noTestsAction="error")
        self.added = 0
        self.lines = []

    def preset(self, outputOnFailure, noTestsAction, **execution):
        configure = {"name": "some", "binaryDir": "${sourceDir}/build/some", "generator": "Ninja"}
        test = {
            "name": "some",
            "configurePreset": "some",
            "output": {"outputOnFailure": outputOnFailure},
            "execution": {"noTestsAction": noTestsAction, **execution},
        }
        presets = {"version": 6, "configurePresets": [configure], "testPresets": [test]}
        (self.root / "CMakePresets.json").write_text(json.dumps(presets))

    def add_command(self, name, *command, **properties):
        with open(self.build / "CTestTestfile.cmake", "a", encoding="utf-8") as file:
            file.write("add_test([=[{}]=] {})\n".format(name, " ".join(f"[=[{word}]=]" for word in command)))
            for key, value in properties.items():
                file.write(f"set_tests_properties([=[{name}]=] PROPERTIES {key} [=[{value}]=])\n")

    def add(self, name, output="", status=0, **properties):
        self.added += 1
        act = self.root / f"{self.added}.json"
        act.write_text(json.dumps({"name": name, "output": output.replace("{root}", str(self.root)), "status": status}))
        self.add_command(name, sys.executable, self.root / "actor.py", act, **properties)

    def run_tests(self, *arguments, path=None):
        """Sets status, lines, errors and, if there is a report, suite."""
        environment = {**os.environ, "PATH": f"{path or CTEST.parent}{os.pathsep}{os.environ['PATH']}"}
        run = subprocess.run(
            [sys.executable, self.root / "scripts" / "run_tests.py", *(arguments or ["some"])],
            cwd=self.root.parent,
            env=environment,
            capture_output=True,
        )
        self.status, self.errors = run.returncode, run.stderr.decode()
        self.lines = run.stdout.decode().splitlines()
        reports = list((self.root / "build" / "test-results").glob("*.xml"))
        self.suite = self.valid(ElementTree.parse(reports[0]).getroot()) if reports else None
        self.cases = {f"{case.get('classname')}.{case.get('name')}": case for case in self.suite} if reports else {}

    def ran(self):
        return (self.build / "ran").read_text().split()

    def expect_no_report(self, errors, **arguments):
        results = self.root / "build" / "test-results"
        results.mkdir(exist_ok=True)
        (results / "some.xml").write_text("<of-an-earlier-run/>")
        self.run_tests(**arguments)
        self.assertEqual((self.status, self.errors), (1, f"run_tests.py: {errors}\n"))
        self.assertIsNone(self.suite)

    def valid(self, suite):
        """The suite, which holds what is required and nothing that is not allowed."""
        self.assertEqual(suite.tag, "testsuite")
        self.assertLessEqual({"name", "tests", "failures", "errors"}, set(suite.keys()))
        self.assertLessEqual(
            set(suite.keys()), {"name", "tests", "failures", "errors", "skipped", "time", "timestamp", "hostname"}
        )
        self.assertRegex(suite.get("time"), r"\A\d{1,3}\.\d{3}\Z")
        self.assertRegex(suite.get("timestamp"), r"\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\Z")
        for case in suite:
            self.assertEqual(case.tag, "testcase")
            self.assertEqual(set(case.keys()), {"name", "classname", "time"})
            self.assertRegex(case.get("time"), r"\A\d+\.\d{3}\Z")
            self.assertLessEqual(len(case), 1)
            for what in case:
                self.assertIn(what.tag, {"failure", "error", "skipped", "flakyFailure"})
                self.assertEqual(len(what), 0)
                self.assertLessEqual(set(what.keys()), {"type", "message"})
                self.assertTrue(what.get("message"))
                self.assertTrue(what.get("type") or what.tag == "skipped")
        counts = {"tests": "testcase", "failures": "*/failure", "errors": "*/error", "skipped": "*/skipped"}
        for attribute, path in counts.items():
            self.assertEqual(suite.get(attribute), str(len(suite.findall(path))), attribute)
        return suite

    def outcome(self, name):
        """What the report has of a test: its element's tag, type and message, or nothing."""
        what = self.cases[name].find("*")
        return () if what is None else tuple(filter(None, (what.tag, what.get("type"), what.get("message"))))

    def printed(self, name):
        """The lines below the heading of a failed test."""
        heading = next(number for number, line in enumerate(self.lines) if re.search(rf"(^|: ){name} [^;]*$", line))
        indented = [line.startswith("    ") for line in self.lines[heading + 1 :]]
        return [line[4:] for line in self.lines[heading + 1 : heading + 1 + indented.index(False)]]


class Phases(Checkout):
    def add_all(self, catalogueStatus):
        self.add("Other.Rule")
        self.add("Other.Repeating", LABELS="after-catalogue")
        self.add("Unit.Rule", LABELS="unit")
        self.add("Unit.Repeating", LABELS="unit;after-catalogue")
        self.add("Catalogue.TrackOne", output="one differs", status=catalogueStatus, LABELS="catalogue")
        self.add("Catalogue.NotOfTheCatalogue", status=0)
        self.add("Catalogue.TrackTwo", LABELS="catalogue")

    def test_the_catalogue_runs_before_the_unit_tests_and_these_before_the_others(self):
        self.add_all(0)
        self.run_tests()
        self.assertEqual(self.lines, ["some: 7 passed, 0 failed"])
        self.assertEqual(self.status, 0)
        ran = self.ran()
        self.assertEqual(set(ran[:2]), {"Catalogue.TrackOne", "Catalogue.TrackTwo"})
        self.assertEqual(set(ran[2:4]), {"Unit.Rule", "Unit.Repeating"})
        self.assertEqual(set(ran[4:]), {"Other.Rule", "Other.Repeating", "Catalogue.NotOfTheCatalogue"})
        self.assertEqual(len(ran), 7)
        self.assertEqual(self.cases["Catalogue.TrackOne"].get("classname"), "Catalogue")
        self.assertEqual(self.suite.get("name"), "some")
        self.assertEqual([case.get("name") for case in self.suite][:3], ["Rule", "Repeating", "Rule"])

    def test_what_would_only_repeat_a_failure_of_the_catalogue_is_skipped_and_told_in_a_line(self):
        self.add_all(1)
        self.run_tests()
        self.assertEqual(
            self.lines,
            [
                "Catalogue.TrackOne failed; the tests go on",
                "Catalogue.TrackOne failed",
                "    one differs",
                "2 tests are not run: they would only repeat this",
                "ctest's whole output is in build/test-results/some.log, the report in build/test-results/some.xml",
                "some: 4 passed, 1 failed, 2 skipped",
            ],
        )
        self.assertEqual(self.status, 1)
        self.assertEqual(
            set(self.ran()),
            {"Catalogue.TrackOne", "Catalogue.TrackTwo", "Unit.Rule", "Other.Rule", "Catalogue.NotOfTheCatalogue"},
        )
        for name in ("Other.Repeating", "Unit.Repeating"):
            skipped = ("skipped", "a test of the catalogue failed, and this would only repeat it")
            self.assertEqual(self.outcome(name), skipped)
        self.assertEqual(self.outcome("Catalogue.TrackOne"), ("failure", "Failed", "one differs"))

    def test_other_failures_skip_nothing(self):
        self.add("Unit.Rule", status=1, LABELS="unit")
        self.add("Other.Repeating", LABELS="after-catalogue")
        self.run_tests()
        self.assertEqual(self.lines[-1], "some: 1 passed, 1 failed")

    def test_one_label_runs_alone_with_a_report_of_its_own(self):
        self.add("Other.Rule", status=1)
        with open(self.build / "CTestTestfile.cmake", "a", encoding="utf-8") as file:
            file.write("if(NOT CTEST_CONFIGURATION_TYPE STREQUAL Walk)\n  return()\nendif()\n")
        self.add("Walk.Rule", LABELS="walk")
        self.run_tests("some", "--only", "walk", "-C", "Walk")
        self.assertEqual(self.lines, ["walk: 1 passed, 0 failed"])
        self.assertEqual(self.suite.get("name"), "walk")
        self.assertEqual(self.ran(), ["Walk.Rule"])
        self.run_tests("some", "--only", "wal")
        self.assertEqual((self.status, self.errors), (1, "run_tests.py: some has no tests labelled wal\n"))

    def test_without_any_test_there_is_no_report(self):
        (self.build / "CTestTestfile.cmake").write_text("")
        self.expect_no_report("some has no tests")

    def add_needed_of_two_phases(self, status):
        self.add("Needed.Rule", output="cause", status=status, FIXTURES_SETUP="F")
        self.add("Unit.Rule", LABELS="unit", FIXTURES_REQUIRED="F")
        self.add("Other.Rule", FIXTURES_REQUIRED="F")
        self.run_tests()

    def test_what_those_of_two_phases_need_is_told_and_counted_once(self):
        self.add_needed_of_two_phases(status=1)
        self.assertEqual(self.lines[1:3], ["Needed.Rule failed", "    cause"])
        self.assertEqual(self.lines[-1], "some: 0 passed, 1 failed, 2 skipped")
        self.assertEqual(len(self.lines), 5)
        self.assertEqual(self.outcome("Other.Rule"), ("skipped", "Failed test dependencies: Needed.Rule"))

    def test_what_those_of_two_phases_need_has_failed_when_it_fails_in_the_first(self):
        self.add_needed_of_two_phases(status="pass when repeated")
        self.assertEqual(self.lines[-1], "some: 1 passed, 1 failed, 1 skipped")
        self.assertEqual(self.outcome("Needed.Rule"), ("failure", "Failed", "cause"))


class FailedTests(Checkout):
    def test_of_google_test_are_shown_from_the_first_failure_on_which_is_their_place(self):
        self.add("Unit.Rule", output=FAILURE, status=1)
        self.run_tests()
        self.assertIn("tests/UnitTest.cpp:12: Unit.Rule failed", self.lines)
        shown = ["Expected equality of these values:", "  1", "  2", "tests/UnitTest.cpp:14: Failure", "said by the test"]
        self.assertEqual(self.printed("Unit.Rule"), shown)
        message = "tests/UnitTest.cpp:12: Expected equality of these values:\n  1\n  2"
        self.assertEqual(self.outcome("Unit.Rule"), ("failure", "Failed", message))
        text = self.cases["Unit.Rule"].find("failure").text
        self.assertEqual(text.split("\n"), ["tests/UnitTest.cpp:12", *shown])

    def test_of_google_test_by_visual_studio_are_shown_alike(self):
        self.add("Unit.Rule", output="before\n{root}\\tests\\A.cpp(7): error: Value of: a\nActual: b\n", status=1)
        self.run_tests()
        self.assertTrue(any(line.endswith("tests/A.cpp:7: Unit.Rule failed") for line in self.lines), self.lines)
        self.assertEqual(self.printed("Unit.Rule"), ["Value of: a", "Actual: b"])

    def test_of_google_test_without_a_place_are_shown_from_the_failure_on(self):
        self.add("Unit.Rule", output="before\nunknown file: Failure\nC++ exception\n", status=1)
        self.run_tests()
        self.assertIn("Unit.Rule failed", self.lines)
        self.assertEqual(self.printed("Unit.Rule"), ["C++ exception"])

    def test_of_programs_are_shown_by_their_last_lines_and_the_place_where_they_are_added(self):
        place = f"{self.root.as_posix()}/tests/CMakeLists.txt"
        triples = f"{place};5;add_test;{place};9;some_test;{place};0;"
        lines = [f"line {number}" for number in range(500)]
        self.add("Program.Rule", output="\n".join(lines), status=3, _BACKTRACE_TRIPLES=triples)
        self.run_tests()
        self.assertIn("tests/CMakeLists.txt:9: Program.Rule failed", self.lines)
        self.assertEqual(self.printed("Program.Rule"), lines[-9:])
        text = self.cases["Program.Rule"].find("failure").text.split("\n")
        self.assertEqual(text, ["tests/CMakeLists.txt:9", *lines[-200:]])

    def test_of_cmake_scripts_are_shown_from_the_error_on(self):
        script = self.root / "Script.cmake"
        script.write_text("message(STATUS before)\nmessage(FATAL_ERROR [[this differs]])\n")
        self.add_command("Script.Rule", CTEST.with_name("cmake" + CTEST.suffix), "-P", script)
        self.run_tests()
        self.assertEqual(self.printed("Script.Rule"), ["CMake Error at Script.cmake:2 (message):", "  this differs"])

    def test_are_shown_from_what_a_sanitizer_or_valgrind_or_a_compiler_says(self):
        causes = {
            "Address": "==12==ERROR: AddressSanitizer: heap-use-after-free on address 0x1",
            "Undefined": "a.cpp:3:4: runtime error: signed integer overflow",
            "Valgrind": "==77== Invalid read of size 8",
            "Compiler": "a.cpp:3:4: error: 'b' was not declared",
        }
        for name, cause in causes.items():
            (self.build / "CTestTestfile.cmake").write_text("")
            self.add(f"Memory.{name}", output=f"before\n{cause}\nafter\n" + "and more\n" * 30, status=1)
            self.run_tests()
            self.assertEqual(self.printed(f"Memory.{name}")[:2], [cause, "after"])

    def test_that_quote_a_long_output_show_what_is_wrong_in_it(self):
        quoted = "[1/2] compiling\n" * 30 + "a.cpp:3:4: error: no\nmore\n" + "[2/2] linking\n" * 30
        self.add("Unit.Rule", output="a.cpp:1: Failure\nbuilding failed:\n" + quoted, status=1)
        self.run_tests()
        printed = self.printed("Unit.Rule")
        self.assertEqual(printed[0], "building failed:")
        self.assertEqual(printed[3:6], ["...", "a.cpp:3:4: error: no", "more"])

    def test_that_crash_or_hang_or_cannot_be_run_say_so(self):
        self.add("End.Crash", output="the last line", status="crash")
        self.add("End.Hang", output="hangs\n", status="hang", TIMEOUT=1)
        self.add_command("End.Missing", self.root / "nowhere")
        self.run_tests()
        self.assertRegex("\n".join(self.lines), r"\nEnd\.Crash crashed \(.+\)\n    the last line\n")
        self.assertEqual(self.printed("End.Crash"), ["the last line"])
        self.assertIn("End.Hang timed out", self.lines)
        self.assertIn("End.Missing could not be run", self.lines)
        self.assertEqual(self.printed("End.Missing"), [f"Unable to find executable: nowhere"])
        self.assertEqual(self.lines[-1], "some: 0 passed, 3 failed")
        self.assertEqual((self.suite.get("failures"), self.suite.get("errors")), ("0", "3"))
        self.assertEqual(self.outcome("End.Hang"), ("error", "Timeout", "timed out\nhangs"))
        self.assertRegex(self.outcome("End.Crash")[2], r"\Acrashed \(.+\)\nthe last line\Z")

    def test_leave_room_for_the_causes_of_three_and_the_names_of_more_in_forty_lines(self):
        phases = {"unit": "unit", "other": "some"}
        for label in phases:
            for number in range(30):
                output = f"{{root}}/a.cpp:{number}: Failure\n" + ("x" * 1000 + "\n") * 1000
                self.add(f"{label.title()}.{number}", output=output, status=1, LABELS=label)
        self.run_tests()
        self.assertLessEqual(len(self.lines), 40)
        self.assertLessEqual(max(map(len, self.lines)), 4 + 200)
        shown = [line for line in self.lines if line.startswith("a.cpp:")]
        self.assertEqual(shown, [f"a.cpp:{number}: Unit.{number} failed" for number in range(3)])
        self.assertEqual(len(self.printed("Unit.0")), 9)
        self.assertTrue(any(line.startswith("27 more failed: Unit.3, Unit.4, ") for line in self.lines), self.lines)
        self.assertTrue(any(line.startswith("30 more failed: Other.0, ") for line in self.lines), self.lines)
        self.assertLess(len(self.cases["Unit.0"].find("failure").text), 201 * 201)

    def test_that_say_the_same_are_shown_once(self):
        self.add("Unit.Rule", output=FAILURE, status=1)
        self.add("Whole.Units", output="before\n" + FAILURE, status=1)
        self.add("Unit.Other", output=FAILURE.replace("12", "13"), status=1)
        self.add("Unit.Silent", status=1)
        self.add("Unit.Another", status=1)
        self.run_tests()
        self.assertIn("tests/UnitTest.cpp:13: Unit.Other failed", self.lines)
        self.assertIn("Unit.Silent failed", self.lines)
        self.assertIn("2 more failed: Whole.Units, Unit.Another", self.lines)

    def test_may_print_what_xml_does_not_allow(self):
        self.add("Unit.Rule\u00e9", output="\x00\x01\x1b[1m \xff <&>'\"]]> \xc3\xa9 \xef\xbf\xbf", status=1)
        self.run_tests()
        self.assertEqual(self.lines[-1], "some: 0 passed, 1 failed")
        self.assertIn("<&>'\"]]> \u00e9", self.outcome("Unit.Rule\u00e9")[2])

    def test_that_print_what_marks_a_skipped_one_have_failed(self):
        self.add(
            "Unit.Rule",
            output="[  SKIPPED ] Another.Rule\n[  FAILED  ] Unit.Rule\n",
            status=1,
            SKIP_REGULAR_EXPRESSION=r"\[  SKIPPED \]",
        )
        self.run_tests()
        self.assertEqual(self.status, 1)
        self.assertEqual(self.lines[-1], "some: 0 passed, 1 failed")


class OtherTests(Checkout):
    def test_that_are_skipped_say_why_in_the_report_alone(self):
        google = "a.cpp:3: Skipped\nno terminal\n\n[  SKIPPED ] Unit.Rule (0 ms)\n"
        self.add("Unit.Rule", output=google, SKIP_REGULAR_EXPRESSION=r"\[  SKIPPED \]")
        self.add("Script.Rule", output="Skipped: takes root\n", status=77, SKIP_RETURN_CODE=77)
        self.add("Silent.Rule", status=77, SKIP_RETURN_CODE=77)
        self.add("Disabled.Rule", DISABLED="TRUE")
        self.run_tests()
        self.assertEqual(self.lines, ["some: 0 passed, 0 failed, 4 skipped"])
        self.assertEqual(self.status, 0)
        self.assertEqual(self.outcome("Unit.Rule"), ("skipped", "no terminal"))
        self.assertEqual(self.outcome("Script.Rule"), ("skipped", "Skipped: takes root"))
        self.assertEqual(self.outcome("Silent.Rule"), ("skipped", "SKIP_RETURN_CODE=77"))
        self.assertEqual(self.outcome("Disabled.Rule"), ("skipped", "disabled"))

    def test_that_pass_when_repeated_have_passed_and_are_told(self):
        self.preset(True, "error", repeat={"mode": "until-pass", "count": 2})
        self.add("Unit.Rule", output="cause", status="pass when repeated")
        self.add("Unit.Bad", output="cause", status=1)
        self.run_tests()
        self.assertIn("Unit.Rule passed when it was repeated", self.lines)
        self.assertNotIn("Unit.Bad passed when it was repeated", self.lines)
        self.assertEqual(self.lines[-1], "some: 1 passed, 1 failed")
        self.assertEqual(self.outcome("Unit.Rule"), ("flakyFailure", "Failed", "passed when it was repeated"))
        self.assertEqual(self.outcome("Unit.Bad"), ("failure", "Failed", "cause"))


@unittest.skipIf(os.name == "nt", "a program in ctest's place is a script here")
class OtherCtests(Checkout):
    def stub(self, commands):
        """A ctest that lists Unit.Rule and runs it by these commands, for which $report is its report."""
        (self.root / "commands").mkdir()
        stub = self.root / "commands" / "ctest"
        listing = '{"tests": [{"name": "Unit.Rule"}], "backtraceGraph": {}}'
        stub.write_text(
            f"#!/bin/sh\ncase $* in *--show-only*) echo '{listing}'; exit; esac\nfor report; do :; done\n{commands}\n"
        )
        stub.chmod(0o755)
        return stub.parent

    def test_that_leave_in_what_xml_does_not_allow_have_it_replaced(self):
        case = "<testcase name=\"Unit.Rule\"><failure/><system-out>a\\001b\\033c</system-out></testcase>"
        self.run_tests(path=self.stub(f"printf '<testsuite>{case}</testsuite>' >\"$report\"; exit 8"))
        self.assertEqual(self.outcome("Unit.Rule"), ("failure", "Failed", "a\ufffdb\ufffdc"))

    def test_that_are_killed_leave_no_report(self):
        self.expect_no_report(
            "ctest ended with -15 and did not report Unit.Rule, see build/test-results/some.log",
            path=self.stub("echo out of memory; kill $$"),
        )
        self.assertEqual((self.root / "build" / "test-results" / "some.log").read_text(), "out of memory\n")

    def test_that_fail_although_no_test_does_leave_no_report(self):
        case = '<testcase name="Unit.Rule" status="run"/>'
        self.expect_no_report(
            "ctest ended with 1, although no test failed",
            path=self.stub(f"echo '<testsuite>{case}</testsuite>' >\"$report\"; exit 1"),
        )


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
