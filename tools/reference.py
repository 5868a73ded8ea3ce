#!/usr/bin/python3
"""Makes the event reference: docs/events.json, from what the wrapper really sends, and the files rendered from it.

    reference.py write|check PROBE SOURCES PRODUCT VERSION

PROBE is the program event_probe, SOURCES the project's folder. "write" writes the files. "check" fails when a file is
out of date, and prints how it differs, or when CHANGELOG.md does not mention a change of what is sent.
"""

import difflib
import itertools
import json
import subprocess
import sys
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


def read_product(file):
    """The levels of a product file by their identifiers."""
    values = [{each.get("name"): each.get("value") for each in element.findall("upi_attribute")}
              for element in ElementTree.parse(file).iter("upi_element")]
    return {level["id"]: level["name"] for level in values}


def make_files(probe, sources, product, version, changelog):
    """The differences since the newest release, and the texts of all files by their names in docs/."""
    made = document.compose(
        product, version, changelog, read_methods(sources / "telemetry/CorvaneTavi.h", sources),
        read_vocabulary(sources / "telemetry/Vocabulary.h", sources), run_probe(probe),
        read_product(sources / "harness/UPI/upiconfig.xml"),
        document.read_annotations((sources / document.ANNOTATIONS).read_text(encoding="utf-8")))
    since = changes.compare(changes.newest_release(), made)
    return since, {"events.json": render.as_json(made),
                   "payloads.schema.json": render.as_json(payloads.payload_schema(made)),
                   "events.csv": render.table(made),
                   "events.md": render.markdown(made, since),
                   "events.html": render.page(made, since)}


def main():
    if len(sys.argv) != 6 or sys.argv[1] not in ("write", "check"):
        sys.exit(__doc__)
    action, probe, sources, product, version = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3]), *sys.argv[4:]
    changelog = (sources / "CHANGELOG.md").read_text(encoding="utf-8")
    try:
        since, files = make_files(probe, sources, product, version, changelog)
        unlisted = changes.unlisted(since, changelog)
    except (NotUnderstood, changes.Trouble) as error:
        sys.exit(f"The event reference cannot be made: {error}")
    found = {}
    for name, text in files.items():
        file = sources / "docs" / name
        if action == "write":
            file.write_bytes(text.encode())
        found[name] = file.read_bytes().decode() if file.exists() else ""
    stale = [name for name, text in files.items() if found[name] != text]
    complaints = [f"docs/{name} is out of date. If the change is intended, run scripts/reference.sh." for name in stale]
    if stale:
        lines = difflib.unified_diff(found[stale[0]].splitlines(), files[stale[0]].splitlines(), stale[0], "made", n=1)
        complaints += [line.rstrip()[:300] for line in itertools.islice(lines, 12)]
    if action == "check":
        complaints += [f'CHANGELOG.md does not mention under "Unreleased": {each["text"]}' for each in unlisted[:5]]
    sys.exit("\n".join(complaints) or 0)


main()
