"""Composes the document docs/events.json: what the wrapper was seen to send, beside what its header declares, what the
changelog says of the version, and what people know of the events and keys (docs/annotations.json)."""

import json
import re
from dataclasses import dataclass

from header import PREPARING, NotUnderstood

SENSITIVITIES = ("technical", "interaction", "stored content", "highly sensitive")
NOT_STATED = "not stated"
# The library's edit timer runs on: its example is always this.
EDIT_TIMER, EXAMPLE_OF_THE_EDIT_TIMER = "document_editing_length_ms", 90000
# Tell events apart, and so are never common to all, not even where all are alike.
TELLING = ("type", "scope", "component_type", "component_name")


@dataclass(frozen=True)
class Leaf:
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


@dataclass
class Origin:
    parameter: int
    sample: str


def origins_of(method):
    """By leaf, the parameter and the kind of sample that change it."""
    base = leaves_of(method["calls"][0]["payload"])
    origins = {}
    for call in method["calls"][1:]:
        sent = leaves_of(call["payload"])
        if set(sent) != set(base) and call["sample"] != "empty":
            raise NotUnderstood(f"{method['name']} sends other keys when parameter {call['parameter'] + 1} changes: "
                                + ", ".join(sorted(leaf.key for leaf in set(sent) ^ set(base))))
        for leaf in base:
            if leaf in sent and sent[leaf] != base[leaf] and leaf.key != EDIT_TIMER and call["sample"] != "empty":
                origin = origins.setdefault(leaf, Origin(call["parameter"], call["sample"]))
                if origin != Origin(call["parameter"], call["sample"]):
                    raise NotUnderstood(f"{method['name']} makes {leaf.key} of more than one thing: parameter "
                                        f"{origin.parameter + 1} ({origin.sample}) and parameter "
                                        f"{call['parameter'] + 1} ({call['sample']})")
    return origins


def condition_of(leaf, method, origins):
    """What a key that an empty list leaves out goes by: the number that the list has then; None for a key that is always
    sent."""
    for call in method["calls"][1:]:
        sent = leaves_of(call["payload"])
        if call["sample"] != "empty" or leaf in sent:
            continue
        counts = [other for other, origin in origins.items()
                  if origin == Origin(call["parameter"], "number") and other in sent]
        if len(counts) != 1:
            raise NotUnderstood(f"{method['name']} leaves out {leaf.key}, and no number tells when")
        return {"place": counts[0].place, "key": counts[0].key, "value": sent[counts[0]]}
    return None


def is_negative_for_some(leaf, method):
    return any(str(leaves_of(call["payload"]).get(leaf, "")).startswith("-") for call in method["calls"])


def describe_key(leaf, value, method, origins, parameters):
    origin = origins.get(leaf)
    key = {"key": leaf.key, "place": leaf.place, "type": "integer" if isinstance(value, int) else "string",
           "kind": "fixed", "format": None, "measured": False, "from": None,
           "unless": condition_of(leaf, method, origins), "example": value}
    if isinstance(value, bool) or not isinstance(value, (int, str)):
        raise NotUnderstood(f"{method['name']} sends {leaf.key} as {json.dumps(value)}: neither a text nor an integer")
    if leaf.key == EDIT_TIMER:
        key |= {"kind": "number", "format": "unsigned", "measured": True, "example": EXAMPLE_OF_THE_EDIT_TIMER}
    elif origin is not None:
        key["from"] = parameters[origin.parameter]
        key["kind"] = "number" if origin.sample == "decimal" else origin.sample
        if origin.sample == "decimal":
            key["format"] = "decimal"
        elif origin.sample == "number":
            key["format"] = "signed" if is_negative_for_some(leaf, method) else "unsigned"
    return key


def product_keys(methods, others):
    """The keys that come from the product file, each with the level that it shows. `others` was seen with a product
    file whose values are the names of its levels."""
    every = None
    for method, other in zip(methods, others):
        for call, same in zip(method["calls"], other["calls"]):
            here, there = leaves_of(call["payload"]), leaves_of(same["payload"])
            changed = {leaf: there[leaf] for leaf in here if here[leaf] != there.get(leaf) and leaf.key != EDIT_TIMER}
            if every is None:
                every = changed
            elif every != changed:
                raise NotUnderstood(f"{method['name']} sends other values of the product file than the methods before")
    return every


