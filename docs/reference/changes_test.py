#!/usr/bin/python3
"""Tests changes.py and events_diff.sh, and holds CHANGELOG.md against what has changed since the newest release.

    changes_test.py SOURCES
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

import changes

SOURCES = Path(sys.argv[1])
NEITHER = "is neither a file nor a release in docs/released nor a revision of git"


def key(name, **members):
    return {
        "key": name, "place": "component_attributes", "type": "string", "kind": "text", "format": None,
        "measured": False, "from": "name", "unless": None, "example": "text", "sensitivity": "interaction",
        "ground": "It is a name.", "unit": None, "personal_text": True, "no_personal_text": None, **members,
    }


def fixed(name, value):
    return key(name, place=None, kind="fixed", example=value, personal_text=False, **{"from": None})


def event(method, *keys, **members):
    return {
        "method": method, "test": method.removeprefix("Track"), "signatures": [f"void {method}();"], "note": None,
        "purpose": "Counts.", "name": f"CV.{method}", "name_from": None, "type": "C", "scope": "C",
        "keys": [fixed("type", "C"), fixed("component_name", f"CV.{method}"), *keys], "payload": {}, **members,
    }


def document(*events, **members):
    return {
        "$schema": "events.schema.json", "product": "CorvaneTavi", "version": "1.0.0", "date": "2026-11-21",
        "unreleased": False, "about": [], "common": [fixed("product_id_provider", "upi1")],
        "groups": [{"heading": "All", "notes": [], "events": list(events)}], "unsent": [], **members,
    }


OLD = document(event("TrackA", key("CV.A"), key("CV.B", kind="number", format="signed", unit="bytes")), event("TrackB"))


def altered(alter):
    new = copy.deepcopy(OLD)
    alter(new)
    return new


def with_key(**members):
    return altered(lambda new: new["groups"][0]["events"][0]["keys"][2].update(members))


def with_event(**members):
    return altered(lambda new: new["groups"][0]["events"][0].update(members))


def texts(comparison):
    return [change["text"] for change in comparison["changes"]]


# Of the key CV.A or the event TrackA: the member, its new value, and how it is told there and back.
KEY_CHANGES = (
    ("place", "content_meta", "place", 'place: "content_meta", was "component_attributes"',
     'place: "component_attributes", was "content_meta"'),
    ("type", "integer", "type", 'JSON type: "integer", was "string"', 'JSON type: "string", was "integer"'),
    ("kind", "flag", "kind", 'kind: "flag", was "text"', 'kind: "text", was "flag"'),
    ("format", "signed", "format", 'format: "signed", was none', 'format: none, was "signed"'),
    ("measured", True, "measured", "measured by the library: yes, was no", "measured by the library: no, was yes"),
    ("from", "other", "parameter", 'parameter: "other", was "name"', 'parameter: "name", was "other"'),
    ("unless", {"place": None, "key": "CV.B", "value": "0"}, "unless", 'absent when: "CV.B" is "0", was none',
     'absent when: none, was "CV.B" is "0"'),
    ("sensitivity", "technical", "sensitivity", 'sensitivity: "technical", was "interaction"',
     'sensitivity: "interaction", was "technical"'),
    ("ground", "Ä.", "ground", 'why it is that sensitive: "Ä.", was "It is a name."',
     'why it is that sensitive: "It is a name.", was "Ä."'),
    ("unit", "bytes", "unit", 'unit: "bytes", was none', 'unit: none, was "bytes"'),
    ("personal_text", False, "personal_text", "may hold a person's text: no, was yes",
     "may hold a person's text: yes, was no"),
    ("no_personal_text", "A code.", "no_personal_text", 'why no person\'s text gets in: "A code.", was none',
     'why no person\'s text gets in: none, was "A code."'),
)
EVENT_CHANGES = (
    ("name", None, "name", 'name: none, was "CV.TrackA"', 'name: "CV.TrackA", was none'),
    ("name_from", "name", "name_from", 'the parameter that gives the name: "name", was none',
     'the parameter that gives the name: none, was "name"'),
    ("type", "D", "type", 'event type: "D", was "C"', 'event type: "C", was "D"'),
    ("scope", "S", "scope", 'scope: "S", was "C"', 'scope: "C", was "S"'),
    ("purpose", "Tells.", "purpose", 'purpose: "Tells.", was "Counts."', 'purpose: "Counts.", was "Tells."'),
)


class CompareTest(unittest.TestCase):
    maxDiff = None

    def expect(self, old, new, *expected):
        """`expected` are changes without their texts, and those texts."""
        found = changes.compare(old, new)["changes"]
        self.assertEqual(texts({"changes": found}), [text for text, _ in expected])
        for change, (text, members) in zip(found, expected):
            whole = {"change": "changed", "event": "TrackA", "key": None, "place": None, "what": None, "old": None,
                     "new": None, "text": text, **members}
            self.assertEqual(change, whole)

    def test_equal_documents_have_no_changes(self):
        self.expect(OLD, copy.deepcopy(OLD))
        self.assertEqual(changes.compare(OLD, document(version="1.1.0", date="2026-12-01", unreleased=True)) | {
            "changes": []}, {"old": {"version": "1.0.0", "date": "2026-11-21"},
                             "new": {"version": "1.1.0", "date": "2026-12-01", "unreleased": True}, "changes": []})

    def test_members_of_keys(self):
        self.assertEqual({member for member, *_ in KEY_CHANGES}, set(changes.OF_KEYS))
        for member, value, what, there, back in KEY_CHANGES:
            new = with_key(**{member: value})
            before = OLD["groups"][0]["events"][0]["keys"][2][member]
            place = "component_attributes" if member != "place" else value
            told = {"key": "CV.A", "what": what}
            self.expect(OLD, new, ("TrackA: CV.A: " + there, {**told, "place": place, "old": before, "new": value}))
            told["place"] = "component_attributes"
            self.expect(new, OLD, ("TrackA: CV.A: " + back, {**told, "old": value, "new": before}))

    def test_members_of_events(self):
        self.assertEqual({member for member, *_ in EVENT_CHANGES}, set(changes.OF_EVENTS))
        for member, value, what, there, back in EVENT_CHANGES:
            new = with_event(**{member: value})
            before = OLD["groups"][0]["events"][0][member]
            self.expect(OLD, new, ("TrackA: " + there, {"what": what, "old": before, "new": value}))
            self.expect(new, OLD, ("TrackA: " + back, {"what": what, "old": value, "new": before}))

    def test_signatures(self):
        rows = (  # two declarations, and what is told there and back
            ("void TrackA();", "void TrackA(int a);", "int a, was none", "none, was int a"),
            ("void TrackA(int a, bool b);", "void TrackA(int c,\n    bool b);", "int c, was int a", "int a, was int c"),
            ("void TrackA(int a, bool b);", "void TrackA(bool b, int a);", "bool b, int a, was int a, bool b",
             "int a, bool b, was bool b, int a"),
        )
        for one, other, there, back in rows:
            one, other = with_event(signatures=[one]), with_event(signatures=[other])
            before, after = (of["groups"][0]["events"][0]["signatures"] for of in (one, other))
            self.expect(one, other, ("TrackA: signature: " + there, {"what": "signature", "old": before, "new": after}))
            self.expect(other, one, ("TrackA: signature: " + back, {"what": "signature", "old": after, "new": before}))
        two = ["void AddA(int a);", "void TrackA();"]
        self.expect(with_event(signatures=two), with_event(signatures=["void AddA(bool a);", "void TrackA();"]),
                    ("TrackA: signature: bool a, was int a",
                     {"what": "signature", "old": two, "new": ["void AddA(bool a);", "void TrackA();"]}))
        self.expect(with_event(signatures=["void TrackA(int a,  bool b);"]),
                    with_event(signatures=["void TrackA(int a,\n    bool b);"]))

    def test_keys_come_and_go(self):
        new = altered(lambda new: new["groups"][0]["events"][0]["keys"].append(key("CV.C")))
        told = {"key": "CV.C", "place": "component_attributes"}
        self.expect(OLD, new, ("TrackA: CV.C: new in component_attributes", {"change": "added", **told}))
        self.expect(new, OLD, ("TrackA: CV.C: no longer sent in component_attributes", {"change": "removed", **told}))

    def test_events_come_and_go(self):
        new = altered(lambda new: new["groups"].append({"events": [event("TrackC", key("CV.C"), name=None)]}))
        self.expect(OLD, new, ("TrackC: new event", {"change": "added", "event": "TrackC"}))
        self.expect(new, OLD, ("TrackC: event is no longer sent", {"change": "removed", "event": "TrackC"}))
        self.expect(OLD, document(OLD["groups"][0]["events"][0]),
                    ("TrackB: event CV.TrackB is no longer sent", {"change": "removed", "event": "TrackB"}))

    def test_common_keys_are_those_of_every_event(self):
        new = altered(lambda new: new["common"].append(fixed("product_year", "2026")))
        told = {"event": None, "key": "product_year"}
        self.expect(OLD, new, ("Every event: product_year: new", {"change": "added", **told}))
        self.expect(new, OLD, ("Every event: product_year: no longer sent", {"change": "removed", **told}))

    def test_values_matter_where_they_are_fixed(self):
        new = altered(lambda new: new["common"][0].update(example="upi2"))
        self.expect(OLD, new, ('Every event: product_id_provider: value: "upi2", was "upi1"',
                               {"event": None, "key": "product_id_provider", "what": "value", "old": "upi1",
                                "new": "upi2"}))
        self.expect(OLD, with_key(example="another text"))

    def test_a_name_is_told_once(self):
        new = with_event(name="CV.OTHER")
        new["groups"][0]["events"][0]["keys"][1]["example"] = "CV.OTHER"
        self.expect(OLD, new, ('TrackA: name: "CV.OTHER", was "CV.TrackA"',
                               {"what": "name", "old": "CV.TrackA", "new": "CV.OTHER"}))

    def test_order_and_grouping_are_no_changes(self):
        new = document(*reversed(copy.deepcopy(OLD["groups"][0]["events"])))
        new["groups"] += [{"heading": "Other", "notes": [], "events": [new["groups"][0]["events"].pop()]}]
        self.expect(OLD, new)

    def test_all_changes_of_an_event_stand_together(self):
        new = document(event("TrackNew"), event("TrackA", key("CV.A", unit="bytes"), key("CV.C"), scope="S"))
        self.assertEqual(texts(changes.compare(OLD, new)), [
            "TrackNew: new event CV.TrackNew",
            'TrackA: scope: "S", was "C"',
            'TrackA: CV.A: unit: "bytes", was none',
            "TrackA: CV.C: new in component_attributes",
            "TrackA: CV.B: no longer sent in component_attributes",
            "TrackB: event CV.TrackB is no longer sent",
        ])


class Script(unittest.TestCase):
    """Runs scripts/events_diff.sh of a checkout of its own."""

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.checkout = self.folder / "a checkout, of $5"
        for name in ("scripts/events_diff.sh", "scripts/common.bash", "docs/reference/changes.py"):
            (self.checkout / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(SOURCES / name, self.checkout / name)
        self.write("docs/events.json", OLD)
        self.new = with_key(sensitivity="technical")
        self.line = 'TrackA: CV.A: sensitivity: "technical", was "interaction"\n'

    def write(self, name, content):
        file = self.checkout / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(content if isinstance(content, str) else json.dumps(content), encoding="utf-8")
        return file

    def git(self, *arguments):
        user = ["-c", "user.name=Test", "-c", "user.email=test@example.org", "-c", "commit.gpgsign=false"]
        environment = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")}
        subprocess.run(["git", *user, *arguments], cwd=self.checkout, env=environment, check=True,
                       stdout=subprocess.DEVNULL)

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-q", "--allow-empty", "-m", "A revision")

    def run_script(self, *arguments, cwd=None, **more):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")}
        return subprocess.run([self.checkout / "scripts/events_diff.sh", *arguments], cwd=cwd or self.checkout,
                              env={**environment, "LC_ALL": "C"}, stderr=subprocess.PIPE, text=True, encoding="utf-8",
                              check=False, timeout=60, **{"stdout": subprocess.PIPE, **more})

    def expect(self, arguments, status, output, **more):
        run = self.run_script(*arguments, **more)
        self.assertEqual((run.returncode, run.stdout, run.stderr), (status, output, ""))

    def expect_trouble(self, arguments, sentence, **more):
        run = self.run_script(*arguments, **more)
        self.assertEqual((run.stderr, run.stdout or "", run.returncode), (f"events_diff.sh: {sentence}\n", "", 2))


class FilesTest(Script):
    def test_equal_files(self):
        self.expect(["docs/events.json", "docs/events.json"], 0, "")
        run = self.run_script("--json", "docs/events.json")
        self.assertEqual((run.returncode, json.loads(run.stdout)["changes"], run.stderr), (0, [], ""))

    def test_different_files(self):
        self.write("new.json", self.new)
        self.expect(["docs/events.json", "new.json"], 1, self.line)
        self.expect(["new.json"], 1, 'TrackA: CV.A: sensitivity: "interaction", was "technical"\n')
        run = self.run_script("--json", "docs/events.json", "new.json")
        self.assertEqual((run.returncode, json.loads(run.stdout), run.stderr), (1, changes.compare(OLD, self.new), ""))

    def test_files_are_those_of_the_users_folder(self):
        self.write("elsewhere/new.json", self.new)
        self.expect(["../docs/events.json", "new.json"], 1, self.line, cwd=self.checkout / "elsewhere")

    def test_texts_in_any_language(self):
        self.write("new.json", with_key(ground="Ein Schlüssel, 鍵"))
        self.expect(["docs/events.json", "new.json"], 1,
                    'TrackA: CV.A: why it is that sensitive: "Ein Schlüssel, 鍵", was "It is a name."\n')

    def test_what_is_no_document(self):
        without_keys = with_event()
        del without_keys["groups"][0]["events"][0]["keys"]
        rows = (
            ('{\n"version":\n"1.0.0"\n"date"}', "is not JSON: line 4: "),
            ("", "is not JSON: line 1: Expecting value"),
            ("[" * 100000, "is not a document of events: it is nested too deeply"),
            ("[]", "is not a document of events: it is not an object"),
            ("{}", "is not a document of events: it has no version"),
            ({**OLD, "version": 1}, "is not a document of events: version is not a text"),
            ({**OLD, "unreleased": None}, "is not a document of events: unreleased is not true or false"),
            ({**OLD, "groups": {}}, "is not a document of events: groups is not a list"),
            ({**OLD, "groups": [{}]}, "is not a document of events: groups[0] has no events"),
            (without_keys, "is not a document of events: groups[0].events[0] has no keys"),
            (with_event(keys=[1]), "is not a document of events: groups[0].events[0].keys[0] is not an object"),
            (with_event(signatures=[1]),
             "is not a document of events: groups[0].events[0].signatures[0] is not a text"),
        )
        for content, sentence in rows:
            self.write("wrong.json", content)
            for arguments in (["wrong.json"], ["docs/events.json", "wrong.json"], ["--json", "wrong.json"]):
                run = self.run_script(*arguments)
                self.assertEqual((run.returncode, run.stdout), (2, ""), sentence)
                self.assertRegex(run.stderr, r"\Aevents_diff.sh: wrong.json .*\n\Z")
                self.assertIn(sentence, run.stderr)

    def test_what_cannot_be_read(self):
        (self.checkout / "wrong.json").write_bytes(b'{"version": "\xff"}')
        self.expect_trouble(["wrong.json"], "wrong.json is not UTF-8 text: byte 13 is wrong")
        self.expect_trouble(["docs"], "docs cannot be read: Is a directory")
        (self.checkout / "lost.json").symlink_to("nowhere")
        self.expect_trouble(["lost.json"], "lost.json cannot be read: No such file or directory")
        (self.checkout / "docs/events.json").rename(self.checkout / "old.json")
        self.expect_trouble(["old.json"], "docs/events.json cannot be read: No such file or directory")

    def test_wrong_arguments(self):
        self.expect_trouble([], "takes OLD and NEW: --help says what they can be")
        self.expect_trouble(["docs/events.json"] * 3, "takes OLD and NEW: --help says what they can be")
        self.expect_trouble(["--xml", "docs/events.json"], "unknown option --xml: --help says what there is")
        for name in ("nothing.json", "", "1.0.0", "a name", "../1.0.0"):
            self.expect_trouble([name], f"{name or 'an empty name'} {NEITHER}")

    def test_output_that_cannot_be_written(self):
        self.write("new.json", self.new)
        with open("/dev/full", "wb") as full:
            self.expect_trouble(["new.json"], "standard output cannot be written: No space left on device", stdout=full)


class RevisionsTest(Script):
    def setUp(self):
        super().setUp()
        self.git("init", "-q")

    def test_revisions(self):
        self.commit()
        self.write("docs/events.json", self.new)
        self.commit()
        self.git("tag", "-a", "-m", "A tag", "v2")
        self.write("docs/events.json", with_key(unit="bytes"))
        self.expect(["HEAD~1", "HEAD"], 1, self.line)
        self.expect(["HEAD~1", "v2"], 1, self.line)
        self.expect(["HEAD~1"], 1, 'TrackA: CV.A: unit: "bytes", was none\n')
        self.expect(["HEAD~1", "HEAD~1"], 0, "", cwd=self.folder)

    def test_revisions_without_a_document(self):
        (self.checkout / "docs/events.json").rename(self.folder / "events.json")
        self.commit()
        (self.folder / "events.json").rename(self.checkout / "docs/events.json")
        self.expect_trouble(["HEAD"], "the revision HEAD has no docs/events.json")

    def test_revisions_with_a_wrong_document(self):
        self.write("docs/events.json", "{")
        self.commit()
        run = self.run_script("HEAD")
        self.assertEqual((run.returncode, run.stdout), (2, ""))
        self.assertIn("events_diff.sh: docs/events.json of HEAD is not JSON: line 1: ", run.stderr)

    def test_releases_come_before_revisions_and_files_before_releases(self):
        self.commit()
        self.git("tag", "1.0.0")
        self.write("docs/released/1.0.0.json", self.new)
        self.expect(["docs/events.json", "1.0.0"], 1, self.line)
        self.write("1.0.0", OLD)
        self.expect(["docs/events.json", "1.0.0"], 0, "")

    def test_git_is_not_needed_for_files(self):
        shutil.rmtree(self.checkout / ".git")
        self.expect(["docs/events.json"], 0, "")
        self.expect_trouble(["HEAD"], f"HEAD {NEITHER}")


CHANGELOG = """# Changelog

