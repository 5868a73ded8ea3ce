"""The event reference, docs/events.json, as Markdown, as a page and as a table.

Each function takes the document as json.loads() gives it and returns a file's text. `changes` is what differs from the
newest released reference, or None. Nothing is read but the templates. Jinja is Debian's python3-jinja2.
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

TEMPLATES = Path(__file__).parent / "templates"

# Texts have code between backticks.
INTRODUCTION = (
    "What each reporting method of `CorvaneTavi` sends. The payloads are those of calls with made-up values, in the "
    "library's test mode with our stand-in. A value's type is that of the argument it comes from, "
    '"as text" where it is sent as a string: flags as "True" and "False". "From" names the parameter. "Fixed" is the '
    'same in every such event, what is "measured" comes from the telemetry library, and the product file is '
    "`UPI/upiconfig.xml`."
)
ABOUT_COMMON_KEYS = "The host product's description."
ABOUT_UNSENT_TEXTS = (
    "Names and keys of the vocabulary that no method sends of itself: other parts of the host have them, or a caller "
    "gives them."
)
ABOUT_CHANGES = "What has changed in what is sent since version {version} of {date}."
NOTHING_CHANGED = "Nothing that is sent has changed."

SENSITIVITIES = ("technical", "interaction", "stored content", "highly sensitive")
KINDS = {
    "text": "the host's text",
    "number": "number",
    "flag": "flag",
    "product": "from the product file",
    "fixed": "fixed",
}
NUMBERS = {"signed": "integer", "unsigned": "unsigned integer", "decimal": "decimal"}

# What an event begins with. Mostly fixed, and then said in a line and not in the table of keys.
OPENING_KEYS = ("type", "scope", "component_type", "component_name")

# What may differ between two events that have a key in common.
MEANING = (
    "place", "type", "kind", "format", "measured", "sensitivity", "ground", "unit", "personal_text", "no_personal_text",
)  # fmt: skip

TAKEN_AS_THEY_ARE = ("product", "version", "date", "unreleased", "about", "common", "groups", "unsent")

COLUMNS = (
    "method", "event", "event type", "scope", "place", "key", "JSON type", "kind", "format", "from", "absent when",
    "unit", "sensitivity", "ground", "may hold a person's text", "why it holds none", "example", "purpose",
)  # fmt: skip


def markdown(document, changes):
    environment = _environment("md")
    return environment.get_template("events.md.jinja").render(_names(document, changes))


def page(document, changes):
    """One file that holds the other two as well, for download, and whose policy lets a browser load nothing else."""
    names = _names(document, changes)
    names["as_json"] = as_json(document)
    for mark in ("</script", "<!--"):
        if mark in names["as_json"].lower():
            raise ValueError(f'the event reference holds "{mark}", which would end or change the page\'s copy of it')
    # As a JSON string, as a page would change the ends of its lines.
    names["as_table"] = json.dumps(table(document)).replace("<", "\\u003c")
    for name, file in (("style", "events.css"), ("script", "events.js")):
        names[name] = (TEMPLATES / file).read_text(encoding="utf-8")
        digest = hashlib.sha256(names[name].encode()).digest()
        names[f"{name}_digest"] = "sha256-" + base64.b64encode(digest).decode()
    return _environment("html").get_template("events.html.jinja").render(names)


def table(document):
    """CSV, a row for each key of each event. Its lines end as RFC 4180 has it: to be written without changing them."""
    text = io.StringIO()
    rows = csv.writer(text, lineterminator="\r\n")
    rows.writerow(COLUMNS)
    nothing = dict.fromkeys(("name", "name_from", "type", "scope", "purpose"))
    for key in document["common"]:
        rows.writerow(_row({"method": "every event", **nothing}, key))
    for event in _events(document):
        for key in event["keys"]:
            rows.writerow(_row(event, key))
    return text.getvalue()


def as_json(document):
    """The document's own file: the page offers this text."""
    return json.dumps(document, indent=4, ensure_ascii=False) + "\n"


def _row(event, key):
    unless = key["unless"]
    return [
        event["method"], _as_name(event), event["type"], event["scope"], key["place"], key["key"], key["type"],
        key["kind"], key["format"], "measured" if key["measured"] else key["from"],
        unless and f"{_path(unless)} is {_as_value(unless['value'])}", key["unit"], key["sensitivity"], key["ground"],
        "yes" if key["personal_text"] else "no", key["no_personal_text"], key["example"], event["purpose"],
    ]  # fmt: skip


def _path(key):
    return f"{key['place']}/{key['key']}" if key["place"] else key["key"]


def _events(document):
    return [event for group in document["groups"] for event in group["events"]]


