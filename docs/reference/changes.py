#!/usr/bin/env python3
"""What is sent otherwise than before: the differences between two documents of events, docs/events.json.

    changes.py [--json] OLD [NEW]

Both are a file, a released version or a revision of git; NEW is docs/events.json when it is left out.
scripts/events_diff.sh runs this; its help has the rest.
"""

import json
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(os.path.abspath(__file__)).parent.parent.parent
DOCUMENT = "docs/events.json"
RELEASED = "docs/released"

# What is compared, by the members of the document: how a change of it is called, in JSON and in a line of text.
OF_EVENTS = {
    "name": ("name", "name"),
    "name_from": ("name_from", "the parameter that gives the name"),
    "type": ("type", "event type"),
    "scope": ("scope", "scope"),
    "purpose": ("purpose", "purpose"),
}
OF_KEYS = {
    "place": ("place", "place"),
    "type": ("type", "JSON type"),
    "kind": ("kind", "kind"),
    "format": ("format", "format"),
    "measured": ("measured", "measured by the library"),
    "from": ("parameter", "parameter"),
    "unless": ("unless", "absent when"),
    "sensitivity": ("sensitivity", "sensitivity"),
    "ground": ("ground", "why it is that sensitive"),
    "unit": ("unit", "unit"),
    "personal_text": ("personal_text", "may hold a person's text"),
    "no_personal_text": ("no_personal_text", "why no person's text gets in"),
}
# Fixed values that are compared as the event's own.
TOLD_BY_THE_EVENT = ("type", "scope", "component_name")


class Trouble(Exception):
    """A sentence for the user."""


def _in_words(value):
    if value is None:
        return "none"
    if isinstance(value, bool):
        return "yes" if value else "no"
    if isinstance(value, list):
        return ", ".join(value) or "none"
    if isinstance(value, dict):
        return f"{_in_words(value['key'])} is {_in_words(value['value'])}"
    return json.dumps(value, ensure_ascii=False)


def _change(change, event, key, text, place=None, what=None, old=None, new=None):
    subject = (event or "Every event") + (f": {key}" if key is not None else "")
    return {"change": change, "event": event, "key": key, "place": place, "what": what, "old": old, "new": new,
            "text": f"{subject}: {text}"}


def _changed(event, key, place, what, label, old, new):
    return _change("changed", event, key, f"{label}: {_in_words(new)}, was {_in_words(old)}", place, what, old, new)


def _parameters(signatures):
    """Of several declarations all; how they are laid out does not matter."""
    text = ", ".join(" ".join(re.sub(r"^[^(]*\(|\)[^)]*$", "", signature).split()) for signature in signatures)
    return [parameter for parameter in text.split(", ") if parameter]


def _compare_signatures(method, old, new):
    if [line.split() for line in old] == [line.split() for line in new]:
        return
    before, after = _parameters(old), _parameters(new)
    gone = [parameter for parameter in before if parameter not in after]
    come = [parameter for parameter in after if parameter not in before]
    words = (gone, come) if gone or come else (before, after)
    yield {**_changed(method, None, None, "signature", "signature", *words), "old": old, "new": new}


def _where(key):
    return "" if key["place"] is None else f" in {key['place']}"


def _compare_keys(event, old, new):
    old, new = ({key["key"]: key for key in keys} for keys in (old, new))
    for name, key in new.items():
        before = old.get(name)
        if before is None:
            yield _change("added", event, name, f"new{_where(key)}", key["place"])
            continue
        for member, (what, label) in OF_KEYS.items():
            if before[member] != key[member]:
                yield _changed(event, name, key["place"], what, label, before[member], key[member])
        fixed = before["kind"] == key["kind"] == "fixed" and (event is None or name not in TOLD_BY_THE_EVENT)
        if fixed and before["example"] != key["example"]:
            yield _changed(event, name, key["place"], "value", "value", before["example"], key["example"])
    for name, key in old.items():
        if name not in new:
            yield _change("removed", event, name, f"no longer sent{_where(key)}", key["place"])


def _events(document):
    return {event["method"]: event for group in document["groups"] for event in group["events"]}


def _compare_events(old, new):
    for method, event in new.items():
        before = old.get(method)
        if before is None:
            yield _change("added", method, None, "new event" + ("" if event["name"] is None else f" {event['name']}"))
            continue
        yield from _compare_signatures(method, before["signatures"], event["signatures"])
        for member, (what, label) in OF_EVENTS.items():
            if before[member] != event[member]:
                yield _changed(method, None, None, what, label, before[member], event[member])
        yield from _compare_keys(method, before["keys"], event["keys"])
    for method, event in old.items():
        if method not in new:
            name = "" if event["name"] is None else f" {event['name']}"
            yield _change("removed", method, None, f"event{name} is no longer sent")


def compare(old, new):
    """The differences between two documents, those of one event together. Examples of what the host gives are none."""
    return {
        "old": {"version": old["version"], "date": old["date"]},
        "new": {"version": new["version"], "date": new["date"], "unreleased": new["unreleased"]},
        "changes": [
            *_compare_keys(None, old["common"], new["common"]),
            *_compare_events(_events(old), _events(new)),
        ],
    }


