#!/usr/bin/python3
"""How the document is composed of what was seen, and what stops it."""

import copy
import json
import unittest

import document
from header import Method, NotUnderstood

CHANGELOG = "# Changelog\n\n## Unreleased\n\n### Added\n\n- Something.\n\n## 1.2.0 - 2026-05-04\n\n- All.\n"
FILE = "annotations.json"


def payload(line="LINE", **members):
    return {"product_line_name": line, "provider": "LINE", "type": "C", "scope": "S", "component_name": "E",
            "component_attributes": members}


def method(name, parameters, calls, line="LINE"):
    """What event_probe prints of a method: `calls` are (parameter, sample, attributes), the first with None and ""."""
    return {"name": name, "takes_parameters_of": name, "names": [],
            "calls": [{"parameter": parameter, "sample": sample, "payload": payload(line, **attributes)}
                      for parameter, sample, attributes in calls]}


# Sends all kinds of values.
CALLS = [
    (None, "", {"T": "a", "N": "1", "U": "1", "D": "0.25", "F": "False", "X": "fixed"}),
    (0, "text", {"T": "b", "N": "1", "U": "1", "D": "0.25", "F": "False", "X": "fixed"}),
    (1, "number", {"T": "a", "N": "-2", "U": "1", "D": "0.25", "F": "False", "X": "fixed"}),
    (2, "number", {"T": "a", "N": "1", "U": "2", "D": "0.25", "F": "False", "X": "fixed"}),
    (3, "decimal", {"T": "a", "N": "1", "U": "1", "D": "0.5", "F": "False", "X": "fixed"}),
    (4, "flag", {"T": "a", "N": "1", "U": "1", "D": "0.25", "F": "True", "X": "fixed"}),
]
LIST_CALLS = [
    (None, "", {"NAME": "a", "COUNT": "1"}),
    (0, "text", {"NAME": "b", "COUNT": "1"}),
    (0, "number", {"NAME": "a", "COUNT": "2"}),
    (0, "empty", {"COUNT": "0"}),
]
PARAMETERS = ["text", "number", "unsigned", "decimal", "flag"]


def entry(**members):
    return {"sensitivity": "technical", "ground": "A ground."} | members


ANNOTATIONS = {
    "about": [{"heading": "A heading", "text": "A text."}],
    "events": {"TrackAll": "A purpose.", "TrackList": "Another purpose."},
    "keys": {name: entry() for name in ("product_line_name", "provider", "type", "scope", "component_name", "T", "F", "X",
                                        "NAME")}
    | {name: entry(unit="bytes") for name in ("N", "U", "D", "COUNT")},
}


class Made(unittest.TestCase):
    """Composes a document of two methods; a test changes what it is made of."""

    def setUp(self):
        self.calls, self.list_calls = copy.deepcopy(CALLS), copy.deepcopy(LIST_CALLS)
        self.declarations = [
            Method("TrackAll", "void TrackAll(...);", PARAMETERS, "Group", "Note.", "Alone."),
            Method("TrackList", "void TrackList(...);", ["tools"], "Group", "Note.", ""),
        ]
        self.annotations = copy.deepcopy(ANNOTATIONS)
        self.changelog = CHANGELOG
        self.other_line = "productline"

    def methods(self, line="LINE"):
        return [method("TrackAll", PARAMETERS, self.calls, line), method("TrackList", ["tools"], self.list_calls, line)]

    def compose(self):
        return document.compose("P", "1.2.0", self.changelog, self.declarations, ["E", "T", "NEVER"],
                                self.methods(), self.methods(self.other_line), self.annotations, FILE)

    def key(self, name):
        made = self.compose()
        keys = made["common"] + [key for event in made["groups"][0]["events"] for key in event["keys"]]
        return next(key for key in keys if key["key"] == name)

    def assert_refused(self, *sentences):
        with self.assertRaises(NotUnderstood) as raised:
            self.compose()
        for sentence in sentences:
            self.assertIn(sentence, str(raised.exception))