def common_leaves(methods):
    """What every event has with the same value, whatever is reported."""
    everywhere = None
    for method in methods:
        for call in method["calls"]:
            leaves = set(leaves_of(call["payload"]).items())
            everywhere = leaves if everywhere is None else everywhere & leaves
    first = leaves_of(methods[0]["calls"][0]["payload"])
    return {leaf: value for leaf, value in first.items() if (leaf, value) in everywhere and leaf.key not in TELLING}


def check_names(declarations, methods):
    """Ends unless the prober has each declared method once, and no other."""
    declared = {declaration.name for declaration in declarations} - {PREPARING}
    probed = [method["name"] for method in methods]
    for name in sorted(declared.union(probed)):
        if name not in probed:
            raise NotUnderstood(f"{name} is declared and has no line in check/ReportingMethods.cpp")
        if name not in declared:
            raise NotUnderstood(f"{name} has a line in check/ReportingMethods.cpp and is not declared")
        if probed.count(name) > 1:
            raise NotUnderstood(f"{name} has {probed.count(name)} lines in check/ReportingMethods.cpp")


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
            "note": declaration.note or None, "name": name.get("example"), "name_from": name.get("from"),
            "names": method["names"], "type": payload["type"], "scope": payload["scope"], "keys": keys,
            "payload": payload}


def describe_groups(declarations, methods, common):
    groups = []
    for declaration in declarations:
        if not groups or groups[-1]["heading"] != declaration.heading:
            groups.append({"heading": declaration.heading, "notes": [], "events": []})
        group = groups[-1]
        if declaration.group_note and declaration.group_note not in group["notes"]:
            group["notes"].append(declaration.group_note)
        if declaration.name != PREPARING:
            group["events"].append(describe_event(declaration, declarations, methods, common))
    return groups


def unsent_texts(vocabulary, groups):
    events = [event for group in groups for event in group["events"]]
    sent = {key["key"] for event in events for key in event["keys"]}
    sent |= {event["name"] for event in events if event["name_from"] is None}
    given = {name: event["method"] for event in events for name in event["names"]}
    return [{"text": text, "example_of": given.get(text)} for text in vocabulary if text not in sent]


def read_changelog(text, version):
    """The version's date, and whether anything stands under "Unreleased"."""
    date = re.search(rf"^## {re.escape(version)} - (\d{{4}}-\d\d-\d\d)$", text, re.MULTILINE)
    if date is None:
        raise NotUnderstood(f'CHANGELOG.md has no line "## {version} - " with a date.')
    unreleased = re.search(r"^## Unreleased$(.*?)^## ", text, re.MULTILINE | re.DOTALL)
    return date[1], unreleased is not None and "\n- " in unreleased[1]


def read_annotations(text, file):
    try:
        return json.loads(text, object_pairs_hook=lambda pairs: refuse_twice(pairs, file))
    except json.JSONDecodeError as error:
        raise NotUnderstood(f"{file}:{error.lineno}: {error.msg}") from error


def refuse_twice(pairs, file):
    names = [name for name, _ in pairs]
    for name in names:
        if names.count(name) > 1:
            raise NotUnderstood(f"{file}: {name} stands twice in one object.")
    return dict(pairs)


def is_sentence(value):
    return isinstance(value, str) and value.strip() == value and value.endswith(".")


def check_entry(entry, keys):
    """What is wrong with the annotation of `keys`, which have the same name in different events; sentences."""
    if not isinstance(entry, dict):
        return ["is no object."]
    wrong = [f'has a member "{name}" that means nothing: there are sensitivity, ground, unit, no_personal_text.'
             for name in entry if name not in ("sensitivity", "ground", "unit", "no_personal_text")]
    if entry.get("sensitivity") not in SENSITIVITIES:
        wrong.append(f"has the sensitivity {json.dumps(entry.get('sensitivity'))}: it must be one of "
                     + ", ".join(SENSITIVITIES) + ".")
    if not is_sentence(entry.get("ground")):
        wrong.append('has no "ground", a sentence that says why it has this sensitivity.')
    is_number = any(key["kind"] == "number" for key in keys)
    if is_number and not (isinstance(entry.get("unit"), str) and entry["unit"].strip()):
        wrong.append(f'is a number and has no "unit"; where it is not known, "{NOT_STATED}".')
    if not is_number and "unit" in entry:
        wrong.append('has a "unit" and is no number.')
    is_text = any(key["kind"] == "text" for key in keys)
    if "no_personal_text" in entry and not is_text:
        wrong.append('says "no_personal_text" and is fed by no text.')
    elif "no_personal_text" in entry and not is_sentence(entry["no_personal_text"]):
        wrong.append('has no sentence as "no_personal_text", which says why no person\'s text can get into it.')
    return wrong


