#!/usr/bin/python3
"""Compares the documents and what is really sent with their JSON Schemas, by a validator that is not ours.

    schema_test.py TAVI_CHECK SOURCES
"""

import copy
import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from jsonschema import Draft202012Validator

TAVI_CHECK, DOCS = sys.argv[1], Path(sys.argv[2]) / "docs"


def read(name):
    return json.loads((DOCS / name).read_text(encoding="utf-8"))


DOCUMENT, OF_EVENTS, OF_PAYLOADS = read("events.json"), read("events.schema.json"), read("payloads.schema.json")
EVENTS = {event["method"]: event for group in DOCUMENT["groups"] for event in group["events"]}
# Right and wrong values of a key, by what the document says of it.
VALUES = {
    "text": (["", "ÄÖ\n", "7"], []),
    "product": ([""], []),
    "flag": (["True", "False"], ["true", "1", ""]),
    "signed": (["0", "-7", "9223372036854775807"], ["+7", "07", "-0", "7.0", "", "7\n", "0x7"]),
    "unsigned": (["0", "18446744073709551615"], ["-7", "07", "7.0", "", "7\n"]),
    "decimal": (["0", "-0", "7", ".5", "-2.5e-05", "1e+300", "inf", "-nan"], ["", "1,5", "e5", "7\n", "zero"]),
    "fixed": ([], ["another"]),
}


class Events(unittest.TestCase):
    def test_documents_pass(self):
        Draft202012Validator.check_schema(OF_EVENTS)
        for name in ["events.json", *(f"released/{file.name}" for file in DOCS.glob("released/*.json"))]:
            for error in Draft202012Validator(OF_EVENTS).iter_errors(read(name)):
                self.fail(f"docs/{name}, at {error.json_path}: {error.message[:300]}")

    def test_a_member_that_is_missing_unknown_or_of_another_type_is_refused(self):
        document = copy.deepcopy(DOCUMENT)
        for group in document["groups"]:  # one event with keys of all kinds
            group["events"] = [event for event in group["events"] if event["method"] == "StartTrackFileChange"]
        document["groups"] = [group for group in document["groups"] if group["events"]]
        document["unsent"] = document["unsent"][:1]
        validator = Draft202012Validator(OF_EVENTS)
        self.assertTrue(validator.is_valid(document))

        def objects_in(value):
            if isinstance(value, dict):
                yield value
            inner = value.values() if isinstance(value, dict) else value if isinstance(value, list) else []
            for item in inner:
                if item is not document["groups"][0]["events"][0]["payload"]:
                    yield from objects_in(item)

        for holder in objects_in(document):
            before = dict(holder)
            wrong = [before | {"more": "x"}, *(before | {member: 1.5} for member in before)]
            for changed in wrong + [{name: before[name] for name in before if name != member} for member in before]:
                holder.clear()
                holder.update(changed)
                self.assertFalse(validator.is_valid(document), f"passes: {changed}"[:500])
            holder.clear()
            holder.update(before)


class Payloads(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        Draft202012Validator.check_schema(OF_PAYLOADS)
        cls.any = Draft202012Validator(OF_PAYLOADS)
        cls.own = {method: Draft202012Validator({"$defs": OF_PAYLOADS["$defs"], "$ref": f"#/$defs/{method}"})
                   for method in EVENTS}

    def expect(self, method, passes, payload, what):
        self.assertEqual(self.own[method].is_valid(payload), passes, f"{method}: {what}: {payload}")

    def test_all_that_tavi_check_records_passes(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "payloads.json"
            # Its own judgement, the exit status, is for other tests.
            subprocess.run([TAVI_CHECK, "--payloads", file], check=False, stdout=subprocess.DEVNULL, timeout=100)
            items = json.loads(file.read_text(encoding="utf-8"))
        for error in self.any.iter_errors(items):
            self.fail(f"{error.json_path}: {error.message[:300]}")
        methods = [re.match(r"(?:AddDocument\(.*\), )?(\w+)\(", item["call"])[1] for item in items]
        self.assertEqual(set(methods), set(EVENTS))
        for method, item in zip(methods, items):
            self.expect(method, True, item["payload"], "is refused")
        for wrong in (items[0], [items[0] | {"more": 1}], [{"call": "TrackPPR()"}], None, {}, [items], "text"):
            self.assertFalse(self.any.is_valid(wrong), str(wrong)[:300])

    def test_each_key_must_be_there_with_a_right_value(self):
        for method, event in EVENTS.items():
            self.expect(method, True, event["payload"], "the example")
            self.expect(method, True, event["payload"] | {"more": 1}, "the library may add keys")
            for key in DOCUMENT["common"] + event["keys"]:
                payload = copy.deepcopy(event["payload"])
                place = payload if key["place"] is None else payload[key["place"]]
                name, is_integer = key["key"], key["type"] == "integer"
                del place[name]
                self.expect(method, key["written_by_library"], payload, f"no {name}")
                for value in (None, [], True, "7" if is_integer else 7):
                    place[name] = value
                    self.expect(method, False, payload, name)
                right, wrong = ([7], [-7] if key["written_by_library"] else []) if is_integer else VALUES[
                    key["format"] or key["kind"]]
                for value in right + wrong:
                    place[name] = value
                    # A list's number goes with its entries' keys: the next test has these.
                    if value != "0" or not any(other["unless"] for other in event["keys"]):
                        self.expect(method, value in right, payload, name)
                if key["place"] is not None:
                    place.update({name: event["payload"][key["place"]][name], "more": "x"})
                    self.expect(method, False, payload, f"more in {key['place']}")

    def test_a_key_is_absent_when_another_one_says_so(self):
        conditional = [(event, key) for event in EVENTS.values() for key in event["keys"] if key["unless"]]
        self.assertTrue(conditional)
        for event, key in conditional:
            empty = copy.deepcopy(event["payload"])
            empty[key["unless"]["place"]][key["unless"]["key"]] = key["unless"]["value"]
            for other in event["keys"]:
                if other["unless"] == key["unless"]:
                    del empty[other["place"]][other["key"]]
            self.expect(event["method"], True, empty, "an empty list")
            empty[key["place"]][key["key"]] = key["example"]
            self.expect(event["method"], False, empty, f"{key['key']} of an empty list")

    def test_a_payload_is_of_one_event_and_a_refusal_says_what_is_wrong_with_it(self):
        payloads = {method: event["payload"] for method, event in EVENTS.items()}
        for method, own in self.own.items():
            self.assertEqual([other for other, payload in payloads.items() if own.is_valid(payload)], [method])
        [error] = self.any.iter_errors(payloads["TrackMeshSize"] | {"scope": "S"})
        self.assertEqual((error.json_path, error.message), ("$.scope", "'C' was expected"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
