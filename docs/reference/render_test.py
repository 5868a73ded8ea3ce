#!/usr/bin/python3
"""Renders small event references, made by hand, and reads what comes out.

    render_test.py [TEST...]
"""

import base64
import csv
import hashlib
import html.parser
import io
import json
import re
import sys
import unittest

sys.dont_write_bytecode = True
import render  # noqa: E402

HARD = 'a <b> & "c" | `d|<e>` *f* _g_ [h](i)'


def key(name="A.KEY", **others):
    return {
        "key": name, "place": "component_attributes", "type": "string", "kind": "text", "format": None,
        "measured": False, "from": "name", "unless": None, "example": "value", "sensitivity": "interaction",
        "ground": "A choice.", "unit": None, "personal_text": False, "no_personal_text": None, **others,
    }  # fmt: skip


def fixed(name, value):
    return key(name, place=None, kind="fixed", example=value, **{"from": None})


def event(method="TrackA", keys=None, **others):
    return {
        "method": method, "test": method[5:], "signatures": [f"void {method}(const std::wstring& name);"],
        "parameters": ["name"], "note": None, "purpose": "Counts.", "name": "A.EVENT", "name_from": None, "names": [], "type": "C",
        "scope": "S", "keys": [key()] if keys is None else keys, "payload": {"component_attributes": {"A.KEY": "value"}}, **others,
    }  # fmt: skip


def document(*events, **others):
    return {
        "$schema": "events.schema.json", "product": "Product", "version": "1.2.3", "date": "2020-02-29",
        "unreleased": False, "about": [{"heading": "In test mode", "text": "Nothing is uploaded."}],
        "common": [key("product", place=None, kind="product", **{"from": "release"})],
        "groups": [{"heading": "Doors, windows", "notes": ["A note."], "events": list(events or [event()])}],
        "unsent": [{"text": "A.SPARE", "example_of": None}], **others,
    }  # fmt: skip


def changes(*texts):
    entry = {"change": "added", "event": "TrackA", "key": None, "place": None, "what": None, "old": None, "new": None}
    version = {"version": "1.0.0", "date": "2019-01-01"}
    entries = [{**entry, "text": text} for text in texts]
    return {"old": version, "new": {**version, "unreleased": True}, "changes": entries}


class Page(html.parser.HTMLParser):
    """A page's elements in order, with their attributes and their text, that of those within them too."""

    EMPTY = ("meta", "link", "input", "wbr")

    def __init__(self, text):
        super().__init__()
        self.elements, self.open = [], []
        self.feed(text)
        self.close()
        assert not self.open, f"not closed: {self.open}"

    def handle_starttag(self, tag, attributes):
        element = {"tag": tag, "text": "", **dict(attributes)}
        self.elements.append(element)
        if tag not in self.EMPTY:
            self.open.append(element)

    def handle_endtag(self, tag):
        element = self.open.pop()
        assert element["tag"] == tag, f"</{tag}> closes <{element['tag']}>"

    def handle_data(self, data):
        for element in self.open:
            element["text"] += data

    def texts(self, tag, **attributes):
        return [
            re.sub(r"\s+", " ", element["text"]).strip()
            for element in self.elements
            if element["tag"] == tag and all(element.get(name) == value for name, value in attributes.items())
        ]


def page_of(text, delta=None):
    return Page(render.page(text, delta))


def cells(line):
    """Of a row of a Markdown table, as GitHub divides it."""
    return [cell.strip() for cell in re.split(r"(?<!\\)\|", line)[1:-1]]


