"""Composes the document docs/events.json from the payloads of the prober's calls, the wrapper's header, the changelog's
entry of the version, and what people wrote of the events and keys (docs/annotations.json)."""

import json
import re
from pathlib import Path
from typing import NamedTuple

import jsonschema

from header import PREPARING, NotUnderstood

ANNOTATIONS = "docs/annotations.json"
SCHEMA = json.loads((Path(__file__).parent.parent / "docs/events.schema.json").read_text(encoding="utf-8"))
# The four levels, each with its definition.
SENSITIVITIES = {level["const"]: level["description"]
                 for level in SCHEMA["$defs"]["key"]["properties"]["sensitivity"]["oneOf"]}
# The library's edit timer never stops: its example is always this.
EDIT_TIMER, EXAMPLE_OF_THE_EDIT_TIMER = "document_editing_length_ms", 90000
# These keys distinguish the events. They are never common keys, even where all events have the same value.
DISTINGUISHING = ("type", "scope", "component_type", "component_name")


class Leaf(NamedTuple):
    """A member of the payload that is no object, or a member of one that is."""

    place: str  # the key of the object; None for the payload itself
    key: str


def leaves_of(payload):
    """The values by leaf, in the payload's order."""
    leaves = {}
    for key, value in payload.items():
        if isinstance(value, dict):
            leaves |= {Leaf(key, member): text for member, text in value.items()}
        else:
            leaves[Leaf(None, key)] = value
    return leaves


class Origin(NamedTuple):
    parameter: int
    sample: str  # the kind of the samples that change the value


def origins_of(method):
    """The origins of the values that an argument changes, by leaf."""
    base = leaves_of(method["calls"][0]["payload"])
    origins = {}
    for call in method["calls"][1:]:
        if call["sample"] == "empty":
            continue
        sent, origin = leaves_of(call["payload"]), Origin(call["parameter"], call["sample"])
        if set(sent) != set(base):
            raise NotUnderstood(f"{method['name']} sends other keys when parameter {origin.parameter + 1} changes: "
                                + ", ".join(sorted(leaf.key for leaf in set(sent) ^ set(base))))
        for leaf in base:
            if sent[leaf] != base[leaf] and leaf.key != EDIT_TIMER and origins.setdefault(leaf, origin) != origin:
                known = origins[leaf]
                raise NotUnderstood(f"{method['name']} makes {leaf.key} of more than one thing: parameter "
                                    f"{known.parameter + 1} ({known.sample}) and parameter {origin.parameter + 1} "
                                    f"({origin.sample})")
    return origins


def condition_of(leaf, method, origins):
    """The key for a list's number of entries, and its value when the key `leaf` is left out; None if it never is."""
    for call in method["calls"][1:]:
        sent = leaves_of(call["payload"])
        if call["sample"] != "empty" or leaf in sent:
            continue
        counts = [other for other, origin in origins.items()
                  if origin == Origin(call["parameter"], "number") and other in sent]
        if len(counts) != 1:
            raise NotUnderstood(f"{method['name']} leaves out {leaf.key}, and no number shows when")
        return {"place": counts[0].place, "key": counts[0].key, "value": sent[counts[0]]}
    return None


def described(leaf, value, **others):
    """A key that is fixed, except for what `others` say."""
    return {"key": leaf.key, "place": leaf.place, "type": "integer" if isinstance(value, int) else "string",
            "kind": "fixed", "format": None, "written_by_library": False, "from": None, "unless": None,
            "example": value} | others


