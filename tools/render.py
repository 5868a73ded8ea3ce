"""The event reference, docs/events.json, as Markdown, as a page and as a table.

Each function takes the document as json.loads() gives it and returns a file's text. `changes` are the differences from
the newest released reference.
"""

import base64
import csv
import hashlib
import io
import json
import re
from pathlib import Path
from urllib.parse import urlencode

import jinja2
from markupsafe import Markup, escape

from changes import of_what_is_sent
from document import SENSITIVITIES, DISTINGUISHING

TEMPLATES = Path(__file__).parent / "templates"

# Texts have code between backticks.
TEXTS = {
    "introduction": (
        "The events that the reporting methods of `CorvaneTavi` send. The payloads are those of calls with made-up "
        "values, in the library's test mode with our stand-in. A value's type is that of the argument it comes from, "
        '"as text" where it is sent as a string: flags as "True" and "False". "From" names the parameter. A "fixed" '
        'value is the same in every such event, one that is "written by the library" was written by the stand-in, '
        "and the product file is `UPI/upiconfig.xml`."
    ),
    "about_common": (
        "The host product's description. The wrapper gives it to the library once, at start-up; that each event has it was "
        "seen with our stand-in. Its texts are those of the product file, which are not checked."
    ),
    "about_unsent": (
        "Names and keys of the vocabulary that no method sends unless a caller gives them. Other parts of the host may "
        "send them."
    ),
    "nothing_changed": "Nothing that is sent has changed.",
    "about_sensitivity": (
        "A key's level follows from what the names of the key and of its parameter say. The levels are listed from low to "
        "high; where the names leave a doubt, it is the higher one. A text that can be a file's name is taken to have "
        "folders. Beside its level, each key states whether what a person wrote can get into the value: such a text can "
        "hold anything."
    ),
    "about_letters": "Only the telemetry library's maker knows what the letters of `type` and `scope` mean.",
    "about_ask": (
        "The telemetry library is closed, and the host gives the values. What the wrapper and its tests cannot show is asked "
        "here:"
    ),
}

KINDS = {
    "text": "the host's text",
    "number": "number",
    "flag": "flag",
    "product": "from the product file",
    "fixed": "fixed",
}
NUMBERS = {"signed": "integer", "unsigned": "unsigned integer", "decimal": "decimal"}
WRITTEN_BY_LIBRARY = "written by the library"

# Members that may differ between two events with a key that means the same in both.
OF_THE_EVENT = ("from", "unless", "example")

COLUMNS = (
    "method", "event", "event type", "scope", "place", "key", "JSON type", "kind", "format", "from", "absent when",
    "unit", "sensitivity", "reason", "may hold a person's text", "why it holds none", "example", "purpose",
    "owner", "last review", "wanted until",
)  # fmt: skip


def markdown(document, changes):
    return _render("events.md.jinja", OF_MARKDOWN, _names(document, changes))


def page(document, changes):
    """One file that also holds the document and the table for download. Its policy lets a browser load nothing else."""
    names = _names(document, changes) | {"document": document, "table": table(document)}
    for name, file in (("style", "events.css"), ("script", "events.js")):
        names[name] = (TEMPLATES / file).read_text(encoding="utf-8")
        digest = hashlib.sha256(names[name].encode()).digest()
        names[f"{name}_digest"] = "sha256-" + base64.b64encode(digest).decode()
    return _render("events.html.jinja", OF_HTML, names)


def table(document):
    """CSV, a row for each key of each event. Its lines end as RFC 4180 has it: to be written without changing them."""
    text = io.StringIO()
    rows = csv.writer(text, lineterminator="\r\n")
    rows.writerow(COLUMNS)
    every = {"method": "every event", "keys": document["common"]}
    for event in [every, *_events(document)]:
        rows.writerows(_row(event, key) for key in event["keys"])
    return text.getvalue()


def as_json(document):
    """The text of docs/events.json."""
    return _as_value(document, 4) + "\n"


def _row(event, key):
    unless = key["unless"]
    name = "the caller's: " + ", ".join(event["names"]) if event.get("name_from") else event.get("name")
    return [
        event["method"], name, event.get("type"), event.get("scope"), key["place"], key["key"], key["type"],
        key["kind"], key["format"], WRITTEN_BY_LIBRARY if key["written_by_library"] else key["from"],
        unless and f"{unless['place'] or ''}/{unless['key']} is {_as_value(unless['value'])}", key["unit"],
        key["sensitivity"], key["reason"], "yes" if key["personal_text"] else "no", key["no_personal_text"],
        key["example"], event.get("purpose"), event.get("owner"), event.get("reviewed"), event.get("wanted_until"),
    ]  # fmt: skip


def _events(document):
    return [event for group in document["groups"] for event in group["events"]]


def _keys(document):
    """Every key, in alphabetical order, with its meanings; each of these with the methods that send it and from what."""
    keys = {}
    for event in [{"method": "", "keys": document["common"]}, *_events(document)]:
        for key in event["keys"]:
            meaning = tuple(value for name, value in key.items() if name not in OF_THE_EVENT)
            found = keys.setdefault(key["key"], {}).setdefault(meaning, {**key, "senders": []})
            found["senders"].append((event["method"], key["from"]))
            found["in_every_event"] = event["method"] == "" or len(found["senders"]) == len(_events(document))
    return [(key, list(keys[key].values())) for key in sorted(keys, key=lambda key: (key.lower(), key))]