class Values(Made):
    def test_a_value_is_of_the_kind_and_parameter_that_change_it(self):
        for name, kind, form, parameter in (("T", "text", None, "text"), ("N", "number", "signed", "number"),
                                            ("U", "number", "unsigned", "unsigned"), ("F", "flag", None, "flag"),
                                            ("D", "number", "decimal", "decimal"), ("X", "fixed", None, None)):
            key = self.key(name)
            self.assertEqual((key["kind"], key["format"], key["from"], key["place"]),
                             (kind, form, parameter, "component_attributes"), name)

    def test_a_value_of_the_product_file_is_no_fixed_one_although_no_argument_changes_it(self):
        key = self.key("product_line_name")
        self.assertEqual((key["kind"], key["from"], key["example"]), ("product", "productline", "LINE"))

    def test_a_fixed_value_is_none_of_the_product_files_although_it_is_the_same_text(self):
        key = self.key("provider")
        self.assertEqual((key["kind"], key["from"], key["example"]), ("fixed", None, "LINE"))

    def test_a_key_that_an_empty_list_leaves_out_goes_by_the_lists_count(self):
        self.assertEqual(self.key("NAME")["unless"], {"place": "component_attributes", "key": "COUNT", "value": "0"})
        self.assertIsNone(self.key("COUNT")["unless"])

    def test_an_integer_is_one(self):
        for call, size in zip(self.calls, (7, 7, -2, 7, 7, 7)):
            call[2]["N"] = size
        key = self.key("N")
        self.assertEqual((key["type"], key["kind"], key["format"], key["example"]), ("integer", "number", "signed", 7))

    def test_the_edit_timer_is_measured_and_always_the_same_example(self):
        for call, milliseconds in zip(self.calls, range(6)):
            call[2]["document_editing_length_ms"] = milliseconds
        self.annotations["keys"]["document_editing_length_ms"] = entry(unit="milliseconds")
        key = self.key("document_editing_length_ms")
        self.assertEqual((key["kind"], key["measured"], key["from"], key["example"]), ("number", True, None, 90000))

    def test_what_every_event_has_with_one_value_is_common(self):
        made = self.compose()
        self.assertEqual([key["key"] for key in made["common"]], ["product_line_name", "provider"])

    def test_what_cannot_be_explained_ends_with_a_sentence(self):
        self.calls[1][2]["N"] = "9"
        self.assert_refused("TrackAll makes N of more than one thing: parameter 1 (text) and parameter 2 (number)")

    def test_other_keys_for_other_arguments_end_with_a_sentence(self):
        del self.calls[4][2]["F"]
        self.assert_refused("TrackAll sends other keys when parameter 4 changes: F")

    def test_an_omission_that_no_count_tells_ends_with_a_sentence(self):
        for call in self.list_calls:
            call[2]["COUNT"] = "1"
        self.assert_refused("TrackList leaves out NAME, and no number tells when")

    def test_a_value_of_another_type_ends_with_a_sentence(self):
        for call in self.calls:
            call[2]["X"] = None
        self.assert_refused("TrackAll sends X as null")


class Surroundings(Made):
    def test_events_stand_in_groups_with_their_notes(self):
        made = self.compose()
        [group] = made["groups"]
        self.assertEqual((group["heading"], group["notes"]), ("Group", ["Note."]))
        self.assertEqual([(event["method"], event["test"], event["note"], event["purpose"]) for event in group["events"]],
                         [("TrackAll", "All", "Alone.", "A purpose."), ("TrackList", "List", None, "Another purpose.")])

    def test_a_group_without_a_note_has_none(self):
        for declaration in self.declarations:
            declaration.group_note = ""
        self.assertEqual(self.compose()["groups"][0]["notes"], [])

    def test_an_event_has_its_name_and_letters_and_who_gives_the_name(self):
        event = self.compose()["groups"][0]["events"][0]
        self.assertEqual([event[name] for name in ("name", "name_from", "names", "type", "scope")],
                         ["E", None, [], "C", "S"])
        methods = self.methods()
        methods[0]["names"] = ["E", "F"]
        methods[0]["calls"][1]["payload"]["component_name"] = "F"
        event = document.describe_event(self.declarations[0], self.declarations, methods, {})
        self.assertEqual((event["name"], event["name_from"], event["names"]), ("E", "text", ["E", "F"]))

    def test_an_event_names_the_parameters_of_the_method_that_prepares_it_too(self):
        self.declarations[0] = Method("AddDocument", "void AddDocument(...);", PARAMETERS, "Group", "Note.", "")
        self.declarations.insert(
            1, Method("StartTrackAll", "void StartTrackAll(...);", ["text", "other"], "Group", "", ""))
        [prepared, _] = self.methods()
        prepared |= {"name": "StartTrackAll", "takes_parameters_of": "AddDocument"}
        event = document.describe_event(self.declarations[1], self.declarations, [prepared], {})
        self.assertEqual((event["test"], event["parameters"]), ("StartTrackAll", [*PARAMETERS, "other"]))
        self.assertEqual(event["signatures"], ["void AddDocument(...);", "void StartTrackAll(...);"])

    def test_version_date_and_unreleased_changes_come_from_the_changelog(self):
        made = self.compose()
        self.assertEqual((made["product"], made["version"], made["date"], made["unreleased"]),
                         ("P", "1.2.0", "2026-05-04", True))
        self.changelog = CHANGELOG.replace("- Something.\n", "")
        self.assertFalse(self.compose()["unreleased"])
        self.changelog = CHANGELOG.replace("1.2.0", "1.1.0")
        self.assert_refused('CHANGELOG.md has no line "## 1.2.0 - "')

    def test_what_the_vocabulary_has_and_no_method_sends_is_listed(self):
        self.assertEqual(self.compose()["unsent"], [{"text": "NEVER", "example_of": None}])

    def test_a_name_that_the_caller_gives_is_not_sent_of_itself(self):
        event = {"name": "E", "name_from": "name", "names": ["E", "F"], "keys": [], "method": "TrackAll"}
        self.assertEqual(document.unsent_texts(["F", "G"], [{"events": [event]}]),
                         [{"text": "F", "example_of": "TrackAll"}, {"text": "G", "example_of": None}])

    def test_the_prober_must_have_each_declared_method_once(self):
        self.declarations.append(Method("TrackNew", "void TrackNew();", [], "Group", "", ""))
        self.assert_refused("TrackNew is declared and has no line in check/ReportingMethods.cpp")
        del self.declarations[1:]
        self.assert_refused("TrackList has a line in check/ReportingMethods.cpp and is not declared")
        methods = self.methods()
        with self.assertRaisesRegex(NotUnderstood, "^TrackAll has 2 lines in check/ReportingMethods.cpp$"):
            document.check_names(self.declarations, [methods[0], methods[0]])