def describe_key(leaf, value, method, origins, parameters):
    if isinstance(value, bool) or not isinstance(value, (int, str)):
        raise NotUnderstood(f"{method['name']} sends {leaf.key} as {json.dumps(value)}: neither a text nor an integer")
    key = described(leaf, value, unless=condition_of(leaf, method, origins))
    if leaf.key == EDIT_TIMER:
        return key | {"kind": "number", "format": "unsigned", "written_by_library": True,
                      "example": EXAMPLE_OF_THE_EDIT_TIMER}
    if leaf not in origins:
        return key
    parameter, sample = origins[leaf]
    key |= {"kind": "number" if sample == "decimal" else sample, "from": parameters[parameter]}
    if sample == "number":
        values = [str(leaves_of(call["payload"]).get(leaf, "")) for call in method["calls"]]
        key["format"] = "signed" if any(text.startswith("-") for text in values) else "unsigned"
    elif sample == "decimal":
        key["format"] = "decimal"
    return key


def common_leaves(methods):
    """The leaves that every event has with the same value, whatever is reported."""
    payloads = [leaves_of(call["payload"]).items() for method in methods for call in method["calls"]]
    everywhere = set(payloads[0]).intersection(*payloads)
    return {leaf: value for leaf, value in payloads[0] if (leaf, value) in everywhere and leaf.key not in DISTINGUISHING}


def check_names(declarations, methods):
    """Ends unless the prober has each declared method once, and no other."""
    declared = {declaration.name for declaration in declarations} - {PREPARING}
    probed = [method["name"] for method in methods]
    for name in sorted(declared.union(probed)):
        if name not in declared or probed.count(name) != 1:
            raise NotUnderstood(f"{name} has {probed.count(name)} lines in check/ReportingMethods.cpp and "
                                f"{int(name in declared)} declarations: there must be one of each")


def describe_event(declaration, declarations, methods, common):
    method = next(method for method in methods if method["name"] == declaration.name)
    giver = next(other for other in declarations if other.name == method["takes_parameters_of"])
    payload = method["calls"][0]["payload"]
    if EDIT_TIMER in payload:
        payload = payload | {EDIT_TIMER: EXAMPLE_OF_THE_EDIT_TIMER}
    origins = origins_of(method)
    keys = [describe_key(leaf, value, method, origins, giver.parameters)
            for leaf, value in leaves_of(payload).items() if leaf not in common]
    name = next((key for key in keys if key["key"] == "component_name"), {})
    callers = [declaration] if giver is declaration else [giver, declaration]
    parameters = list(dict.fromkeys(parameter for caller in callers for parameter in caller.parameters))
    return {"method": declaration.name, "test": declaration.name.removeprefix("Track"),
            "signatures": [caller.signature for caller in callers], "parameters": parameters,
            "note": declaration.note or None, "purpose": None, "name": name.get("example"),
            "name_from": name.get("from"), "names": method["names"], "type": payload["type"],
            "scope": payload["scope"], "keys": keys, "payload": payload}


def describe_groups(declarations, methods, common):
    groups = {}
    for declaration in declarations:
        group = groups.setdefault(declaration.heading, {"heading": declaration.heading, "notes": [], "events": []})
        if declaration.group_note and declaration.group_note not in group["notes"]:
            group["notes"].append(declaration.group_note)
        if declaration.name != PREPARING:
            group["events"].append(describe_event(declaration, declarations, methods, common))
    return list(groups.values())


def unsent_texts(vocabulary, events):
    sent = {key["key"] for event in events for key in event["keys"]}
    sent |= {event["name"] for event in events if event["name_from"] is None}
    given = {name: event["method"] for event in events for name in event["names"]}
    return [{"text": text, "example_of": given.get(text)} for text in vocabulary if text not in sent]


def read_changelog(text, version):
    """The version's date, and whether anything is listed under "Unreleased"."""
    date = re.search(rf"^## {re.escape(version)} - (\d{{4}}-\d\d-\d\d)$", text, re.MULTILINE)
    if date is None:
        raise NotUnderstood(f'CHANGELOG.md has no line "## {version} - " with a date.')
    unreleased = re.search(r"^## Unreleased$(.*?)^## ", text, re.MULTILINE | re.DOTALL)
    return date[1], unreleased is not None and "\n- " in unreleased[1]