class Markdown(unittest.TestCase):
    def row(self, **others):
        lines = render.markdown(document(event(keys=[key(**others)])), None).splitlines()
        names = cells(next(line for line in lines if line.startswith("| Key |")))
        return dict(zip(names, cells(next(line for line in lines if line.startswith("| `A.KEY`"))), strict=True))

    def test_says_of_a_key_what_the_document_says(self):
        self.assertEqual(
            self.row(personal_text=True),
            {
                "Key": "`A.KEY`", "In": "`component_attributes`", "Type": "text", "From": "`name`",
                "Sensitivity": "interaction, may hold a person's text", "Example": '`"value"`',
            },
        )  # fmt: skip

    def test_names_types_by_kind_format_and_what_is_sent(self):
        for members, expected in (
            ({"kind": "text"}, "text"),
            ({"kind": "fixed"}, "text"),
            ({"kind": "product"}, "text"),
            ({"kind": "flag"}, "flag as text"),
            ({"kind": "number", "format": "signed"}, "integer as text"),
            ({"kind": "number", "format": "unsigned", "unit": "bytes"}, "unsigned integer as text, unit: bytes"),
            ({"kind": "number", "format": "decimal", "unit": "not stated"}, "decimal as text, unit: not stated"),
            ({"kind": "number", "format": "signed", "type": "integer", "example": 5}, "integer"),
        ):
            with self.subTest(**members):
                self.assertEqual(self.row(**members)["Type"], expected)

    def test_says_where_a_value_comes_from(self):
        unless = {"place": "component_attributes", "key": "A.COUNT", "value": "0"}
        for members, expected in (
            ({"from": "zone"}, "`zone`"),
            ({"from": None, "kind": "fixed"}, "fixed"),
            ({"from": None, "kind": "number", "format": "unsigned", "measured": True}, "measured"),
            ({"from": "master", "kind": "product"}, "`master` of the product file"),
            ({"unless": unless}, '`name`; absent when `A.COUNT` is `"0"`'),
        ):
            with self.subTest(**members):
                self.assertEqual(self.row(**members)["From"], expected)

    def test_keeps_a_row_one_row_whatever_its_texts_hold(self):
        row = self.row(example="a|b`c\nd", **{"from": "x|y"})
        self.assertEqual(row["From"], r"`x\|y`")
        self.assertEqual(row["Example"], r'`` "a\|b`c\nd" ``')

    def test_shows_texts_as_they_are_and_code_between_backticks(self):
        text = render.markdown(document(event(purpose=HARD)), None)
        self.assertIn("\na \\<b> \\& \"c\" | `d|<e>` \\*f\\* \\_g\\_ \\[h\\](i)\n", text)
        lone = render.markdown(document(event(purpose="one ` alone, snake_case")), None)
        self.assertIn("\none \\` alone, snake_case\n", lone)

    def test_has_purpose_note_signatures_and_payload_below_the_methods_name(self):
        two = ["void AddDocument(int name,\n                 int size);", "void TrackA(int name);"]
        text = render.markdown(document(event(note="Its own `note`.", signatures=two)), None)
        block = text[text.index("### TrackA\n") : text.index("## In every event\n")]
        start = "### TrackA\n\nCounts.\n\nIts own `note`.\n\n```cpp\n" + "\n".join(two) + "\n```\n\nEvent `A.EVENT`, "
        self.assertEqual(block[: len(start)], start)
        payload = block[block.index("```json\n") + 8 : block.rindex("```")]
        self.assertEqual(json.loads(payload), event()["payload"])

    def test_tells_the_events_name_or_that_there_is_none_or_who_gives_it(self):
        for members, expected in (
            ({}, "\nEvent `A.EVENT`, type `C`, scope `S`.\n"),
            ({"name": None}, "\nEvent without a name, type `C`, scope `S`.\n"),
            ({"name_from": "title"}, "\nEvent named by the caller (`title`), type `C`, scope `S`.\n"),
            ({"name_from": "title", "names": ["A.EVENT", "B"]},
             "\nEvent named by the caller (`title`: `A.EVENT`, `B`), type `C`, scope `S`.\n"),
        ):
            with self.subTest(**members):
                self.assertIn(expected, render.markdown(document(event(**members)), None))

    def test_lists_each_key_with_all_that_is_said_of_it_and_its_events(self):
        events = [
            event("TrackA", [key("b"), key("Z.LAST", no_personal_text="A list's entry.")]),
            event("TrackB", [
                key("b", ground="Another.", unit="s", sensitivity="technical", **{"from": "it"}),
                key("A.FIRST"),
            ]),
            event("TrackC", [key("A.FIRST", personal_text=True)]),
        ]  # fmt: skip
        text = render.markdown(document(*events), None)
        listed = text[text.index("## Keys\n") + 9 : text.index("## Defined and not sent")].strip().splitlines()
        self.assertEqual(
            listed,
            [
                "- `A.FIRST`",
                "    - Interaction. A choice. In [TrackB](#trackb) (`name`).",
                "    - Interaction, may hold a person's text. A choice. In [TrackC](#trackc) (`name`).",
                "- `b`",
                "    - Interaction. A choice. In [TrackA](#tracka) (`name`).",
                "    - Technical. Another. Unit: s. In [TrackB](#trackb) (`it`).",
                "- `product`",
                "    - Interaction. A choice. In every event.",
                "- `Z.LAST`",
                "    - Interaction. A choice. No person's text: A list's entry. In [TrackA](#tracka) (`name`).",
            ],
        )
        listed = page_of(document(*events)).texts("li", **{"class": "line"})
        self.assertEqual(
            listed[:4],
            [
                "A.FIRST Interaction. A choice. In TrackB (name). "
                "Interaction, may hold a person's text. A choice. In TrackC (name).",
                "b Interaction. A choice. In TrackA (name). Technical. Another. Unit: s. In TrackB (it).",
                "product Interaction. A choice. In every event.",
                "Z.LAST Interaction. A choice. No person's text: A list's entry. In TrackA (name).",
            ],
        )

    def test_begins_with_product_version_date_and_what_is_said_about_it(self):
        text = render.markdown(document(), None)
        self.assertIn("\nProduct 1.2.3, 2020-02-29.\n", text)
        self.assertIn("\n**In test mode.** Nothing is uploaded.\n", text)
        text = render.markdown(document(unreleased=True), None)
        self.assertIn("\nProduct 1.2.3, 2020-02-29, with changes since that are not released.\n", text)

    def test_links_to_headings_that_are_there(self):
        text = render.markdown(document(), changes("TrackA is new."))
        headings = [re.sub(r"[^\w-]", "", line.lstrip("# ").lower().replace(" ", "-"))
                    for line in text.splitlines() if line.startswith("#")]
        links = re.findall(r"\]\(#([^)]*)\)", text)
        self.assertIn("doors-windows", links)
        self.assertIn("changes-since-100", links)
        self.assertEqual([link for link in links if link not in headings], [])

    def test_tells_what_has_changed_or_that_nothing_has(self):
        self.assertNotIn("Changes since", render.markdown(document(), None))
        about = "What has changed in what is sent since version 1.0.0 of 2019-01-01."
        nothing = render.markdown(document(), changes())
        self.assertIn(f"\n## Changes since 1.0.0\n\n{about}\n\nNothing that is sent has changed.\n\n## Doors", nothing)
        some = render.markdown(document(), changes("TrackA: `A.KEY` is new.", "TrackB <is> gone."))
        start = f"\n## Changes since 1.0.0\n\n{about}\n\n"
        self.assertIn(start + "- TrackA: `A.KEY` is new.\n- TrackB \\<is> gone.\n\n## Doors", some)
        self.assertNotIn("Nothing that is sent", some)

    def test_has_no_two_empty_lines_and_ends_with_a_line(self):
        for delta in (None, changes(), changes("A.", "B.")):
            text = render.markdown(document(event(keys=[]), event("TrackB", note="A note.")), delta)
            self.assertNotIn("\n\n\n", text)
            self.assertTrue(text.endswith("`\n"), text[-20:])


