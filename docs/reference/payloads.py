"""The JSON Schema of the payloads of all events, made from docs/events.json.

Of each event it requires every key that the wrapper writes, with its type, and its value where that is fixed. The
object in which an event has its attributes is whole: a further member is refused. Further keys at the top level are
allowed, as the library may add some; the edit timer, which the library writes, may be missing.
"""

SCHEMA = "https://json-schema.org/draft/2020-12/schema"

DESCRIPTION = """\
One payload as the telemetry library hands it to its testing callback, or an array of them, each alone or with the call \
that sent it. Each must be that of an event of the wrapper; to test it for one event, named by its method, use that \
definition alone: "#/$defs/TrackMeshSize"."""


def _number_text(pattern, characters, description):
    # In some validators "$" also matches before a line's end, so that other characters are refused by themselves.
    return {"description": description, "type": "string", "pattern": pattern, "not": {"pattern": f"[^{characters}]"}}


# The texts of numbers and flags, by a number's format.
_SHARED = {
    "signed": _number_text(
        "^(0|-?[1-9][0-9]{0,18})$",
        "0-9-",
        "A signed integer of up to 64 bits as text, without leading zeros or a plus sign.",
    ),
    "unsigned": _number_text(
        "^(0|[1-9][0-9]{0,19})$",
        "0-9",
        "An unsigned integer of up to 64 bits as text, without leading zeros or a sign.",
    ),
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
    if key["measured"]:
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
        "required": [key["key"] for key in keys if key["unless"] is None and not key["measured"]],
        "properties": {key["key"]: _value(key) for key in keys},
        **more,
    }


def _within(place, schema):
    """What holds for a whole payload when `schema` holds for its object `place`."""
    return schema if place is None else {"required": [place], "properties": {place: schema}}


def _conditions(keys):
    """A condition for each value of a key whose presence makes others absent; without it they are required."""
    dependants = {}
    for key in keys:
        if key["unless"] is not None:
            unless = key["unless"]
            dependants.setdefault((unless["place"], unless["key"], unless["value"]), []).append(key)
    conditions = []
    for (place, name, value), absent in dependants.items():
        of = {}
        for key in absent:
            of.setdefault(key["place"], []).append(key["key"])
        conditions.append({
            "if": _within(place, {"required": [name], "properties": {name: {"const": value}}}),
            "then": {"allOf": [
                {"properties": {name: False for name in names}} if where is None
                else {"properties": {where: {"properties": {name: False for name in names}}}}
                for where, names in of.items()
            ]},
            "else": {"allOf": [_within(where, {"required": names}) for where, names in of.items()]},
        })
    return conditions


def _event(event):
    schema = _object([key for key in event["keys"] if key["place"] is None])
    places = {}
    for key in event["keys"]:
        if key["place"] is not None:
            places.setdefault(key["place"], []).append(key)
    for place, keys in places.items():
        schema["properties"][place] = _object(keys, additionalProperties=False)
        if any(key["unless"] is None for key in keys):
            schema["required"].append(place)
    return {
        "title": event["method"],
        "description": event["purpose"],
        **schema,
        "allOf": [{"$ref": "#/$defs/common"}, *_conditions(event["keys"])],
    }


def _references(events):
    return [{"$ref": "#/$defs/" + event["method"]} for event in events]


def _any_event(events):
    """The schema of the payload of any event. A payload that is refused is held against the event of its name, so that a
    validator says what is wrong with it; that of an event whose name the host gives may have any name."""
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
                "allOf": [
                    {"if": {"properties": {"component_name": {"const": name}}}, "then": {"anyOf": _references(alike)}
                     if len(alike) > 1 else _references(alike)[0]}
                    for name, alike in by_name.items()
                ],
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
        "$schema": SCHEMA,
        "$id": f"urn:corvane:tavi:{document['version']}:payloads",
        "title": f"Payloads of {document['product']} {document['version']}",
        "description": DESCRIPTION,
        "if": {"type": "array"},
        "then": {"items": {"$ref": "#/$defs/item"}},
        "else": {"$ref": "#/$defs/payload"},
        "$defs": definitions,
    }
