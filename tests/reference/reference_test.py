#!/usr/bin/python3
"""Slips in the sources of the event reference must be named with their place, and events_diff.sh must print each change.

    reference_test.py SOURCES EVENT_PROBE
"""

import copy
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCES, EVENT_PROBE = (Path(argument).absolute() for argument in sys.argv[1:])
sys.path.insert(0, str(SOURCES / "tools"))

import changes  # noqa: E402
import document  # noqa: E402
import header  # noqa: E402
import render  # noqa: E402

DOCUMENT = json.loads((SOURCES / "docs/events.json").read_text(encoding="utf-8"))
EVENTS = [event for group in DOCUMENT["groups"] for event in group["events"]]


class Slips(unittest.TestCase):
    def expect(self, sentence, function, *arguments):
        with self.subTest(sentence), self.assertRaises(header.NotUnderstood) as raised:
            function(*arguments)
        self.assertIn(sentence, str(raised.exception))

    def expect_of_header(self, sentence, text, read=header.read_methods):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "Header.h"
            file.write_text(text, encoding="utf-8")
            self.expect(sentence, read, file, SOURCES)

    def test_in_the_wrappers_header(self):
        shape = "TrackA is not declared as reporting methods are"
        for declaration, sentence in (
            ("int TrackA(int a);", shape),
            ("void TrackA(int);", shape),
            ("static void TrackA(int a);", shape),
            ("void TrackA() {}", shape),
            ("template <typename T> void TrackA(T a);", shape),
            ("void TrackA(Unknown a);", "unknown type name 'Unknown'"),
            ("void TrackB(); void TrackB(int a);", "TrackB is declared twice"),
        ):
            self.expect_of_header(f"Header.h:4: {sentence}",
                                  f"class CorvaneTavi {{\npublic:\n    // Group\n    {declaration}\n}};\n")
        self.expect_of_header("Header.h:3: TrackA is in no group",
                              "class CorvaneTavi {\npublic:\n    void TrackA();\n};\n")
        self.expect_of_header("Header.h declares no reporting method",
                              "class CorvaneTavi {\nprivate:\n    // Group\n    void TrackA();\n};\n")

    def test_in_the_vocabulary(self):
        for constant, sentence in (
            ('inline const std::wstring A_B = L"A.C";', 'A_B has the text "A.C": a constant is named by its text'),
            ('inline const std::wstring A = L"A" L"B";', "A is not a constant with one plain wide text"),
        ):
            self.expect_of_header(f"Header.h:3: {sentence}",
                                  f"#include <string>\nnamespace Corvane::Vocabulary {{\n{constant}\n}}\n",
                                  header.read_vocabulary)

    def test_in_the_annotations(self):
        keys = DOCUMENT["common"] + [key for event in EVENTS for key in event["keys"]]
        number, text, fixed = ({key["kind"]: key["key"] for key in keys}[kind] for kind in ("number", "text", "fixed"))
        right = document.read_annotations((SOURCES / document.ANNOTATIONS).read_text(encoding="utf-8"))
        for place, change, sentence in (
            ("events", {"TrackPPR": None}, "events: 'TrackPPR' is a required property"),
            ("events", {"TrackGone": {}}, "events: Additional properties are not allowed ('TrackGone' was"),
            ("events", {"TrackPPR": {"purpose": "No stop"}}, "events, TrackPPR, purpose: 'No stop' does not match"),
            ("events", {"TrackPPR": {"owner": "A"}}, "events, TrackPPR: 'purpose' is a required property"),
            ("events", {"TrackPPR": {"purpose": "A.", "wanted_until": "2027-02-29"}},
             "events, TrackPPR, wanted_until: '2027-02-29' is not a 'date'"),
            ("keys", {text: None}, f"keys: '{text}' is a required property"),
            ("keys", {"GONE": {}}, "keys: Additional properties are not allowed ('GONE' was"),
            (text, {"sensitivity": "secret"}, f"keys, {text}, sensitivity: 'secret' is not one of"),
            (text, {"reason": None}, f"keys, {text}: 'reason' is a required property"),
            (text, {"reason": "No stop"}, f"keys, {text}, reason: 'No stop' does not match"),
            (text, {"no_personal_text": True}, f"keys, {text}, no_personal_text: True is not of type 'string'"),
            (text, {"unit": "mm"}, f"keys, {text}: Additional properties are not allowed ('unit' was"),
            (number, {"unit": None}, f"keys, {number}: 'unit' is a required property"),
            (fixed, {"no_personal_text": "No."}, f"keys, {fixed}: Additional properties are not allowed"),
        ):
            annotations = copy.deepcopy(right)
            holder = annotations[place] if place in annotations else annotations["keys"][place]
            holder.update(change)
            for name in [name for name, value in change.items() if value is None]:
                del holder[name]
            for part in (f"docs/annotations.json: {sentence}", "then run scripts/reference.sh"):
                self.expect(part, document.check_annotations, annotations, EVENTS, keys)
        self.expect("docs/annotations.json:2: ", document.read_annotations, '{\n"about" 1}')
        self.expect("docs/annotations.json: T occurs twice", document.read_annotations, '{"T": 1, "T": 2}')

    def test_in_what_is_sent(self):
        def method(*calls):
            first = (None, "", {"A": "1", "B": "1"})
            return {"name": "TrackA", "calls": [{"parameter": parameter, "sample": sample, "payload": payload}
                                                for parameter, sample, payload in (first, *calls)]}

        both = method((0, "text", {"A": "x", "B": "x"}), (1, "number", {"A": "1", "B": "2"}))
        self.expect("TrackA makes B of more than one thing: parameter 1 (text) and parameter 2 (number)",
                    document.origins_of, both)
        self.expect("TrackA sends other keys when parameter 2 changes: B",
                    document.origins_of, method((1, "flag", {"A": "1"})))
        key = document.Leaf(None, "B")
        self.expect("TrackA leaves out B, and no number shows when",
                    document.condition_of, key, method((0, "empty", {"A": "1"})), {})
        self.expect("TrackA sends B as null", document.describe_key, key, None, method(), {}, [])
        declared = header.Method("TrackA", "void TrackA();", [], "Group", "", "")
        for declarations, methods in ([declared], []), ([], [method()]), ([declared], [method(), method()]):
            self.expect(f"TrackA has {len(methods)} lines in check/ReportingMethods.cpp and {len(declarations)} decl",
                        document.check_names, declarations, methods)
        self.expect('CHANGELOG.md has no line "## 1.2.0 - "', document.read_changelog, "## 1.1.0 - 2026-01-01", "1.2.0")


