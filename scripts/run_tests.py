#!/usr/bin/env python3
"""Runs the tests of a build by ctest, says why those that failed did, and leaves a JUnit report.

    run_tests.py PRESET [--only LABEL] [-C CONFIGURATION]

The tests labelled "catalogue" run first. When one of them fails, those labelled "after-catalogue" could only repeat it: they
are not run and count as skipped. Then those labelled "unit" run, then all others. With --only, the tests of one label run
and no others; -C is ctest's option.

The report is build/test-results/PRESET.xml, or LABEL.xml with --only; ctest's whole output lies beside it, as .log. A run that
does not end leaves no report. The exit status is 0 only when no test failed.
"""

import json
import os
import platform
import re
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass
from datetime import datetime, timezone
from pathlib import Path

ROOT = Path(os.path.abspath(__file__)).parent.parent
RESULTS = ROOT / "build" / "test-results"

SHOWN_TESTS = 3  # that failed, with their output; the others by name
SHOWN_LINES, REPORTED_LINES, MESSAGE_LINES = 9, 200, 3  # of such a test: printed, in the report, in its message there
LONGEST_LINE = 200

# The lines by which a test says what is wrong. Its output is shown from the first one on of the first kind that it has.
GOOGLE_TEST = re.compile(r"(?P<file>.+?)(:(?P<line>\d+): Failure$|\((?P<row>\d+)\): error: |: Failure$)")
CAUSES = (
    GOOGLE_TEST,
    re.compile(r".*(==\d+==|: runtime error: )"),  # valgrind and the sanitizers
    re.compile(r".*: (fatal )?error: "),  # compilers
    re.compile(r" *(CMake Error|FAIL: |ERROR: )"),  # CMake, Python's unittest
)
# What GoogleTest prints around a test's own words.
BANNER = re.compile(r"\[[- =A-Z]{10}\]|Note: Google Test filter = |Running main\(\) from | *\d+ FAILED TESTS?$|Failed$")

# A test that did not pass, as ctest prints it when it has ended, and in its summary at the end.
FAILED_ATTEMPT = re.compile(r" *(?:\d+/\d+ )? *Test +#\d+: (.*) \.+[^.*]*\*\*\*(?!Skipped|Not Run \(Disabled\))")
SUMMARY = "\nThe following tests FAILED:\n"
SUMMARY_LINE = re.compile(r"^\s*\d+ - (.+?) \(([^()]*)\)", re.MULTILINE)

NOT_XML = re.compile("[^\t\n\r\x20-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")


def stop(text):
    sys.exit("run_tests.py: " + text)


def say(text):
    print(text, flush=True)


def cut(text):
    return text if len(text) <= LONGEST_LINE else text[: LONGEST_LINE - 3] + "..."


def of_project(text):
    """The text with paths in the project relative to it."""
    for root in {ROOT, ROOT.resolve()}:
        for prefix in {f"{root}{os.sep}", root.as_posix() + "/"}:
            text = text.replace(prefix, "")
    return text


@dataclass
class Result:
    """What became of a test."""

    name: str
    outcome: str = "passed"  # or "failed" or "skipped"
    reason: str = ""  # of a failure ctest's word for it: "Failed", "Timeout", "SEGFAULT"; why it was skipped
    output: str = ""
    seconds: float = 0.0
    location: str = ""  # "file:line", where it failed or else where it is added
    wasRepeated: bool = False  # and passed then

    def __post_init__(self):
        for match in filter(None, map(GOOGLE_TEST.match, self.output.split("\n"))):
            line = match["line"] or match["row"]
            if line:
                self.location = f"{match['file'].strip()}:{line}".replace("\\", "/")
                break

    def verdict(self):
        verdicts = {"Failed": "failed", "Timeout": "timed out", "Not Run": "could not be run"}
        return verdicts.get(self.reason, f"crashed ({self.reason})")

    def causes(self):
        """The kind of the first line that says what is wrong, and the lines from there on; or None and all lines."""
        lines = [line.rstrip() for line in self.output.split("\n")]
        lines = [line for line in lines if line and not BANNER.match(line)]
        for kind in CAUSES:
            for number, line in enumerate(lines):
                match = kind.match(line)
                if match:
                    first = line[match.end() :] if kind is GOOGLE_TEST else line  # without what the location says
                    return kind, [first, *lines[number + 1 :]] if first else lines[number + 1 :]
        return None, lines

    def excerpt(self):
        """The first of these lines, and what is wrong by another program's output that they quote; or the last ones."""
        kind, lines = self.causes()
        if not kind:
            lines = lines[-SHOWN_LINES:]
        for number in range(SHOWN_LINES - 1, len(lines)):
            if any(other.match(lines[number]) for other in CAUSES if other is not kind):
                lines = [*lines[:MESSAGE_LINES], "...", *lines[number:]]
                break
        if len(lines) > SHOWN_LINES:
            lines = [*lines[: SHOWN_LINES - 1], "..."]
        return [cut(line) for line in lines]

    def printed(self):
        heading = f"{self.name} {self.verdict()}"
        return [f"{self.location}: {heading}" if self.location else heading, *("    " + line for line in self.excerpt())]

    def message(self):
        lines = self.excerpt()[:MESSAGE_LINES]
        if self.reason != "Failed" or not lines:
            lines.insert(0, self.verdict())
        return "\n".join([f"{self.location}: {lines[0]}" if self.location else lines[0], *lines[1:]])

    def report(self):
        """Its element of a JUnit report."""
        group, _, rest = self.name.partition(".")
        case = ElementTree.Element("testcase", name=rest or group, classname=group, time=f"{self.seconds:.3f}")
        if self.outcome == "failed":
            tag = "failure" if self.reason == "Failed" else "error"
            kind, lines = self.causes()
            lines = lines[:REPORTED_LINES] if kind else lines[-REPORTED_LINES:]
            text = "\n".join([*filter(None, [self.location]), *map(cut, lines)])
            ElementTree.SubElement(case, tag, type=self.reason, message=self.message()).text = text
        elif self.outcome == "skipped":
            ElementTree.SubElement(case, "skipped", message=self.reason)
        elif self.wasRepeated:
            ElementTree.SubElement(case, "flakyFailure", type="Failed", message="passed when it was repeated")
        return case