def unlisted(comparison, changelog):
    """The removals and changes of which nothing stands in the changelog above the old version.

    What must stand there is the key, or the method where all of an event is concerned, between backticks.
    """
    version = comparison["old"]["version"]
    newer = []
    for line in changelog.splitlines():
        if line.startswith("## ") and line[3:].split(" ")[0] == version:
            break
        newer.append(line)
    else:
        raise Trouble(f"the changelog has no section of version {version}")
    text = "\n".join(newer)
    return [change for change in comparison["changes"]
            if change["change"] != "added" and f"`{change['key'] or change['event']}`" not in text]


def newest_release():
    """The file of the newest released version's document."""
    files = list((ROOT / RELEASED).glob("*.json"))
    if not files:
        raise Trouble(f"there is no release in {RELEASED}")
    return max(files, key=lambda file: [int(part) for part in file.stem.split(".")])


# What compare() needs of a document.
_NEEDS = {
    "version": str, "date": str, "unreleased": bool,
    "common": [{"key": str, "place": object, "example": object, **dict.fromkeys(OF_KEYS, object)}],
    "groups": [{"events": [
        {"method": str, "keys": "as common", **dict.fromkeys(OF_EVENTS, object), "signatures": [str]},
    ]}],
}
_NAMES = {str: "a text", bool: "true or false"}


def _check(value, needed, path):
    where = path or "it"
    if needed == "as common":
        needed = _NEEDS["common"]
    if isinstance(needed, dict):
        if not isinstance(value, dict):
            raise Trouble(f"{where} is not an object")
        for member, inner in needed.items():
            if member not in value:
                raise Trouble(f"{where} has no {member}")
            _check(value[member], inner, f"{path}.{member}" if path else member)
    elif isinstance(needed, list):
        if not isinstance(value, list):
            raise Trouble(f"{where} is not a list")
        for index, item in enumerate(value):
            _check(item, needed[0], f"{path}[{index}]")
    elif not isinstance(value, needed):
        raise Trouble(f"{where} is not {_NAMES[needed]}")


def parse(text, name):
    """The document in a file's bytes; `name` is what the file is called in sentences."""
    try:
        document = json.loads(text.decode("utf-8"))
    except UnicodeDecodeError as error:
        raise Trouble(f"{name} is not UTF-8 text: byte {error.start} is wrong") from error
    except json.JSONDecodeError as error:
        raise Trouble(f"{name} is not JSON: line {error.lineno}: {error.msg}") from error
    except RecursionError as error:
        raise Trouble(f"{name} is not a document of events: it is nested too deeply") from error
    try:
        _check(document, _NEEDS, "")
    except Trouble as trouble:
        raise Trouble(f"{name} is not a document of events: {trouble}") from trouble
    return document


def _git(*arguments):
    """What git prints, or None when it fails or there is none."""
    try:
        run = subprocess.run(["git", "-C", ROOT, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL, check=False)
    except OSError:
        return None
    return run.stdout if run.returncode == 0 else None


def _read(file, name):
    try:
        return parse(file.read_bytes(), name)
    except OSError as error:
        raise Trouble(f"{name} cannot be read: {error.strerror}") from error


def find(name):
    """The document that the user means by `name`: a file, a release or a revision."""
    file = Path(name)
    if name and os.path.lexists(file):
        return _read(file, name)
    release = ROOT / RELEASED / f"{name}.json"
    if "/" not in name and release.is_file():
        return _read(release, f"{RELEASED}/{name}.json")
    commit = _git("rev-parse", "--verify", "--quiet", "--end-of-options", name + "^{commit}")
    if commit is None:
        raise Trouble(f"{name or 'an empty name'} is neither a file nor a release in {RELEASED} nor a revision of git")
    text = _git("show", f"{commit.decode().strip()}:{DOCUMENT}")
    if text is None:
        raise Trouble(f"the revision {name} has no {DOCUMENT}")
    return parse(text, f"{DOCUMENT} of {name}")


def _print(text):
    try:
        sys.stdout.write(text)
        sys.stdout.flush()
    except OSError as error:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # what is left is not tried again at the exit
        raise Trouble(f"standard output cannot be written: {error.strerror}") from error


def main(arguments):
    as_json = arguments[:1] == ["--json"]
    names = arguments[as_json:]
    try:
        if not 1 <= len(names) <= 2:
            raise Trouble("takes OLD and NEW: --help says what they can be")
        old = find(names[0])
        comparison = compare(old, find(names[1]) if len(names) == 2 else _read(ROOT / DOCUMENT, DOCUMENT))
        lines = [change["text"] for change in comparison["changes"]]
        _print(json.dumps(comparison, indent=4, ensure_ascii=False) + "\n" if as_json else
               "".join(line + "\n" for line in lines))
    except Trouble as trouble:
        print(f"events_diff.sh: {trouble}", file=sys.stderr)
        return 2
    return 1 if lines else 0


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stderr.reconfigure(encoding="utf-8", errors="backslashreplace")
    sys.exit(main(sys.argv[1:]))