class Files(unittest.TestCase):
    def test_check_names_one_that_is_out_of_date_and_a_probe_that_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            sources = Path(folder)
            for name in ("CHANGELOG.md", "harness", "sdk", "telemetry"):
                (sources / name).symlink_to(SOURCES / name)
            shutil.copytree(SOURCES / "docs", sources / "docs")
            (sources / "docs/events.csv").write_bytes(b"stale")
            for probe, sentence in ((EVENT_PROBE, "docs/events.csv is out of date."),
                                    ("false", "The event reference cannot be made: false ends with 1")):
                command = [SOURCES / "tools/reference.py", "check", probe, sources]
                run = subprocess.run([sys.executable, "-B", *command, DOCUMENT["product"], DOCUMENT["version"]],
                                     capture_output=True, encoding="utf-8", check=False)
                self.assertEqual(run.returncode, 1)
                self.assertIn(sentence, run.stderr)

    def test_a_bar_in_markdown_does_not_end_a_cell(self):
        bar = {**DOCUMENT, "common": [{**DOCUMENT["common"][0], "example": "a|b"}]}
        self.assertIn(r'| `"a\|b"` |', render.markdown(bar, changes.compare(bar, bar)))

    def test_have_an_owner_and_dates_that_are_given(self):
        event = {**EVENT, "owner": "Ä", "reviewed": "2026-01-02", "wanted_until": "2027-03-04"}
        given = {**OLD, "groups": [{**DOCUMENT["groups"][0], "events": [event]}]}
        since = changes.compare(OLD, given)
        line = "Owner: Ä; last review: 2026-01-02; wanted until: 2027-03-04."
        self.assertIn(line, render.markdown(given, since))
        page = render.page(given, since)
        self.assertIn(f"<p class='note'>{line}</p>", page)
        self.assertIn("data-until='2027-03-04'", page)
        self.assertTrue(render.table(given).endswith(",Ä,2026-01-02,2027-03-04\r\n"))


# One event, with texts that do not depend on the annotations.
OLD = {**DOCUMENT, "common": DOCUMENT["common"][-1:], "groups": [
    {"events": [copy.deepcopy(event) for event in EVENTS if event["method"] == "TrackMeshSize"]}]}
