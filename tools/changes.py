#!/usr/bin/env python3
"""Prints how two documents of events, such as docs/events.json, differ in what is sent.

    changes.py [--json] [--date DAY] OLD [NEW]

scripts/events_diff.sh runs this; its help has the rest.
"""

import argparse
import datetime
import json
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(os.path.abspath(__file__)).parent.parent
DOCUMENT = "docs/events.json"
RELEASED = "docs/released"

# The members of the document that are compared, with what a change of them is called in JSON and in a line of text.
OF_EVENTS = {
    "name": ("name", "name"),
    "name_from": ("name_from", "the parameter that gives the name"),
    "type": ("type", "event type"),
    "scope": ("scope", "scope"),
    "purpose": ("purpose", "purpose"),
    "owner": ("owner", "owner"),
    "reviewed": ("reviewed", "last review"),
    "wanted_until": ("wanted_until", "wanted until"),
}
OF_KEYS = {
    "place": ("place", "place"),
    "type": ("type", "JSON type"),
    "kind": ("kind", "kind"),
    "format": ("format", "format"),
    "written_by_library": ("written_by_library", "written by the library"),
    "from": ("parameter", "parameter"),
    "unless": ("unless", "absent when"),
    "sensitivity": ("sensitivity", "sensitivity"),
    "reason": ("reason", "why it is that sensitive"),
    "unit": ("unit", "unit"),
    "personal_text": ("personal_text", "may hold a person's text"),
    "no_personal_text": ("no_personal_text", "why no person's text gets in"),
}
# What people say of an event or a key. A change of it does not change what is sent, nor how sensitive that is.
SAID = ("purpose", "owner", "reviewed", "wanted_until", "reason", "no_personal_text")
# Keys whose fixed values are compared as members of the event.
TOLD_BY_THE_EVENT = ("type", "scope", "component_name")


class Trouble(Exception):
    """A fault in what the user named, as a sentence."""


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
    text = ", ".join(" ".join(re.sub(r"^[^(]*\(|\)[^)]*$", "", signature).split()) for signature in signatures)
    return [parameter for parameter in text.split(", ") if parameter]


def _compare_signatures(method, old, new):
    before, after = _parameters(old), _parameters(new)
    if before != after:
        gone = [parameter for parameter in before if parameter not in after]
        come = [parameter for parameter in after if parameter not in before]
        words = (gone, come) if gone or come else (before, after)
        yield _changed(method, None, None, "signature", "signature", *words) | {"old": old, "new": new}


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


def _named(event):
    return "event" if event["name"] is None else f"event {event['name']}"


def _compare_events(old, new):
    for method, event in new.items():
        before = old.get(method)
        if before is None:
            yield _change("added", method, None, f"new {_named(event)}")
            continue
        yield from _compare_signatures(method, before["signatures"], event["signatures"])
        for member, (what, label) in OF_EVENTS.items():
            if before.get(member) != event.get(member):
                yield _changed(method, None, None, what, label, before.get(member), event.get(member))
        yield from _compare_keys(method, before["keys"], event["keys"])
    for method, event in old.items():
        if method not in new:
            yield _change("removed", method, None, f"{_named(event)} is no longer sent")


def compare(old, new):
    """The differences between two documents, those of one event together. The host's own values are not compared."""
    return {
        "old": {"version": old["version"], "date": old["date"]},
        "new": {"version": new["version"], "date": new["date"], "unreleased": new["unreleased"]},
        "changes": [
            *_compare_keys(None, old["common"], new["common"]),
            *_compare_events(_events(old), _events(new)),
        ],
    }


def passed(document, day):
    """The events that are not wanted any more on `day`, a datetime.date."""
    return [{"event": method, "wanted_until": event["wanted_until"], "owner": event.get("owner")}
            for method, event in _events(document).items() if (event.get("wanted_until") or "9999-12-31") < day.isoformat()]


def of_what_is_sent(comparison):
    return [change for change in comparison["changes"] if change["what"] not in SAID]


def unlisted(comparison, changelog):
    """The removals and changes of what is sent that the changelog does not mention above the old version: by the key,
    or by the method where a whole event is concerned, between backticks."""
    newer, heading, _ = changelog.partition(f"\n## {comparison['old']['version']} ")
    if not heading:
        raise Trouble(f"CHANGELOG.md has no section of version {comparison['old']['version']}")
    return [change for change in of_what_is_sent(comparison)
            if change["change"] != "added" and f"`{change['key'] or change['event']}`" not in newer]


def newest_release():
    """The newest released version's document."""
    file = max((ROOT / RELEASED).glob("*.json"), key=lambda file: [int(part) for part in file.stem.split(".")])
    return parse(file.read_bytes(), f"{RELEASED}/{file.name}")


def parse(text, name):
    """The document in a file's bytes. Sentences call the file `name`."""
    try:
        document = json.loads(text)
        compare(document, document), passed(document, datetime.date.min)  # reads all that is needed of it
    except ValueError as error:
        raise Trouble(f"{name} is not JSON: {error}") from error
    except KeyError as error:
        raise Trouble(f"{name} is not a document of events in the present form: it has no {error}") from error
    except (AttributeError, RecursionError, TypeError) as error:
        raise Trouble(f"{name} is not a document of events") from error
    return document


def find(name):
    """The document that the user means by `name`: a file, a release or a revision of git."""
    for file in (Path(name), ROOT / RELEASED / f"{name}.json"):
        if name and os.path.lexists(file):
            try:
                return parse(file.read_bytes(), file)
            except OSError as error:
                raise Trouble(f"{file} cannot be read: {error.strerror}") from error
    try:
        text = subprocess.run(["git", "-C", ROOT, "show", "--end-of-options", f"{name or '?'}:{DOCUMENT}"],
                              stdin=subprocess.DEVNULL, capture_output=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError) as error:
        places = f"a file nor a release in {RELEASED} nor a revision of git that has {DOCUMENT}"
        raise Trouble(f'"{name}" is neither {places}') from error
    return parse(text, f"{DOCUMENT} of {name}")


def main(arguments):
    try:
        new = find(arguments.new)
        comparison = compare(find(arguments.old), new) | {
            "date": arguments.date.isoformat(), "passed": passed(new, arguments.date)}
        lines = [json.dumps(comparison, indent=4, ensure_ascii=False)] if arguments.json else [
            *(change["text"] for change in comparison["changes"]),
            *(f"{event['event']}: wanted until {event['wanted_until']}, which has passed; owner: "
              f"{event['owner'] or 'not named'}" for event in comparison["passed"])]
        print("".join(line + "\n" for line in lines), end="", flush=True)
    except Trouble as trouble:
        print(f"events_diff.sh: {trouble}", file=sys.stderr)
        return 2
    except OSError as error:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # the exit does not try again to write the rest
        print(f"events_diff.sh: standard output cannot be written: {error.strerror}", file=sys.stderr)
        return 2
    return 1 if comparison["changes"] else 0


def parse_arguments():
    def day(text):
        return datetime.datetime.strptime(text, "%Y-%m-%d").date()

    parser = argparse.ArgumentParser(prog="events_diff.sh", add_help=False, allow_abbrev=False)
    parser.add_argument("--json", action="store_true")
    parser.add_argument("--date", type=day, default=datetime.date.today(), metavar="DAY")
    parser.add_argument("old", metavar="OLD")
    parser.add_argument("new", metavar="NEW", nargs="?", default=str(ROOT / DOCUMENT))
    return parser.parse_intermixed_args()


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stderr.reconfigure(encoding="utf-8", errors="backslashreplace")
    sys.exit(main(parse_arguments()))
