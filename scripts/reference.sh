#!/usr/bin/env bash
# Writes the files that show what the program prints and sends: docs/events.json, the reference of all events, with what is made
# of it (docs/events.md, docs/events.html, docs/events.csv, docs/payloads.schema.json); docs/run.svg, a terminal after
# scripts/run.sh; and tests/data/good_run.txt. Tests fail while one is out of date.
#
#     scripts/reference.sh
#
# The events are those of the calls of check/ReportingMethods.cpp, recorded in the telemetry library's test mode, beside the
# declarations in telemetry/CorvaneTavi.h and what people wrote in docs/annotations.json. Nothing is written when a test fails.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=5
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libcli11-dev libgtest-dev nlohmann-json3-dev python3-clang python3-jinja2 \
    python3-jsonschema python3-rich
need_build_folder release
step "Running scripts/run.sh"
work=$scratch
# "script" runs it in a pseudo-terminal and records what that shows.
script -qec scripts/run.sh /dev/null </dev/null | tr -d '\r' >"$work/terminal" || {
    cat "$work/terminal" >&2
    fail "a test fails, see above"
}
build/run/bin/cvtavi_test >"$work/good_run"
step "Configuring build/release"
configure --preset release
step "Writing docs/events.json and what is made of it"
compile --preset release --target write_reference
step "Writing docs/run.svg and tests/data/good_run.txt"
scripts/terminal_picture.py scripts/run.sh docs/run.svg <"$work/terminal"
cp "$work/good_run" tests/data/good_run.txt