[EVENT] = OLD["groups"][0]["events"]
EVENT["purpose"] = "Counts."
KEY = EVENT["keys"][-1]
KEY.update(reason="It counts.", unit="nodes")


def changed(**members):
    return {**OLD, "groups": [{"events": [{**EVENT, **members}]}]}


def of_key(**members):
    return changed(keys=[*EVENT["keys"][:-1], {**KEY, **members}])


def parameters(*declared):
    return changed(signatures=[f"void TrackMeshSize({', '.join(declared)});"])


NODES = "TrackMeshSize: CV.MESH_SIZE_NODES: "
CHANGES = (
    (changed(name=None), ['TrackMeshSize: name: none, was "CV.MESH_SIZE_COUNT"']),
    (changed(name_from="it"), ['TrackMeshSize: the parameter that gives the name: "it", was none']),
    (changed(type="D"), ['TrackMeshSize: event type: "D", was "C"']),
    (changed(scope="S"), ['TrackMeshSize: scope: "S", was "C"']),
    (changed(purpose="Ä."), ['TrackMeshSize: purpose: "Ä.", was "Counts."']),
    (changed(owner="A"), ['TrackMeshSize: owner: "A", was none']),
    (changed(reviewed="2026-12-31"), ['TrackMeshSize: last review: "2026-12-31", was none']),
    (changed(wanted_until="2026-12-31"), ['TrackMeshSize: wanted until: "2026-12-31", was none']),
    (parameters("std::uint64_t elementCount", "int nodes", "int edges"),
     ["TrackMeshSize: signature: int nodes, int edges, was std::uint64_t nodeCount"]),
    (parameters("std::uint64_t  elementCount", "\n    std::uint64_t nodeCount"), []),
    (of_key(place="content_meta"), [NODES + 'place: "content_meta", was "component_attributes"']),
    (of_key(type="integer"), [NODES + 'JSON type: "integer", was "string"']),
    (of_key(kind="text"), [NODES + 'kind: "text", was "number"']),
    (of_key(format="signed"), [NODES + 'format: "signed", was "unsigned"']),
    (of_key(written_by_library=True), [NODES + "written by the library: yes, was no"]),
    (of_key(**{"from": "other"}), [NODES + 'parameter: "other", was "nodeCount"']),
    (of_key(unless={"place": None, "key": "A", "value": "0"}), [NODES + 'absent when: "A" is "0", was none']),
    (of_key(sensitivity="technical"), [NODES + 'sensitivity: "technical", was "stored content"']),
    (of_key(reason="Why."), [NODES + 'why it is that sensitive: "Why.", was "It counts."']),
    (of_key(unit=None), [NODES + 'unit: none, was "nodes"']),
    (of_key(personal_text=True), [NODES + "may hold a person's text: yes, was no"]),
    (of_key(no_personal_text="A code."), [NODES + "why no person's text gets in: \"A code.\", was none"]),
    (of_key(example="another"), []),
    (of_key(key="NEW"), ["TrackMeshSize: NEW: new in component_attributes",
                            NODES + "no longer sent in component_attributes"]),
    ({**OLD, "common": [{**OLD["common"][0], "example": "upi2"}]},
     ['Every event: product_id_provider: value: "upi2", was "upi1"']),
    ({**OLD, "groups": [{"events": [event for event in EVENTS if event["method"] == "TrackPPR"]}]},
     ["TrackPPR: new event CV.PPR", "TrackMeshSize: event CV.MESH_SIZE_COUNT is no longer sent"]),
)


class Changes(unittest.TestCase):
    def test_are_printed_for_all_that_is_compared(self):
        compared = {NODES + label for _, label in changes.OF_KEYS.values()}
        compared |= {"TrackMeshSize: " + label for _, label in changes.OF_EVENTS.values()}
        for new, expected in CHANGES:
            found = [change["text"] for change in changes.compare(OLD, new)["changes"]]
            self.assertEqual(found, expected)
            compared -= {text.rpartition(": ")[0] for text in found}
        self.assertEqual(compared, set(), "no line here has a change of these")

    def test_must_be_in_the_changelog_except_for_additions_and_for_what_is_said(self):
        comparison = changes.compare({**OLD, "version": "1.0.0"}, CHANGES[-3][0])
        head = "# Changelog\n\n## Unreleased\n\n- {}\n\n## 1.0.0 - 2026-01-01\n\n- `CV.MESH_SIZE_NODES`\n"
        for line, count in (("`CV.MESH_SIZE_NODES` is gone.", 0), ("CV.MESH_SIZE_NODES is gone.", 1)):
            self.assertEqual(len(changes.unlisted(comparison, head.format(line))), count)
        said = changes.compare(OLD, changed(purpose="A.", keys=[*EVENT["keys"][1:-1], {**KEY, "reason": "A."}]))
        self.assertEqual([change["change"] for change in said["changes"]], ["changed", "changed", "removed"])
        self.assertEqual([each["change"] for each in changes.unlisted({**said, "old": {"version": "1.0.0"}}, head)],
                         ["removed"])
        for text, unreleased in ((head, True), (head.replace("- {}\n", ""), False)):
            self.assertEqual(document.read_changelog(text, "1.0.0"), ("2026-01-01", unreleased))