class ThePage(unittest.TestCase):
    def test_shows_texts_as_they_are_and_code_between_backticks(self):
        hard = document(
            event(purpose=HARD, note=HARD, signatures=[HARD], keys=[key(ground=HARD, example=HARD, unit=HARD)]),
            about=[{"heading": HARD, "text": HARD}],
            product=HARD,
        )
        page = page_of(hard, changes(HARD))
        plain = HARD.replace("`", "")
        self.assertEqual(page.texts("p", **{"class": "note"})[1:], [plain, plain])
        self.assertIn(plain, page.texts("li", **{"class": "line"}))
        self.assertIn(f"{HARD} 1.2.3, 2020-02-29", page.texts("p", id="version"))
        self.assertIn("d|<e>", page.texts("code"))
        self.assertEqual([element for element in page.elements if element["tag"] in ("b", "e")], [])

    def test_says_of_a_key_what_the_document_says(self):
        unless = {"place": None, "key": "A.COUNT", "value": "0"}
        full = key(
            kind="number", format="signed", unit="bytes", unless=unless, example="7", sensitivity="stored content",
            no_personal_text="A sum.",
        )  # fmt: skip
        [row] = [e for e in page_of(document(event(keys=[full]))).elements if e.get("class") == "row"]
        self.assertEqual(row["data-fits"], "number|stored content|no")
        self.assertEqual(
            row["text"].split("\n"),
            ["A.KEYin component_attributes", "integer as textunit: bytes", 'nameabsent when A.COUNT is "0"',
             "stored contentA choice. No person's text: A sum.", '"7"'],
        )  # fmt: skip
        page = page_of(document(event(keys=[key(personal_text=True)])))
        [row] = [e for e in page.elements if e.get("class") == "row"]
        self.assertEqual(row["data-fits"], "text|interaction|yes")
        self.assertIn("interaction, may hold a person's textA choice.\n", row["text"])

    def test_has_every_key_of_an_event_once(self):
        opening = [fixed("type", "C"), fixed("scope", "S"), fixed("component_type", "waypoint")]
        given = key("component_name", place=None, example="A.EVENT")
        page = page_of(document(event(keys=[*opening, given, key(), fixed("other", "x")])))
        rows = [(e["tag"], e["text"].split()[0]) for e in page.elements if e.get("class") == "row"]
        self.assertEqual(
            rows,
            [("li", "type"), ("li", "scope"), ("li", "component_type"), ("tr", "component_name"), ("tr", "A.KEYin"),
             ("tr", "other")],
        )  # fmt: skip

    def test_tells_the_events_name_or_that_there_is_none_or_who_gives_it(self):
        for members, expected in (
            ({}, "Event A.EVENT"),
            ({"name": None}, "Event without a name"),
            ({"name_from": "title", "names": ["A.EVENT", "B"]}, "Event named by the caller (title: A.EVENT, B)"),
        ):
            with self.subTest(**members):
                self.assertIn(expected, page_of(document(event(**members))).texts("p"))

    def test_shows_all_signatures(self):
        page = page_of(document(event(signatures=["void AddDocument(int a,\n  int b);", "void TrackA();"])))
        [signature] = [element for element in page.elements if element.get("class") == "signature"]
        self.assertEqual(signature["text"], "void AddDocument(int a,\n  int b);\nvoid TrackA();\n")

    def test_counts_events_and_keys_and_links_to_what_is_counted(self):
        keys = [key("a"), key("b", sensitivity="stored content"), key("c", personal_text=True)]
        page = page_of(document(event(keys=keys), event("TrackB", [key("a"), key("c", sensitivity="technical")])))
        self.assertIn("2 events with 4 keys; ", " ".join(page.texts("p")))
        rows = [re.fullmatch(r"(\D+)(\d+)", row) for row in page.texts("tr")]
        self.assertEqual(
            {row[1].strip(): int(row[2]) for row in rows if row},
            {"technical": 1, "interaction": 3, "stored content": 1, "highly sensitive": 0,
             "may hold a person's text": 1},
        )  # fmt: skip
        links = [element["href"] for element in page.elements if "=" in element.get("href", "") and element["text"]]
        self.assertEqual(
            links,
            ["#sensitivity=technical", "#sensitivity=interaction", "#sensitivity=stored+content", "#personal=yes"],
        )

    def test_tells_what_has_changed_or_that_nothing_has(self):
        self.assertNotIn("changes", [element.get("id") for element in page_of(document()).elements])
        [nothing] = page_of(document(), changes()).texts("section", id="changes")
        about = "Changes since 1.0.0 What has changed in what is sent since version 1.0.0 of 2019-01-01. "
        self.assertEqual(nothing, about + "Nothing that is sent has changed.")
        [some] = page_of(document(), changes("A is new.", "B is gone.")).texts("section", id="changes")
        self.assertEqual(some, about + "A is new. B is gone.")

    def test_holds_the_other_files_for_download(self):
        hard = document(event(purpose=HARD + ' Zürich\n"x" </p> <script>', keys=[key(ground="a,\r\nb")]))
        scripts = {e["id"]: e["text"] for e in page_of(hard).elements if e["tag"] == "script" and "id" in e}
        self.assertEqual(scripts["document"], render.as_json(hard))
        self.assertEqual(json.loads(scripts["document"]), hard)
        self.assertEqual(json.loads(scripts["table"]), render.table(hard))

    def test_refuses_texts_that_would_end_its_copy_of_the_document(self):
        for text in ("a </script> b", "a </SCRIPT b", "a <!-- b"):
            with self.subTest(text), self.assertRaisesRegex(ValueError, "^the event reference holds .*copy of it$"):
                render.page(document(event(purpose=text)), None)

    def test_allows_its_own_style_and_script_alone(self):
        page = page_of(document())
        [policy] = [e["content"] for e in page.elements if e.get("http-equiv") == "Content-Security-Policy"]
        allowed = {}
        for directive in policy.split(";"):
            name, *sources = directive.split()
            allowed[name] = sources
        [style] = [e["text"] for e in page.elements if e["tag"] == "style"]
        [script] = [e["text"] for e in page.elements if e["tag"] == "script" and "type" not in e]
        digests = [base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() for text in (style, script)]
        self.assertEqual(
            allowed,
            {"default-src": ["'none'"], "img-src": ["data:"], "style-src": [f"'sha256-{digests[0]}'"],
             "script-src": [f"'sha256-{digests[1]}'"]},
        )  # fmt: skip

    def test_has_each_identifier_once_and_no_link_to_nothing(self):
        page = page_of(document(event(), event("TrackB")), changes("A."))
        ids = [element["id"] for element in page.elements if "id" in element]
        self.assertEqual(sorted(ids), sorted(set(ids)))
        targets = [e["href"][1:] for e in page.elements if e["tag"] == "a" and e["href"].startswith("#")]
        self.assertEqual([target for target in targets if target and "=" not in target and target not in ids], [])
        self.assertTrue({"TrackB", "key-A.KEY", "Doors-windows"} <= set(targets))