def check_annotations(annotations, groups, common, file):
    """Ends unless there is exactly one right entry for each event and for each key."""
    wrong = []
    if not isinstance(annotations, dict) or any(not isinstance(annotations.get(name), kind) for name, kind in
                                                (("about", list), ("events", dict), ("keys", dict))):
        raise NotUnderstood(f'{file}: there must be "about", a list, and "events" and "keys", two objects.')
    wrong += [f"{name} is no part of it: there are about, events, keys."
              for name in annotations if name not in ("about", "events", "keys")]
    wrong += ['an entry of "about" is not a heading and a text.' for entry in annotations["about"]
              if not isinstance(entry, dict) or set(entry) != {"heading", "text"}
              or not all(isinstance(text, str) and text for text in entry.values())]
    events = [event for group in groups for event in group["events"]]
    for event in events:
        if event["method"] not in annotations["events"]:
            wrong.append(f"the event {event['method']} has no entry.")
        elif not is_sentence(annotations["events"][event["method"]]):
            wrong.append(f"the event {event['method']} has no sentence that says its purpose.")
    methods = {event["method"] for event in events}
    wrong += [f"the event {name} has an entry and is not sent." for name in annotations["events"] if name not in methods]

    keys = {}
    for key in common + [key for event in events for key in event["keys"]]:
        keys.setdefault(key["key"], []).append(key)
    for name, alike in keys.items():
        if name not in annotations["keys"]:
            wrong.append(f"the key {name} has no entry.")
        else:
            wrong += [f"the key {name} {what}" for what in check_entry(annotations["keys"][name], alike)]
    wrong += [f"the key {name} has an entry and is not sent." for name in annotations["keys"] if name not in keys]
    if wrong:
        raise NotUnderstood("\n".join(f"{file}: {what}" for what in wrong))


def annotate(key, entry):
    is_text = key["kind"] == "text"
    return key | {"sensitivity": entry["sensitivity"], "ground": entry["ground"],
                  "unit": entry["unit"] if key["kind"] == "number" else None,
                  "personal_text": is_text and "no_personal_text" not in entry,
                  "no_personal_text": entry.get("no_personal_text") if is_text else None}


def compose(product, version, changelog, declarations, vocabulary, methods, others, annotations, annotations_file):
    """The document. `methods` and `others` are what event_probe prints with the product file, and with one whose values
    are the names of its levels."""
    check_names(declarations, methods)
    date, unreleased = read_changelog(changelog, version)
    shown = product_keys(methods, others)
    common = common_leaves(methods)
    for leaf in shown:
        if leaf not in common:
            raise NotUnderstood(f"{leaf.key} comes from the product file, and not every event has it")
    groups = describe_groups(declarations, methods, common)
    common_keys = [{"key": leaf.key, "place": leaf.place, "type": "integer" if isinstance(value, int) else "string",
                    "kind": "product" if leaf in shown else "fixed", "format": None, "measured": False,
                    "from": shown.get(leaf), "unless": None, "example": value} for leaf, value in common.items()]
    check_annotations(annotations, groups, common_keys, annotations_file)

    entries = annotations["keys"]
    for group in groups:
        for event in group["events"]:
            event["keys"] = [annotate(key, entries[key["key"]]) for key in event["keys"]]
            event["purpose"] = annotations["events"][event["method"]]
    order = ("method", "test", "signatures", "parameters", "note", "purpose", "name", "name_from", "names", "type",
             "scope", "keys", "payload")
    for group in groups:
        group["events"] = [{name: event[name] for name in order} for event in group["events"]]
    return {"$schema": "events.schema.json", "product": product, "version": version, "date": date,
            "unreleased": unreleased, "about": annotations["about"],
            "common": [annotate(key, entries[key["key"]]) for key in common_keys],
            "groups": groups, "unsent": unsent_texts(vocabulary, groups)}