def read_annotations(text):
    def refuse_twice(pairs):
        names = [name for name, _ in pairs]
        for name in names:
            if names.count(name) > 1:
                raise NotUnderstood(f"{ANNOTATIONS}: {name} occurs twice in one object.")
        return dict(pairs)

    try:
        return json.loads(text, object_pairs_hook=refuse_twice)
    except json.JSONDecodeError as error:
        raise NotUnderstood(f"{ANNOTATIONS}:{error.lineno}: {error.msg}") from error


def annotations_schema(events, keys):
    """The JSON Schema of docs/annotations.json, with an entry for each event and each key in `keys`."""
    text = {"type": "string", "pattern": r"\S"}
    sentence = {"type": "string", "pattern": r"^\S(.|\n)*\.$"}
    question = {"type": "string", "pattern": r"\?"}
    date = {"type": "string", "pattern": r"^\d{4}-\d\d-\d\d$", "format": "date"}
    of_event = {"purpose": sentence, "owner": text, "reviewed": date, "wanted_until": date}

    def object_of(members, optional=()):
        return {"type": "object", "properties": members, "additionalProperties": False,
                "required": [name for name in members if name not in optional]}

    def entry(name):
        kinds = {key["kind"] for key in keys if key["key"] == name}
        return object_of({"sensitivity": {"enum": list(SENSITIVITIES)}, "reason": sentence}
                         | ({"unit": text} if "number" in kinds else {})
                         | ({"no_personal_text": sentence} if "text" in kinds else {}), ["no_personal_text"])

    return object_of({
        "about": {"type": "array", "items": object_of({"heading": text, "text": text})},
        "ask": {"type": "array", "items": object_of({"whom": text, "questions": {"type": "array", "items": question}})},
        "events": object_of({event["method"]: object_of(of_event, list(of_event)[1:]) for event in events}),
        "keys": object_of({key["key"]: entry(key["key"]) for key in keys}),
    })


def check_annotations(annotations, events, keys):
    """Ends unless there is exactly one right entry for each event and for each key."""
    validator = jsonschema.Draft202012Validator
    errors = validator(annotations_schema(events, keys), format_checker=validator.FORMAT_CHECKER).iter_errors(annotations)
    wrong = [f"{ANNOTATIONS}: {', '.join(map(str, error.absolute_path))}: {error.message}" for error in errors]
    if wrong:
        raise NotUnderstood("\n".join([*wrong, f"Mend {ANNOTATIONS}, then run scripts/reference.sh."]))


def annotate(key, entry):
    is_text = key["kind"] == "text"
    return key | {"sensitivity": entry["sensitivity"], "reason": entry["reason"],
                  "unit": entry["unit"] if key["kind"] == "number" else None,
                  "personal_text": is_text and "no_personal_text" not in entry,
                  "no_personal_text": entry.get("no_personal_text") if is_text else None}


def compose(product, version, changelog, declarations, vocabulary, methods, levels, annotations):
    """The document. `methods` is what event_probe prints, `levels` the product file's levels by their identifiers."""
    check_names(declarations, methods)
    date, unreleased = read_changelog(changelog, version)
    common = common_leaves(methods)
    common_keys = [described(leaf, value, **({"kind": "product", "from": levels[value]} if value in levels else {}))
                   for leaf, value in common.items()]
    groups = describe_groups(declarations, methods, common)
    events = [event for group in groups for event in group["events"]]
    check_annotations(annotations, events, common_keys + [key for event in events for key in event["keys"]])

    entries = annotations["keys"]
    for event in events:
        event |= annotations["events"][event["method"]]
        event["keys"] = [annotate(key, entries[key["key"]]) for key in event["keys"]]
    return {"$schema": "events.schema.json", "product": product, "version": version, "date": date,
            "unreleased": unreleased, "about": annotations["about"], "ask": annotations["ask"],
            "common": [annotate(key, entries[key["key"]]) for key in common_keys],
            "groups": groups, "unsent": unsent_texts(vocabulary, events)}
