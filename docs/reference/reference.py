#!/usr/bin/python3
"""Makes the event reference: docs/events.json, of what the wrapper was seen to send, and all that is rendered from it.

    reference.py write|check PROBE SOURCES PRODUCT VERSION

PROBE is the program event_probe, SOURCES the project's folder. "write" writes the files; "check" says of each that is out of
date what differs first, and fails when one is.
"""

import json
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path
from xml.etree import ElementTree

import changes
import document
import payloads
import render
from header import NotUnderstood, read_methods, read_vocabulary


def run_probe(probe):
    run = subprocess.run([probe], capture_output=True, text=True, encoding="utf-8", check=False)
    if run.returncode != 0:
        raise NotUnderstood(run.stderr.strip() or f"{probe} ends with {run.returncode}")
    return json.loads(run.stdout)


def run_probe_with_other_product(probe, product_file):
    """With a product file in which each level's identifier is the level's name."""
    # As deep as the probe's own folder, so that the copy finds its library.
    with tempfile.TemporaryDirectory(dir=probe.resolve().parent.parent) as folder:
        copy = Path(folder) / probe.name
        shutil.copy2(probe, copy)
        tree = ElementTree.parse(product_file)
        for element in tree.iter("upi_element"):
            values = {attribute.get("name"): attribute for attribute in element.findall("upi_attribute")}
            values["id"].set("value", values["name"].get("value"))
        (Path(folder) / "UPI").mkdir()
        tree.write(Path(folder) / "UPI/upiconfig.xml", encoding="utf-8", xml_declaration=True)
        return run_probe(copy)


def make_files(probe, sources, product, version):
    """The texts of all files, by their names in docs/."""
    docs = sources / "docs"
    header, annotations = sources / "telemetry/CorvaneTavi.h", docs / "annotations.json"
    made = document.compose(
        product, version, (sources / "CHANGELOG.md").read_text(encoding="utf-8"), read_methods(header, sources),
        read_vocabulary(sources / "telemetry/Vocabulary.h", sources), run_probe(probe),
        run_probe_with_other_product(probe, sources / "harness/UPI/upiconfig.xml"),
        document.read_annotations(annotations.read_text(encoding="utf-8"), "docs/annotations.json"),
        "docs/annotations.json")
    released = json.loads(changes.newest_release().read_text(encoding="utf-8"))
    since = changes.compare(released, made)
    return {"events.json": render.as_json(made),
            "payloads.schema.json": render.as_json(payloads.payload_schema(made)),
            "events.csv": render.table(made),
            "events.md": render.markdown(made, since),
            "events.html": render.page(made, since)}


def first_difference(expected, found):
    """The line in which two texts differ first, as both have it."""
    lines = [text.splitlines() + ["(no more lines)"] for text in (expected, found)]
    for number, (one, other) in enumerate(zip(*lines), 1):
        if one != other:
            return f"line {number}\nexpected: {one[:300]}\nfound:    {other[:300]}"
    return "line ends"


def check(files, docs):
    """Says what is out of date, and returns whether nothing is."""
    good = True
    for name, text in files.items():
        found = (docs / name).read_bytes().decode() if (docs / name).exists() else ""
        if found == text:
            continue
        good = False
        print(f"docs/{name} is out of date. Where the change is meant, run scripts/reference.sh.\n"
              + first_difference(text, found), file=sys.stderr)
    return good


def main():
    if len(sys.argv) != 6 or sys.argv[1] not in ("write", "check"):
        sys.exit(__doc__)
    action, probe, sources, product, version = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3]), *sys.argv[4:]
    try:
        files = make_files(probe, sources, product, version)
    except NotUnderstood as error:
        sys.exit(f"The event reference cannot be made: {error}")
    if action == "check":
        sys.exit(0 if check(files, sources / "docs") else 1)
    for name, text in files.items():
        (sources / "docs" / name).write_bytes(text.encode())


main()
