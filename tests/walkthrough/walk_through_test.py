"""Carries out CONTRIBUTING.md's walk-through in a copy of the project: its diffs, then its commands.

    walk_through_test.py PROJECT
"""

import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

# What the commands write; each other file is as the diffs leave it.
WRITTEN = {
    "docs/events.csv",
    "docs/events.html",
    "docs/events.json",
    "docs/events.md",
    "docs/payloads.schema.json",
    "tests/data/good_run.txt",
}


def contents(project):
    files = (path for path in project.rglob("*") if path.is_file() and "build" not in path.relative_to(project).parts)
    return {path.relative_to(project).as_posix(): path.read_bytes() for path in files}


def apply(diff, project):
    name, *lines = diff.splitlines()
    before = "".join(line[1:] + "\n" for line in lines if line[0] != "+")
    after = "".join(line[1:] + "\n" for line in lines)
    text = (project / name).read_text("utf-8")
    if after not in text:  # else it is done in the project itself
        if text.count(before) != 1:
            sys.exit(f"{name} has these lines {text.count(before)} times, not once:\n{before}")
        (project / name).write_text(text.replace(before, after), "utf-8")


source = Path(sys.argv[1])
page = (source / "CONTRIBUTING.md").read_text("utf-8")
section = page.split("\n## A new reporting method", 1)[1].split("\n## ", 1)[0]
diffs = re.findall(r"```diff\n--- (.*?)```", section, re.DOTALL)
commands = re.findall(r"^    (scripts/.+)$", section, re.MULTILINE)
if len(commands) != 3 or not diffs:
    sys.exit(f"CONTRIBUTING.md has {len(diffs)} diffs, and these commands: {commands}")

with tempfile.TemporaryDirectory() as folder:
    project = Path(folder, "project")
    shutil.copytree(source, project, ignore=lambda path, names: {"build", ".git"} if path == str(source) else set())
    for diff in diffs:
        apply(diff, project)
    edited = contents(project)
    for command in commands:
        run = subprocess.run(command.split(), cwd=project, stdin=subprocess.DEVNULL, capture_output=True, text=True)
        if run.returncode != 0:
            sys.exit(f"{command} ended with {run.returncode}:\n{run.stdout}{run.stderr}")
        if command == "scripts/run.sh" and "\nTesting MeshRepair\nPASSED\n" not in run.stdout:
            sys.exit(f"{command} does not test the new method:\n{run.stdout}")
    written = contents(project)
    changed = {name for name in {**edited, **written} if edited.get(name) != written.get(name)}
    if changed != WRITTEN:
        sys.exit(f"The commands change {sorted(changed)}, not {sorted(WRITTEN)}")
    for name in sorted(WRITTEN):
        if b"MeshRepair" not in written[name]:
            sys.exit(f"{name} lacks the new method")
