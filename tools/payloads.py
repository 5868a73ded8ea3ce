"""The JSON Schema of the payloads of all events, made from docs/events.json.

It requires every key that the wrapper writes, with its type, and with its value where that is fixed. The objects that
hold an event's attributes may have no further members. Further keys at the top level are allowed, because the library
may add some; the edit timer, which the library writes, may be missing.
"""

DESCRIPTION = """\
One payload as the telemetry library hands it to its testing callback, or an array of them, each alone or with the call \
that sent it. Each must be that of an event of the wrapper; to test it for one event, named by its method, use that \
definition alone: "#/$defs/TrackMeshSize"."""


def _number_text(pattern, characters, description):
    # In some validators "$" also matches before a line's end, so that other characters are refused once more.
    return {"description": description, "type": "string", "pattern": pattern, "not": {"pattern": f"[^{characters}]"}}


# The texts of numbers and flags, by a number's format.
_SHARED = {
    "signed": _number_text("^(0|-?[1-9][0-9]{0,18})$", "0-9-",
                           "A signed integer of up to 64 bits as text, without leading zeros or a plus sign."),
    "unsigned": _number_text("^(0|[1-9][0-9]{0,19})$", "0-9",
                             "An unsigned integer of up to 64 bits as text, without leading zeros or a sign."),
    "decimal": _number_text(
        "^[+-]?([0-9]+([.][0-9]*)?([eE][+-]?[0-9]+)?|[.][0-9]+([eE][+-]?[0-9]+)?"
        "|[iI][nN][fF]([iI][nN][iI][tT][yY])?|[nN][aA][nN]([(][A-Za-z]*[)])?)$",
        "0-9A-Za-z.()+-",
        "A floating-point number as text, in whatever form the library's TaviString(double) has for it.",
    ),
    "flag": {"description": "A flag as text.", "enum": ["True", "False"]},
}


def _value(key):
    """The schema of one key's value."""
    if key["written_by_library"]:
        return {"type": key["type"], "minimum": 0}
    if key["kind"] == "fixed":
        return {"const": key["example"]}
    if key["kind"] == "flag":
        return {"$ref": "#/$defs/flag"}
    if key["kind"] == "number" and key["type"] == "string":
        return {"$ref": "#/$defs/" + key["format"]}
    return {"type": key["type"]}


def _object(keys, **more):
    """The schema of an object with these keys. It requires those that are in every payload."""
    return {
        "type": "object",
        "required": [key["key"] for key in keys if key["unless"] is None and not key["written_by_library"]],
        "properties": {key["key"]: _value(key) for key in keys},
        **more,
    }


def _within(place, schema):
    """The schema of a payload whose object `place` has this schema."""
    return schema if place is None else {"required": [place], "properties": {place: schema}}


def _condition(key):
    """That the key is absent while another one has a certain value, and only then."""
    unless = key["unless"]
    value = {"required": [unless["key"]], "properties": {unless["key"]: {"const": unless["value"]}}}
    present = _within(key["place"], {"required": [key["key"]]})
    return {"if": _within(unless["place"], value), "then": {"not": present}, "else": present}


def _event(event):
    schema = _object([key for key in event["keys"] if key["place"] is None])
    for place in dict.fromkeys(key["place"] for key in event["keys"] if key["place"] is not None):
        keys = [key for key in event["keys"] if key["place"] == place]
        schema["properties"][place] = _object(keys, additionalProperties=False)
        if any(key["unless"] is None for key in keys):
            schema["required"].append(place)
    conditions = [_condition(key) for key in event["keys"] if key["unless"] is not None]
    return {"title": event["method"], "description": event["purpose"], **schema,
            "allOf": [{"$ref": "#/$defs/common"}, *conditions]}


def _references(events):
    return [{"$ref": "#/$defs/" + event["method"]} for event in events]


def _any_event(events):
    """The schema of the payload of any event. A payload that is refused is compared with the event of its name, so that
    a validator says what is wrong with it; the payload of an event that the host names may have any name."""
    by_name = {}
    for event in events:
        if event["name"] is not None and event["name_from"] is None:
            by_name.setdefault(event["name"], []).append(event)
    return {
        "description": "The payload of any event.",
        "if": {"anyOf": _references(event for event in events if event["name"] is None or event["name_from"])},
        "else": {
            "if": {"required": ["component_name"]},
            "then": {
                "properties": {"component_name": {"enum": list(by_name)}},
                "allOf": [{"if": {"properties": {"component_name": {"const": name}}}, "then": _references(alike)[0]
                           if len(alike) == 1 else {"anyOf": _references(alike)}} for name, alike in by_name.items()],
            },
            "else": {"anyOf": _references(event for event in events if event["name"] is None)},
        },
    }


def payload_schema(document):
    """The schema as a value for json.dumps; `document` is that of docs/events.json."""
    events = [event for group in document["groups"] for event in group["events"]]
    definitions = {
        "payload": _any_event(events),
        "item": {
            "description": "A payload, or a payload with the call that sent it.",
            "if": {"required": ["call", "payload"]},
            "then": {
                "type": "object",
                "properties": {"call": {"type": "string"}, "payload": {"$ref": "#/$defs/payload"}},
                "additionalProperties": False,
            },
            "else": {"$ref": "#/$defs/payload"},
        },
        "common": {"description": "The host product's description, in every payload.", **_object(document["common"])},
        **_SHARED,
    }
    for event in events:
        definitions[event["method"]] = _event(event)
    return {
        "$schema": "https://json-schema.org/draft/2020-12/schema",
        "$id": f"urn:corvane:tavi:{document['version']}:payloads",
        "title": f"Payloads of {document['product']} {document['version']}",
        "description": DESCRIPTION,
        "if": {"type": "array"},
        "then": {"items": {"$ref": "#/$defs/item"}},
        "else": {"$ref": "#/$defs/payload"},
        "$defs": definitions,
    }
