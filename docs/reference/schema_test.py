#!/usr/bin/python3
"""Tests docs/events.schema.json by a validator that is not ours: the documents pass, and broken ones are refused.

    schema_test.py DOCS
"""

import copy
import json
import sys
import unittest
from pathlib import Path

from jsonschema import Draft202012Validator

DOCS = Path(sys.argv[1])


def read(path):
    return json.loads(path.read_text(encoding="utf-8"))


Schema = read(DOCS / "events.schema.json")
Whole = read(DOCS / "events.json")


def first_key(document, fits):
    for group in document["groups"]:
        for event in group["events"]:
            for key in event["keys"]:
                if fits(key):
                    return key
    raise AssertionError("docs/events.json has no key that this test needs")


def key_of(kind):
    return lambda document: first_key(document, lambda key: key["kind"] == kind and not key["measured"])


def measured(document):
    return first_key(document, lambda key: key["measured"])


def integer(document):
    return first_key(document, lambda key: key["type"] == "integer")


def conditional(document):
    return first_key(document, lambda key: key["unless"] is not None)


def personal(document):
    return first_key(document, lambda key: key["personal_text"])


def whole(document):
    return document


def group(document):
    return document["groups"][0]


def event(document):
    return document["groups"][0]["events"][0]


def nameless(document):
    for group_of in document["groups"]:
        for found in group_of["events"]:
            if found["name"] is None:
                return found
    raise AssertionError("docs/events.json has no event without a name")


# All that has members.
HOLDERS = (
    whole,
    lambda document: document["about"][0],
    lambda document: document["common"][0],
    lambda document: document["unsent"][0],
    group,
    event,
    key_of("fixed"),
    key_of("flag"),
    key_of("number"),
    key_of("text"),
    integer,
    measured,
    lambda document: conditional(document)["unless"],
)



def in_few_events(document):
    """The document with the first event and those in which something is found: it is validated many times."""
    needed = [id(event(document)), id(nameless(document))]
    kinds = map(key_of, ("fixed", "flag", "number", "text"))
    keys = [id(find(document)) for find in (*kinds, integer, measured, conditional, personal)]
    for group_of in document["groups"]:
        needed += [id(of) for of in group_of["events"] if any(id(key) in keys for key in of["keys"])]
    groups = [{**of, "events": [e for e in of["events"] if id(e) in needed]} for of in document["groups"]]
    return {**document, "groups": [of for of in groups if of["events"]], "unsent": document["unsent"][:2]}


Document = in_few_events(Whole)

# What is broken, the member, and what is put there.
BROKEN = (
    (whole, "$schema", "other.schema.json"),
    (whole, "product", ""),
    (whole, "version", "1.0"),
    (whole, "version", 1),
    (whole, "date", "21.11.2026"),
    (whole, "unreleased", "yes"),
    (whole, "about", "text"),
    (whole, "about", [{"heading": "In test mode"}]),
    (whole, "about", [{"heading": "In test mode", "text": "Nothing is uploaded.", "more": ""}]),
    (whole, "common", {}),
    (whole, "groups", []),
    (whole, "unsent", ["CV.COMMAND_FIRED"]),
    (whole, "unsent", [{"text": "CV.COMMAND_FIRED"}]),
    (whole, "unsent", [{"text": "CV.COMMAND_FIRED", "example_of": 1}]),
    (group, "heading", None),
    (group, "notes", None),
    (group, "notes", [" "]),
    (group, "events", []),
    (event, "method", "Track Report"),
    (event, "test", None),
    (event, "signatures", []),
    (event, "signatures", ["TrackReport"]),
    (event, "parameters", None),
    (event, "parameters", ["name", "name"]),
    (event, "parameters", ["std::wstring name"]),
    (event, "test", "Report.2"),
    (nameless, "name_from", "componentName"),
    (event, "note", ""),
    (event, "purpose", None),
    (event, "purpose", " "),
    (event, "name", 1),
    (event, "name_from", ""),
    (event, "names", ["CV.REPORT"]),
    (event, "type", "component"),
    (event, "scope", None),
    (event, "keys", []),
    (event, "payload", {}),
    (event, "payload", {"type": "C", "scope": "C", "component_attributes": {"CV.REPORT_NAME": 1}}),
    (event, "payload", {"type": "C", "scope": "C", "component_attributes": {}}),
    (event, "payload", {"type": "C", "scope": "C", "component_attributes": []}),
    (key_of("text"), "key", ""),
    (key_of("text"), "place", "attributes"),
    (key_of("text"), "type", "integer"),
    (key_of("text"), "kind", "words"),
    (key_of("text"), "format", "signed"),
    (key_of("text"), "measured", True),
    (key_of("text"), "from", None),
    (key_of("text"), "from", "a parameter"),
    (key_of("text"), "unless", "absent"),
    (key_of("text"), "example", 1),
    (key_of("text"), "sensitivity", "secret"),
    (key_of("text"), "ground", ""),
    (key_of("text"), "unit", "bytes"),
    (key_of("text"), "personal_text", "no"),
    (personal, "personal_text", False),
    (personal, "no_personal_text", "It is a code."),
    (key_of("number"), "format", None),
    (key_of("number"), "format", "hexadecimal"),
    (key_of("number"), "from", None),
    (key_of("number"), "unit", ""),
    (key_of("number"), "personal_text", True),
    (key_of("number"), "no_personal_text", "It is a number."),
    (key_of("flag"), "example", "Yes"),
    (key_of("flag"), "unit", "flags"),
    (key_of("flag"), "measured", True),
    (key_of("flag"), "type", "integer"),
    (key_of("fixed"), "kind", "constant"),
    (key_of("fixed"), "type", "boolean"),
    (key_of("fixed"), "measured", True),
    (key_of("fixed"), "from", "name"),
    (key_of("fixed"), "personal_text", True),
    (measured, "from", "name"),
    (integer, "example", "4042"),
    (integer, "format", "decimal"),
    (conditional, "unless", {"key": "COMMON.ZEPH_NB_TOOL_COUNT", "value": "0"}),
    (conditional, "unless", {"place": "nowhere", "key": "COMMON.ZEPH_NB_TOOL_COUNT", "value": "0"}),
    (lambda document: document["common"][0], "place", "component_attributes"),
    (lambda document: document["common"][0], "from", None),
)

