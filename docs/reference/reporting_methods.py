#!/usr/bin/python3
"""Writes what Probe.cpp includes: a call of Probe() for each reporting method that the wrapper's header declares.

    reporting_methods.py SOURCES FILE
"""

import sys
from pathlib import Path

from header import PREPARING, NotUnderstood, read_methods

# Written out in Probe.cpp: it sends what another method prepared.
PREPARED = "StartTrackFileChange"


def main():
    sources, file = Path(sys.argv[1]), Path(sys.argv[2])
    try:
        methods = [method.name for method in read_methods(sources / "telemetry/CorvaneTavi.h", sources)]
    except NotUnderstood as error:
        sys.exit(f"reporting_methods.py: {error}")
    file.write_text("".join(f'Probe("{name}", &CorvaneTavi::{name}),\n' for name in methods
                            if name not in (PREPARING, PREPARED)), encoding="utf-8")


main()
