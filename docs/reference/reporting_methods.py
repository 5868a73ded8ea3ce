#!/usr/bin/python3
"""Writes a list that C++ includes: a call of a function for each reporting method that the wrapper's header declares.

    reporting_methods.py SOURCES FUNCTION FILE
"""

import sys
from pathlib import Path

from header import PREPARING, NotUnderstood, read_methods

# Sends what another method prepared, and so is called in a way of its own.
PREPARED = "StartTrackFileChange"


def main():
    sources, function, file = Path(sys.argv[1]), sys.argv[2], Path(sys.argv[3])
    try:
        methods = [method.name for method in read_methods(sources / "telemetry/CorvaneTavi.h", sources)]
    except NotUnderstood as error:
        sys.exit(f"reporting_methods.py: {error}")
    file.write_text("".join(f'{function}("{name}", &CorvaneTavi::{name}),\n' for name in methods
                            if name not in (PREPARING, PREPARED)), encoding="utf-8")


main()
