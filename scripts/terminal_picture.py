#!/usr/bin/python3
"""Draws what a terminal showed: the command, and what it printed without the middle of its tests.

    terminal_picture.py COMMAND FILE <OUTPUT

FILE is the picture, SVG; OUTPUT what the command printed. Drawn with Rich, Debian's python3-rich.
"""

import sys
from pathlib import Path

TESTS_AT_THE_START, TESTS_AT_THE_END = 3, 1
LINES_OF_A_TEST = 3  # an empty one, title, verdict
TITLE = "Testing "
COLUMNS = 72

# Rich's own layout, without fonts from the network.
LAYOUT = """\
<svg class="rich-terminal" viewBox="0 0 {width} {height}" xmlns="http://www.w3.org/2000/svg" role="img">
<title>A run of the test program in a terminal</title>
<style>
.{unique_id}-matrix {{ font: {char_height}px/{line_height}px ui-monospace, "DejaVu Sans Mono", Consolas, monospace; }}
.{unique_id}-title {{ font: bold 18px sans-serif; }}
{styles}
</style>
<defs>
<clipPath id="{unique_id}-clip-terminal"><rect width="{terminal_width}" height="{terminal_height}"/></clipPath>
{lines}
</defs>
{chrome}
<g transform="translate({terminal_x}, {terminal_y})" clip-path="url(#{unique_id}-clip-terminal)">
{backgrounds}
<g id="screen" class="{unique_id}-matrix">
{matrix}
</g>
</g>
</svg>
"""


def shortened(lines):
    """The lines, with one in place of the tests in the middle."""
    titles = [number for number, line in enumerate(lines) if line.startswith(TITLE)]
    omitted = titles[TESTS_AT_THE_START:-TESTS_AT_THE_END]
    if not omitted:
        return lines
    start, end = omitted[0] - 1, titles[-TESTS_AT_THE_END] - 1
    middle = lines[start:end]
    if len(middle) != LINES_OF_A_TEST * len(omitted) or middle.count("PASSED") != len(omitted):
        sys.exit("terminal_picture.py: a test did not pass")
    return lines[:start] + ["", f"... {len(omitted)} more, PASSED each ..."] + lines[end:]


def main():
    arguments = sys.argv[1:]
    if "--help" in arguments or "-h" in arguments:
        print(__doc__.strip())
        return
    if len(arguments) != 2 or any(argument.startswith("-") for argument in arguments):
        sys.exit("terminal_picture.py: takes COMMAND FILE and no options: --help says what they are")
    command, file = arguments
    try:
        from rich.console import Console
        from rich.text import Text
    except ImportError:
        sys.exit("terminal_picture.py: Rich is missing: install Debian's python3-rich")

    with open("/dev/null", "w") as nowhere:
        console = Console(record=True, width=COLUMNS, file=nowhere, color_system=None)
        for line in ["$ " + command, *shortened(sys.stdin.read().splitlines()), "$"]:
            console.print(Text(line))
    Path(file).write_text(console.export_svg(title="cvtavi_test", code_format=LAYOUT, unique_id="run"))


main()