class Annotations(Made):
    def test_they_stand_beside_the_keys(self):
        self.annotations["keys"]["T"] = entry(sensitivity="stored content", ground="Because.")
        key = self.key("T")
        self.assertEqual((key["sensitivity"], key["ground"], key["unit"], key["personal_text"], key["no_personal_text"]),
                         ("stored content", "Because.", None, True, None))
        self.assertEqual(self.key("N")["unit"], "bytes")

    def test_a_text_may_hold_a_persons_text_unless_the_entry_says_why_not(self):
        self.annotations["keys"]["T"]["no_personal_text"] = "One of three words."
        key = self.key("T")
        self.assertEqual((key["personal_text"], key["no_personal_text"]), (False, "One of three words."))
        self.assertFalse(self.key("N")["personal_text"])

    def test_missing_and_superfluous_entries_are_named_with_the_file(self):
        del self.annotations["events"]["TrackAll"], self.annotations["keys"]["T"]
        self.annotations["events"]["TrackGone"] = "A purpose."
        self.annotations["keys"]["GONE"] = entry()
        self.assert_refused(f"{FILE}: the event TrackAll has no entry.", f"{FILE}: the key T has no entry.",
                            f"{FILE}: the event TrackGone has an entry and is not sent.",
                            f"{FILE}: the key GONE has an entry and is not sent.")

    def test_a_wrong_entry_is_named_with_what_is_wrong(self):
        for name, wrong, sentence in (
            ("T", entry(sensitivity="secret"), 'the key T has the sensitivity "secret": it must be one of technical, '
                                               'interaction, stored content, highly sensitive.'),
            ("T", {"ground": "A ground."}, "the key T has the sensitivity null"),
            ("T", {"sensitivity": "technical"}, 'the key T has no "ground"'),
            ("T", entry(ground="no sentence"), 'the key T has no "ground"'),
            ("T", entry(unit="bytes"), 'the key T has a "unit" and is no number.'),
            ("T", entry(no_personal_text=True), 'the key T has no sentence as "no_personal_text"'),
            ("T", entry(purpose="x"), 'the key T has a member "purpose" that means nothing'),
            ("T", "technical", "the key T is no object."),
            ("N", entry(), 'the key N is a number and has no "unit"'),
            ("N", entry(unit=""), 'the key N is a number and has no "unit"'),
            ("F", entry(no_personal_text="No."), 'the key F says "no_personal_text" and is fed by no text.'),
        ):
            with self.subTest(sentence):
                self.annotations = copy.deepcopy(ANNOTATIONS)
                self.annotations["keys"][name] = wrong
                self.assert_refused(f"{FILE}: {sentence}")

    def test_an_event_needs_a_sentence(self):
        self.annotations["events"]["TrackAll"] = ""
        self.assert_refused(f"{FILE}: the event TrackAll has no sentence that says its purpose.")

    def test_a_file_of_another_shape_is_refused(self):
        self.annotations["more"] = {}
        self.assert_refused(f"{FILE}: more is no part of it")
        del self.annotations["more"]
        self.annotations["about"] = [{"heading": "A heading"}]
        self.assert_refused(f'{FILE}: an entry of "about" is not a heading and a text.')
        self.annotations = []
        self.assert_refused(f"{FILE}: there must be")

    def test_what_is_no_json_is_refused_with_its_line(self):
        with self.assertRaisesRegex(NotUnderstood, "^a.json:2: "):
            document.read_annotations('{\n"about" 1}', "a.json")

    def test_an_entry_that_stands_twice_is_refused(self):
        with self.assertRaisesRegex(NotUnderstood, "^a.json: T stands twice in one object.$"):
            document.read_annotations(json.dumps({"T": 1})[:-1] + ', "T": 2}', "a.json")


if __name__ == "__main__":
    unittest.main()