# The same of several members.
BROKEN_TOGETHER = (
    (key_of("text"), {"type": "integer", "example": 1}),
    (personal, {"personal_text": False, "no_personal_text": ""}),
)


class SchemaTest(unittest.TestCase):
    def setUp(self):
        self.validator = Draft202012Validator(Schema)

    def test_schemas_are_schemas(self):
        for name in ("events.schema.json", "payloads.schema.json"):
            Draft202012Validator.check_schema(read(DOCS / name))

    def test_documents_pass(self):
        for path in [DOCS / "events.json", *sorted((DOCS / "released").glob("*.json"))]:
            with self.subTest(path.name):
                for error in self.validator.iter_errors(read(path)):
                    self.fail(f"{path.name}, at {error.json_path}: {error.message[:300]}")

    def refuse(self, document, what):
        self.assertFalse(self.validator.is_valid(document), f"This passes: {what}")

    def test_what_is_no_such_document_is_refused(self):
        self.assertTrue(self.validator.is_valid(Document))
        for other in (None, [], {}, "text", Document["groups"]):
            self.refuse(other, repr(other)[:200])

    def test_broken_members_are_refused(self):
        for find, members in (*((find, {member: value}) for find, member, value in BROKEN), *BROKEN_TOGETHER):
            document = copy.deepcopy(Document)
            holder = find(document)
            for member, value in members.items():
                self.assertNotEqual(holder[member], value, f"{member} is as in docs/events.json")
            holder.update(members)
            self.refuse(document, json.dumps(members))

    def test_values_of_other_types_are_refused(self):
        for find in HOLDERS:
            for member in find(Document):
                for value in ([1], {"more": 1}, 1.5):
                    document = copy.deepcopy(Document)
                    find(document)[member] = value
                    self.refuse(document, f"{member}: {json.dumps(value)}")

    def test_missing_and_further_members_are_refused(self):
        for find in HOLDERS:
            for member in find(Document):
                document = copy.deepcopy(Document)
                del find(document)[member]
                self.refuse(document, f"a document without {member}")
            document = copy.deepcopy(Document)
            find(document)["more"] = None
            self.refuse(document, "a document with a member more")

    def test_every_member_is_described(self):
        undescribed = []

        def walk(schema, path):
            if isinstance(schema, list):
                for index, item in enumerate(schema):
                    walk(item, f"{path}/{index}")
            elif isinstance(schema, dict):
                for key, value in schema.items():
                    if key in ("properties", "$defs") and "additionalProperties" in schema:
                        undescribed.extend(f"{path}/{key}/{name}" for name, member in value.items()
                                           if "description" not in member)
                    walk(value, f"{path}/{key}")

        walk(Schema, "")
        self.assertEqual(undescribed, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