class Script(unittest.TestCase):
    """scripts/events_diff.sh, in a checkout with one revision."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.checkout = Path(folder.name) / "a checkout"
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")}
        for name in ("scripts/events_diff.sh", "scripts/common.bash", "tools/changes.py"):
            (self.checkout / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(SOURCES / name, self.checkout / name)
        self.write("docs/events.json", json.dumps(OLD))
        for command in ("init -q", "add .", "-c user.name=A -c user.email=a@example.org commit -q -m A"):
            subprocess.run(["git", *command.split()], cwd=self.checkout, env=self.environment, check=True)

    def write(self, name, text):
        (self.checkout / name).parent.mkdir(exist_ok=True)
        (self.checkout / name).write_text(text, encoding="utf-8")

    def run_script(self, *arguments):
        run = subprocess.run([self.checkout / "scripts/events_diff.sh", *arguments], cwd=self.checkout / "docs",
                             env=self.environment | {"LC_ALL": "C"}, capture_output=True, encoding="utf-8", check=False)
        return run.returncode, run.stdout, run.stderr

    def test_compares_files_releases_and_revisions(self):
        unit = of_key(unit=None)
        self.write("docs/events.json", json.dumps(unit))
        self.write("docs/released/1.0.0.json", json.dumps(changed(purpose="Ä.")))
        line = NODES + 'unit: none, was "nodes"\n'
        self.assertEqual(self.run_script("events.json"), (0, "", ""))
        self.assertEqual(self.run_script("HEAD"), (1, line, ""))
        self.assertEqual(self.run_script("HEAD", "1.0.0"), (1, 'TrackMeshSize: purpose: "Ä.", was "Counts."\n', ""))
        status, output, errors = self.run_script("HEAD", "events.json", "--date", "2026-07-01", "--json")
        more = {"date": "2026-07-01", "passed": []}
        self.assertEqual((status, json.loads(output), errors), (1, changes.compare(OLD, unit) | more, ""))

    def test_tells_what_is_not_wanted_any_more(self):
        self.write("docs/events.json", json.dumps(changed(wanted_until="2026-06-30")))
        passed = "TrackMeshSize: wanted until 2026-06-30, which has passed; owner: not named\n"
        for day, output in (("2026-06-30", ""), ("2026-07-01", passed)):
            self.assertEqual(self.run_script("events.json", "--date", day, "events.json"), (0, output, ""))

    def test_says_what_is_wrong(self):
        self.write("docs/no.json", "{\n!")
        self.write("docs/other.json", '{"version": "1"}')
        (self.checkout / "docs/latin1.json").write_bytes('{"purpose": "Ä."}'.encode("latin-1"))
        for name, sentence in (
            ("no.json", "no.json is not JSON: Expecting property name"),
            ("latin1.json", "latin1.json is not JSON: 'utf-8' codec can't decode byte 0xc4"),
            ("other.json", "other.json is not a document of events in the present form: it has no 'date'"),
            ("9.9.9", '"9.9.9" is neither a file nor a release in docs/released nor a revision of git'),
        ):
            status, output, errors = self.run_script(name)
            self.assertEqual((status, output), (2, ""), name)
            self.assertRegex(errors, rf"\Aevents_diff.sh: {sentence}.*\n\Z")
        for arguments, sentence in (([], "required: OLD"), (["HEAD", "--x"], "unrecognized arguments: --x"),
                                    (["HEAD", "--date", "2027-02-29"], "invalid day value: '2027-02-29'")):
            status, output, errors = self.run_script(*arguments)
            self.assertEqual((status, output), (2, ""))
            self.assertIn(sentence, errors)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
