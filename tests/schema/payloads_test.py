#!/usr/bin/python3
"""Holds docs/payloads.schema.json against what is really sent, by a validator that is not ours.

    payloads_test.py PAYLOAD_WRITER DOCS

The payloads of the catalogue and of the prober's calls must pass, each as its own event's. Of the wrong
payloads those must pass whose only differences the schema is to allow, which is worked out here from docs/events.json;
all others must be refused.
"""

import json
import subprocess
import sys
import unittest
from collections import Counter, defaultdict
from pathlib import Path

from jsonschema import Draft202012Validator

WRITER, DOCS = map(Path, sys.argv[1:3])
SHOWN = 5  # faults
LONGEST_VALUE = 300

Document = json.loads((DOCS / "events.json").read_text(encoding="utf-8"))
Schema = json.loads((DOCS / "payloads.schema.json").read_text(encoding="utf-8"))
Events = {event["method"]: event for group in Document["groups"] for event in group["events"]}


def read_lines():
    """What the writer prints, by kind and event."""
    output = subprocess.run([WRITER], check=True, stdout=subprocess.PIPE, timeout=300).stdout.decode()
    lines = {kind: defaultdict(list) for kind in ("catalogue", "call", "mutant")}
    for line in output.rstrip("\n").split("\n"):  # splitlines() would take what is in texts for ends of lines
        line = json.loads(line)
        lines[line["kind"]][line["event"]].append(line)
    return lines


def shown(value):
    text = json.dumps(value)
    return text if len(text) <= LONGEST_VALUE else text[:LONGEST_VALUE] + "..."


def is_integer_text(text):
    return text.isascii() and text.removeprefix("-").isdigit() and str(int(text)) == text


def is_decimal_text(text):
    try:
        float(text)
    except ValueError:
        return False
    return text.strip() == text and "_" not in text


def is_allowed(key, value):
    """Whether the host, its product file or the clock may give another value to the key, and this one."""
    if key["measured"]:
        return type(value) is int and value >= 0
    if key["kind"] == "number" and key["type"] == "integer":
        return type(value) is int
    if key["kind"] == "fixed" or not isinstance(value, str):
        return False
    if key["kind"] == "flag":
        return value in ("True", "False")
    if key["kind"] != "number":
        return True
    if key["format"] == "decimal":
        return is_decimal_text(value)
    return is_integer_text(value) and not (key["format"] == "unsigned" and value.startswith("-"))


def leaves(payload, places):
    """The values by place and key; None when an object is none."""
    found = {}
    for key, value in payload.items():
        if key not in places:
            found[None, key] = value
        elif isinstance(value, dict):
            found.update({(key, member): inner for member, inner in value.items()})
        else:
            return None
    return found


def must_pass(event, right, mutant):
    """By the differences between the mutant and the right payload, which passes."""
    keys = {(key["place"], key["key"]): key for key in Document["common"] + event["keys"]}
    places = {place for place, _ in keys if place is not None}
    before, after = leaves(right, places), leaves(mutant, places)
    if after is None:
        return False
    for place_and_key in before.keys() | after.keys():
        place, key = place_and_key
        if place_and_key not in keys:
            if place is not None:
                return False
        elif place_and_key not in after:
            unless = keys[place_and_key]["unless"]
            if keys[place_and_key]["measured"]:
                continue  # the library may do without
            if unless is None or after.get((unless["place"], unless["key"])) != unless["value"]:
                return False
        elif before.get(place_and_key) != after[place_and_key] or \
                type(before[place_and_key]) is not type(after[place_and_key]):
            if not is_allowed(keys[place_and_key], after[place_and_key]):
                return False
    for (place, _), key in keys.items():
        unless = key["unless"]
        if unless is not None and after.get((unless["place"], unless["key"])) == unless["value"]:
            if (place, key["key"]) in after:
                return False
    return True


class PayloadsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.lines = read_lines()
        cls.any = Draft202012Validator(Schema)
        cls.own = {
            method: Draft202012Validator({**{key: Schema[key] for key in ("$schema", "$defs")},
                                          "$ref": "#/$defs/" + method})
            for method in Events
        }
        cls.counts = Counter()

    @classmethod
    def tearDownClass(cls):
        counts = cls.counts
        print(f"{counts['catalogue']} + {counts['call']} payloads passed, {counts['refused']} mutants refused, "
              f"{counts['allowed']} allowed")

    def expect_none(self, faults, what):
        if faults:
            self.fail(f"{len(faults)} {what}:\n" + "\n".join(faults[:SHOWN]))

    def fault(self, validator, line):
        """The line of a payload that does not pass, or none."""
        if validator.is_valid(line["payload"]):
            return []
        error = next(validator.iter_errors(line["payload"]))
        return [f"{line['event']}: at {error.json_path}: {shown(error.instance)} is against {shown(error.schema)}"]

    def test_schema_is_one(self):
        Draft202012Validator.check_schema(Schema)

    def test_every_event_is_in_the_catalogue_and_is_called(self):
        for kind, by_event in self.lines.items():
            self.assertEqual(sorted(by_event), sorted(Events), f"events of kind {kind}, and docs/events.json")

    def test_payloads_of_the_catalogue_pass_as_their_own_events_and_as_any(self):
        faults = []
        lines = [line for by_event in self.lines["catalogue"].values() for line in by_event]
        for line in lines:
            faults += self.fault(self.own[line["event"]], line) or self.fault(self.any, line)
        faults += self.fault(self.any, {"event": "all in one array", "payload": [line["payload"] for line in lines]})
        self.expect_none(faults, "payloads of the catalogue do not pass")
        self.counts["catalogue"] = len(lines)

    def test_payloads_of_calls_pass(self):
        faults, passed = [], 0
        for event, lines in self.lines["call"].items():
            for line in lines:
                fault = self.fault(self.own[event], line)
                faults += fault
                passed += not fault
            for line in lines[:3]:
                faults += self.fault(self.any, line)
        self.expect_none(faults, "payloads of calls do not pass")
        self.counts["call"] = passed

    def test_calls_reach_every_key_that_the_host_fills(self):
        constant, absent = [], []
        for method, event in Events.items():
            payloads = [line["payload"] for line in self.lines["call"][method]]
            for key in event["keys"]:
                objects = [payload if key["place"] is None else payload[key["place"]] for payload in payloads]
                values = {place[key["key"]] for place in objects if key["key"] in place}
                if key["from"] is not None and len(values) < 2:
                    constant.append(f"{method}: {key['key']} is {values} in all calls")
                if key["unless"] is not None and all(key["key"] in place for place in objects):
                    absent.append(f"{method}: {key['key']} is in all calls")
        self.expect_none(constant, "keys have one value")
        self.expect_none(absent, "keys are never absent")

    def test_a_decimal_is_the_text_of_any_number_in_any_form(self):
        own = Draft202012Validator({"$ref": "#/$defs/decimal", "$defs": Schema["$defs"]})
        for text in ("inf", "-inf", "nan", "-nan", "0", "-0", "0.5", "1e+300", "-2.5e-05"):
            self.assertTrue(own.is_valid(text), text)

    def test_mutants_are_refused_but_for_those_that_the_host_may_send(self):
        wrong, undecided = [], []
        for event, lines in self.lines["mutant"].items():
            right = self.lines["catalogue"][event][0]["payload"]
            verdicts = Counter()
            for line in lines:
                expected = must_pass(Events[event], right, line["payload"])
                passes = self.own[event].is_valid(line["payload"])
                verdicts[passes] += 1
                if passes != expected:
                    verdict = "passes and must not" if passes else "is refused and must pass"
                    wrong.append(f"{event}, {line['what']}: {verdict}: {shown(line['payload'])}")
            self.counts.update(refused=verdicts[False], allowed=verdicts[True])
            if len(verdicts) < 2:
                undecided.append(f"{event}: {dict(verdicts)}")
        self.expect_none(wrong, "mutants are judged wrongly")
        self.expect_none(undecided, "events have no mutants of either kind")

    def test_a_mutant_passes_as_any_when_it_passes_as_some_event(self):
        wrong = []
        for event, lines in self.lines["mutant"].items():
            for line in lines[::29]:
                if self.any.is_valid(line["payload"]) != any(own.is_valid(line["payload"]) for own in self.own.values()):
                    wrong.append(f"{event}, {line['what']}: {shown(line['payload'])}")
        self.expect_none(wrong, "mutants are judged otherwise as any event's than as each event's")

    def test_a_refusal_says_what_is_wrong_with_the_event_of_that_name(self):
        payload = self.lines["catalogue"]["TrackMeshSize"][0]["payload"]
        [error] = self.any.iter_errors({**payload, "scope": "S"})
        self.assertEqual((error.json_path, error.message), ("$.scope", "'C' was expected"))

    def test_payload_of_another_event_passes_as_any_alone(self):
        methods = list(Events)
        for event, other in zip(methods, methods[1:] + methods[:1]):
            payload = self.lines["catalogue"][other][0]["payload"]
            self.assertFalse(self.own[event].is_valid(payload), f"{other}'s payload passes as {event}'s")

    def test_what_is_no_payload_is_refused(self):
        right = self.lines["catalogue"]["TrackPPR"][0]["payload"]
        for what in (None, True, 1, "text", {}, [{}], [right, None], [[right]], {**right, "scope": "S"}):
            self.assertFalse(self.any.is_valid(what), shown(what))
        for what in (right, [], [right, right], {**right, "a_further_key": None}):
            self.assertTrue(self.any.is_valid(what), shown(what))

    def test_payloads_in_an_array_may_have_their_calls_beside_them(self):
        right = self.lines["catalogue"]["TrackPPR"][0]["payload"]
        item = {"call": "TrackPPR()", "payload": right}
        self.assertTrue(self.any.is_valid([item, item]))
        for wrong in (item, [{**item, "payload": {**right, "scope": "S"}}], [{**item, "call": None}],
                      [{**item, "more": 1}], [{"payload": right}], [{"call": "TrackPPR()"}]):
            self.assertFalse(self.any.is_valid(wrong), shown(wrong))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