class Run:
    """The tests of a preset, and what becomes of them."""

    def __init__(self, ctest):
        self.ctest = ctest
        self.labels = {}  # of each test by its name, in the order of their numbers
        self.locations = {}
        self.results = {}
        self.failedAttempts = set()
        self.shown = []
        listing = subprocess.run([*ctest, "--show-only=json-v1"], stdin=subprocess.DEVNULL, capture_output=True)
        if listing.returncode != 0:
            lines = listing.stderr.decode(errors="replace").splitlines()
            stop("ctest lists no tests: " + next(filter(None, map(str.strip, lines)), "it does not say why"))
        listing = json.loads(listing.stdout)
        for test in listing["tests"]:
            properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
            self.labels[test["name"]] = set(properties.get("LABELS", []))
            self.locations[test["name"]] = self.location(listing["backtraceGraph"], test.get("backtrace"))

    @staticmethod
    def location(graph, number):
        """Of the command that adds the test in the end, by whatever functions."""
        place = ""
        while number is not None:
            node = graph["nodes"][number]
            if "line" in node:
                place = of_project(f"{graph['files'][node['file']]}:{node['line']}")
            number = node.get("parent")
        return place

    def run(self, labels, log):
        """A phase for each label; for None, one for all other tests."""
        excluded = set()
        for label in labels:
            tests = [test for test, own in self.labels.items() if (not label or label in own) and not own & excluded]
            if not tests:
                continue
            options = ["--label-regex", f"^{re.escape(label)}$"] if label else []
            if excluded:
                options += ["--label-exclude", f"^({'|'.join(sorted(excluded))})$"]
            failed = self.run_phase(options, tests, log)
            self.print_failed(failed)
            excluded.add(label)
            if label == "catalogue" and failed:
                self.skip("after-catalogue", excluded)

    def run_phase(self, options, tests, log):
        """Runs these tests, which ctest takes by these options, and returns the results of those that failed."""
        with tempfile.TemporaryDirectory() as folder:
            reportFile = Path(folder, "report.xml")
            command = [*self.ctest, *options, "--parallel", str(processors()), "--output-junit", str(reportFile)]
            status, output = self.watch(command, log)
            report = reportFile.read_text("utf-8", "replace") if reportFile.exists() else "<testsuite/>"
        reasons = dict(SUMMARY_LINE.findall(output.rpartition(SUMMARY)[2]))
        failed, failedBefore = set(), {test for test, result in self.results.items() if result.outcome == "failed"}
        # What ctest does not replace by itself is replaced here.
        for case in ElementTree.fromstring(NOT_XML.sub("\ufffd", report)).iter("testcase"):
            result = self.read(case, reasons)
            if result.outcome == "failed":
                failed.add(result.name)
            if result.name not in failedBefore:  # what tests of two phases need runs in both
                self.results[result.name] = result
        missing = [test for test in tests if test not in self.results]
        if missing:
            stop(f"ctest ended with {status} and did not report {missing[0]}, see {of_project(log.name)}")
        if status != 0 and not failed:
            stop(f"ctest ended with {status}, although no test failed")
        return [self.results[test] for test in self.labels if test in failed - failedBefore]

    def watch(self, command, log):
        """Runs it, into the log, and returns its exit status and output. Tells of the first test that fails at once."""
        lines = []
        with subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT
        ) as process:
            for line in process.stdout:
                log.write(line)
                lines.append(line.decode(errors="replace").replace("\r\n", "\n"))
                attempt = FAILED_ATTEMPT.match(lines[-1])
                if attempt and attempt[1] in self.labels:
                    if not self.failedAttempts:
                        say(f"{attempt[1]} failed; the tests go on")
                    self.failedAttempts.add(attempt[1])
        return process.returncode, "".join(lines)

    def read(self, case, reasons):
        """A test's result from ctest's report, and the reasons for failures from its summary."""
        name = case.get("name")
        output = of_project(case.findtext("system-out", ""))
        result = Result(name, output=output, seconds=float(case.get("time", 0)), location=self.locations.get(name, ""))
        skipped = case.find("skipped")
        if case.find("failure") is not None:
            result.outcome, result.reason = "failed", reasons.get(name, "Failed")
        elif case.get("status") == "disabled":
            result.outcome, result.reason = "skipped", "disabled"
        elif skipped is not None:
            message = skipped.get("message", "")
            # By its output a test counts as skipped even when it failed: then GoogleTest says so.
            if message.startswith("SKIP_REGULAR_EXPRESSION") and "[  FAILED  ]" in output:
                result.outcome, result.reason = "failed", "Failed"
            elif message.startswith("SKIP_") or message == "Fixture dependency failed":
                result.outcome, result.reason = "skipped", "".join(result.causes()[1][-1:]) or message
            else:
                result.outcome, result.reason = "failed", "Not Run"
        elif name in self.failedAttempts:
            result.wasRepeated = True
            say(f"{name} passed when it was repeated")
        return result

    def skip(self, label, excluded):
        """Excludes the tests of this label that none of those excluded has."""
        tests = [test for test, own in self.labels.items() if label in own and not own & excluded]
        for test in tests:
            self.results[test] = Result(test, "skipped", "a test of the catalogue failed, and this would only repeat it")
        excluded.add(label)
        if tests:
            one = len(tests) == 1
            say(f"{len(tests)} {'test is' if one else 'tests are'} not run: {'it' if one else 'they'} would only repeat this")

    def print_failed(self, failed):
        """By name alone those that say what another has said already."""
        named = []
        for result in failed:
            said = (result.location, result.excerpt())
            if len(self.shown) == SHOWN_TESTS or (said[1] and said in self.shown):
                named.append(result.name)
            else:
                self.shown.append(said)
                say("\n".join(result.printed()))
        if named:
            say(cut(f"{len(named)} more failed: {', '.join(named)}"))

    def write(self, file, begin, seconds):
        """The JUnit report; returns its counts."""
        results = [self.results[test] for test in self.labels]
        suite = ElementTree.Element("testsuite", name=file.stem)
        suite.extend(result.report() for result in results)
        counts = {
            "tests": len(results),
            "failures": len(suite.findall("testcase/failure")),
            "errors": len(suite.findall("testcase/error")),
            "skipped": len(suite.findall("testcase/skipped")),
        }
        suite.attrib.update((key, str(count)) for key, count in counts.items())
        suite.set("time", f"{seconds:.3f}")
        suite.set("timestamp", begin.isoformat(timespec="seconds"))
        suite.set("hostname", platform.node())
        ElementTree.indent(suite)
        written = file.with_suffix(".new")
        ElementTree.ElementTree(suite).write(written, encoding="utf-8", xml_declaration=True)
        written.replace(file)
        return counts