class Table(unittest.TestCase):
    def test_has_a_row_for_each_key_of_each_event(self):
        unless = {"place": "component_attributes", "key": "A.COUNT", "value": "0"}
        number = key(
            "n", place=None, type="integer", kind="number", format="unsigned", measured=True, unless=unless, example=5,
            unit="ms", sensitivity="technical", personal_text=False, no_personal_text="No.", **{"from": None},
        )  # fmt: skip
        given = event(keys=[key(personal_text=True)], name_from="name", names=["A.EVENT", "B"])
        text = render.table(document(given, event("TrackB", [number], name=None)))
        self.assertEqual(
            list(csv.reader(io.StringIO(text, newline=""), strict=True)),
            [
                ["method", "event", "event type", "scope", "place", "key", "JSON type", "kind", "format", "from",
                 "absent when", "unit", "sensitivity", "ground", "may hold a person's text", "why it holds none",
                 "example", "purpose"],
                ["every event", "", "", "", "", "product", "string", "product", "", "release", "", "", "interaction",
                 "A choice.", "no", "", "value", ""],
                ["TrackA", "the caller's: A.EVENT, B", "C", "S", "component_attributes", "A.KEY", "string", "text", "", "name", "", "",
                 "interaction", "A choice.", "yes", "", "value", "Counts."],
                ["TrackB", "", "C", "S", "", "n", "integer", "number", "unsigned", "measured",
                 'component_attributes/A.COUNT is "0"', "ms", "technical", "A choice.", "no", "No.", "5", "Counts."],
            ],
        )  # fmt: skip

    def test_quotes_what_would_end_a_field_and_ends_each_row_as_rfc_4180_has_it(self):
        text = render.table(document(event(keys=[key(ground='a "b", c\nd', example="e\r\nf")])))
        self.assertIn(',"a ""b"", c\nd",', text)
        self.assertIn(',"e\r\nf",', text)
        self.assertEqual(len(re.findall(r"\r\n", text)), 4)
        self.assertTrue(text.endswith("Counts.\r\n"))


class AllOfThem(unittest.TestCase):
    def test_name_a_member_that_is_missing(self):
        for member in ("purpose", "note", "name_from", "keys"):
            lacking = event()
            del lacking[member]
            for made in (render.markdown, render.page):
                with self.subTest(member, made=made.__name__), self.assertRaisesRegex(Exception, member):
                    made(document(lacking), None)

    def test_leave_the_document_as_it_was(self):
        given = document(event(), event("TrackB"))
        before = json.dumps(given)
        render.markdown(given, changes("A."))
        render.page(given, changes("A."))
        render.table(given)
        self.assertEqual(json.dumps(given), before)


if __name__ == "__main__":
    unittest.main()