def _counts(keys):
    """The levels of sensitivity and what may hold a person's text: what each means, how many keys it has, and the search
    on the page that shows them."""
    counted = [(name, meaning, "sensitivity", name, {"sensitivity": name}) for name, meaning in SENSITIVITIES.items()]
    counted.append(("may hold a person's text", "Of any level: what a person wrote can get into the value.",
                    "personal_text", True, {"personal": "yes"}))
    return [(what, meaning, sum(any(each[name] == value for each in meanings) for _, meanings in keys), urlencode(search))
            for what, meaning, name, value, search in counted]


def _letters(events):
    """The pairs of type and scope, each with its methods; the pair of most events last."""
    pairs = {}
    for event in events:
        pairs.setdefault((event["type"], event["scope"]), []).append(event["method"])
    return sorted(pairs.items(), key=lambda pair: len(pair[1]))


def _names(document, changes):
    """The variables of a template."""
    keys, events, old = _keys(document), _events(document), changes["old"]["version"]
    owned, reviewed, limited = (
        sum(what in event for event in events) for what in ("owner", "reviewed", "wanted_until"))
    return {
        **document,
        **TEXTS,
        "changes_heading": f"Changes since {old}",
        "about_changes": f"Listed is what has changed since version {old} of {changes['old']['date']} in what is sent and in how "
                         f"sensitive it is judged. `scripts/events_diff.sh {old}` also prints changes of wording.",
        "about_review": f"Of {len(events)} events, {owned} have a named owner, {reviewed} the date of a review, and {limited} "
                        "a date until which they are wanted; what is missing, nobody has given. `scripts/events_diff.sh` "
                        "lists the events whose date has passed.",
        "event_count": len(events),
        "letters": _letters(events),
        "keys": keys,
        "counts": _counts(keys),
        "changes": changes | {"changes": of_what_is_sent(changes)},
        "kinds": KINDS,
        "sensitivities": {name: name for name in SENSITIVITIES},
        "written_by_library": WRITTEN_BY_LIBRARY,
    }


def _ownership(event):
    return (f"Owner: {event.get('owner', 'not named')}; last review: {event.get('reviewed', 'none recorded')}; wanted until: "
            f"{event.get('wanted_until', 'no date set')}.")


def _is_opening(key):
    """Shown in a line above the table of keys."""
    return key["place"] is None and key["kind"] == "fixed" and key["key"] in DISTINGUISHING


def _as_type(key):
    if key["kind"] == "flag":
        return "flag as text"
    if key["kind"] != "number":
        return "text"
    return NUMBERS[key["format"]] + (" as text" if key["type"] == "string" else "")


def _as_value(value, indent=None):
    return json.dumps(value, indent=indent, ensure_ascii=False)


def _fits(key):
    """The values that the page's filters look at."""
    return "|".join((key["kind"], key["sensitivity"], "yes" if key["personal_text"] else "no"))


def _parts(text, plain, code):
    """The text's parts, by the function for plain text and by that for what is between backticks."""
    return [(code if number % 2 else plain)(part) for number, part in enumerate(re.split("`([^`]+)`", text))]


def _markdown_prose(text):
    def plain(part):
        return re.sub(r"([\\`*\[\]<&]|(?<![A-Za-z0-9])_|_(?![A-Za-z0-9]))", r"\\\1", part)

    return "".join(_parts(text, plain, "`{}`".format))


def _html_key(text):
    """A key, which a narrow column may divide after its dots and underscores."""
    return Markup("<code>{}</code>").format(Markup(re.sub(r"([._])", r"\1<wbr>", str(escape(text)))))


def _html_prose(text):
    return Markup("").join(_parts(text, escape, Markup("<code>{}</code>").format))


OF_MARKDOWN = {
    "code": "`{}`".format,
    "cell": lambda text: text.replace("|", r"\|"),
    "prose": _markdown_prose,
    "anchor": lambda heading: re.sub(r"[^\w-]", "", heading.lower().replace(" ", "-")),
}
OF_HTML = {
    "code": Markup("<code>{}</code>").format,
    "as_key": _html_key,
    "prose": _html_prose,
    "anchor": lambda heading: re.sub(r"[^A-Za-z0-9]+", "-", heading).strip("-"),
}


def _render(template, filters, names):
    environment = jinja2.Environment(
        loader=jinja2.FileSystemLoader(TEMPLATES),
        undefined=jinja2.StrictUndefined,
        autoescape=filters is OF_HTML,
        trim_blocks=True,
        lstrip_blocks=True,
        keep_trailing_newline=True,
    )
    environment.policies["json.dumps_kwargs"] = {"ensure_ascii": False}
    environment.filters.update(filters, as_type=_as_type, as_value=_as_value, fits=_fits, ownership=_ownership)
    environment.tests["opening"] = _is_opening
    return environment.get_template(template).render(names)