def processors():
    return len(os.sched_getaffinity(0)) if hasattr(os, "sched_getaffinity") else os.cpu_count() or 1


def main():
    arguments = sys.argv[1:]
    if "--help" in arguments or "-h" in arguments:
        print(__doc__.strip())
        return
    preset, options = "".join(arguments[:1]), dict(zip(arguments[1::2], arguments[2::2]))
    if not preset or preset.startswith("-") or len(arguments) % 2 == 0 or not set(options) <= {"--only", "-C"}:
        stop("takes PRESET, --only LABEL and -C CONFIGURATION: --help says what they are")
    only = options.get("--only")
    ctest = ["ctest", "--preset", preset, *(["-C", options["-C"]] if "-C" in options else [])]

    sys.stdout.reconfigure(encoding="utf-8", errors="replace")
    os.chdir(ROOT)
    report = RESULTS / f"{only or preset}.xml"
    log = report.with_suffix(".log")
    for file in (report, log):
        file.unlink(missing_ok=True)
    begin, beginSeconds = datetime.now(timezone.utc).replace(tzinfo=None), time.monotonic()
    run = Run(ctest)
    if only:
        run.labels = {test: own for test, own in run.labels.items() if only in own}
    if not run.labels:
        stop(f"{preset} has no tests" + (f" labelled {only}" if only else ""))
    RESULTS.mkdir(parents=True, exist_ok=True)
    with open(log, "wb", buffering=0) as output:
        run.run([only] if only else ["catalogue", "unit", None], output)
    counts = run.write(report, begin, time.monotonic() - beginSeconds)
    failed = counts["failures"] + counts["errors"]
    passed = counts["tests"] - failed - counts["skipped"]
    if failed:
        say(f"ctest's whole output is in {of_project(str(log))}, the report in {of_project(str(report))}")
    say(f"{report.stem}: {passed} passed, {failed} failed" + (f", {counts['skipped']} skipped" if counts["skipped"] else ""))
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