## Unreleased

- `CV.A` is less sensitive. CV.B is gone.

## 1.1.0 - 2026-12-01

- `CV.B` is in bytes.

## 1.0.0 - 2026-11-21

- `CV.C`
"""


class ChangelogTest(unittest.TestCase):
    def unlisted(self, new, changelog=CHANGELOG, **members):
        return texts({"changes": changes.unlisted(changes.compare({**OLD, **members}, new), changelog)})

    def test_changes_with_a_line_are_listed(self):
        self.assertEqual(self.unlisted(with_key(sensitivity="technical")), [])
        self.assertEqual(self.unlisted(document(event("TrackA", key("CV.A")), event("TrackB"))), [])

    def test_a_line_of_the_old_version_or_an_older_one_does_not_count(self):
        new = document(event("TrackA", key("CV.A")), event("TrackB"))
        text = ["TrackA: CV.B: no longer sent in component_attributes"]
        self.assertEqual(self.unlisted(new, version="1.1.0"), text)
        old = document(event("TrackA", key("CV.C")))
        unlisted = changes.unlisted(changes.compare(old, document(event("TrackA"))), CHANGELOG)
        self.assertEqual(texts({"changes": unlisted}), ["TrackA: CV.C: no longer sent in component_attributes"])

    def test_another_name_or_a_name_without_backticks_does_not_count(self):
        self.assertEqual(self.unlisted(with_key(unit="bytes"), CHANGELOG.replace("`CV.A`", "`CV.A.X`")),
                         ['TrackA: CV.A: unit: "bytes", was none'])
        self.assertEqual(self.unlisted(with_key(unit="bytes"), CHANGELOG.replace("`CV.A`", "CV.A")),
                         ['TrackA: CV.A: unit: "bytes", was none'])

    def test_events_count_by_their_methods(self):
        new = document(OLD["groups"][0]["events"][0])
        self.assertEqual(self.unlisted(new), ["TrackB: event CV.TrackB is no longer sent"])
        self.assertEqual(self.unlisted(new, CHANGELOG.replace("`CV.A`", "`TrackB`")), [])

    def test_what_is_new_needs_no_line(self):
        self.assertEqual(self.unlisted(document(*OLD["groups"][0]["events"], event("TrackC", key("CV.C")))), [])

    def test_a_version_that_the_changelog_lacks_is_said(self):
        with self.assertRaisesRegex(changes.Trouble, "no section of version 1.0"):
            self.unlisted(OLD, version="1.0")

    def test_every_change_since_the_newest_release_has_a_line(self):
        release = changes.newest_release()
        old = changes.parse(release.read_bytes(), release.name)
        self.assertEqual(old["version"], release.stem, "a release's file is not named after its version")
        new = changes.parse((SOURCES / "docs/events.json").read_bytes(), "docs/events.json")
        missing = changes.unlisted(changes.compare(old, new), (SOURCES / "CHANGELOG.md").read_text(encoding="utf-8"))
        if missing:
            self.fail(f"CHANGELOG.md says nothing, above {release.stem}, of what has changed:\n"
                      + "\n".join(texts({"changes": missing})))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