def _keys(document):
    """Every key, by the alphabet, with its meanings; each of these with the methods that send it and from what."""
    occurrences = [("", key) for key in document["common"]]
    occurrences += [(event["method"], key) for event in _events(document) for key in event["keys"]]
    keys = {}
    for method, key in occurrences:
        meaning = tuple(key[name] for name in MEANING)
        senders = keys.setdefault(key["key"], {}).setdefault(meaning, {**key, "senders": []})["senders"]
        senders.append((method, key["from"]))
    everywhere = ([""], [event["method"] for event in _events(document)])
    for meanings in keys.values():
        for meaning in meanings.values():
            meaning["in_every_event"] = [method for method, _ in meaning["senders"]] in everywhere
    return [(key, list(keys[key].values())) for key in sorted(keys, key=lambda key: (key.lower(), key))]


def _counts(keys):
    """What is counted, how many keys that is, and the search on the page that shows them."""

    def count(name, value):
        return sum(any(meaning[name] == value for meaning in meanings) for _, meanings in keys)

    counts = [(name, count("sensitivity", name), urlencode({"sensitivity": name})) for name in SENSITIVITIES]
    return [*counts, ("may hold a person's text", count("personal_text", True), urlencode({"personal": "yes"}))]


def _names(document, changes):
    """What a template knows."""
    keys = _keys(document)
    return {
        **{name: document[name] for name in TAKEN_AS_THEY_ARE},
        "introduction": INTRODUCTION,
        "about_common": ABOUT_COMMON_KEYS,
        "about_unsent": ABOUT_UNSENT_TEXTS,
        "nothing_changed": NOTHING_CHANGED,
        "event_count": len(_events(document)),
        "keys": keys,
        "counts": _counts(keys),
        "changes": changes,
        "changes_heading": changes and "Changes since {version}".format(**changes["old"]),
        "about_changes": changes and ABOUT_CHANGES.format(**changes["old"]),
        "kinds": KINDS,
        "sensitivities": SENSITIVITIES,
    }


def _is_opening(key):
    return key["place"] is None and key["kind"] == "fixed" and key["key"] in OPENING_KEYS


def _as_type(key):
    if key["kind"] == "flag":
        return "flag as text"
    if key["kind"] != "number":
        return "text"
    return NUMBERS[key["format"]] + (" as text" if key["type"] == "string" else "")


def _as_name(event):
    return event["name"] if event["name_from"] is None else "the caller's: " + ", ".join(event["names"])


def _as_value(value):
    return json.dumps(value, ensure_ascii=False)


def _as_payload(payload):
    return json.dumps(payload, indent=4, ensure_ascii=False)


def _fits(key):
    """What the page's filters look at."""
    return "|".join((key["kind"], key["sensitivity"], "yes" if key["personal_text"] else "no"))


def _parts(text):
    """The text's parts, each with whether it is code."""
    return [
        (part[1:-1], True) if part.startswith("`") and part.endswith("`") and len(part) > 2 else (part, False)
        for part in re.split(r"(`[^`]+`)", str(text))
        if part
    ]


def _markdown_code(text):
    fence = "`" * (max(map(len, re.findall("`+", text)), default=0) + 1)
    space = " " if "`" in text else ""
    return f"{fence}{space}{text}{space}{fence}"


def _markdown_prose(text):
    def plain(part):
        return re.sub(r"([\\`*\[\]<&]|(?<![A-Za-z0-9])_|_(?![A-Za-z0-9]))", r"\\\1", part)

    return "".join(_markdown_code(part) if is_code else plain(part) for part, is_code in _parts(text))


def _markdown_cell(text):
    return re.sub(r"\s*\n\s*", " ", text).replace("|", r"\|")


def _markdown_anchor(heading):
    return re.sub(r"[^\w-]", "", heading.lower().replace(" ", "-"))


def _html_code(text):
    return Markup("<code>{}</code>").format(text)


def _html_key(text):
    """A key, which a narrow column may divide after its dots and underscores."""
    return Markup("<code>{}</code>").format(Markup(re.sub(r"([._])", r"\1<wbr>", str(escape(text)))))


def _html_prose(text):
    return Markup("").join(_html_code(part) if is_code else escape(part) for part, is_code in _parts(text))


def _html_id(heading):
    return re.sub(r"[^A-Za-z0-9]+", "-", heading).strip("-")


def _environment(kind):
    environment = jinja2.Environment(
        loader=jinja2.FileSystemLoader(TEMPLATES),
        undefined=jinja2.StrictUndefined,
        autoescape=kind == "html",
        trim_blocks=True,
        lstrip_blocks=True,
        keep_trailing_newline=True,
    )
    environment.filters.update(as_type=_as_type, as_value=_as_value, as_payload=_as_payload, fits=_fits)
    environment.tests["opening"] = _is_opening
    if kind == "html":
        environment.filters.update(code=_html_code, as_key=_html_key, prose=_html_prose, anchor=_html_id)
    else:
        environment.filters.update(
            code=_markdown_code, prose=_markdown_prose, anchor=_markdown_anchor, cell=_markdown_cell
        )
    return environment
