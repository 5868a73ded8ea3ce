#!/usr/bin/env bash
# Writes the files that show what the program prints and sends: docs/events.json, the reference of all events; docs/events.md,
# docs/events.html, docs/events.csv and docs/payloads.schema.json, which are made from it; and tests/data/good_run.txt. Tests
# fail while one is out of date.
#
#     scripts/reference.sh
#
# The events are those of the calls of check/ReportingMethods.cpp, recorded in the telemetry library's test mode, beside the
# declarations in telemetry/CorvaneTavi.h and what people wrote in docs/annotations.json. Nothing is written when cvtavi_test
# fails.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=3
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libcli11-dev libgtest-dev nlohmann-json3-dev python3-clang python3-jinja2 \
    python3-jsonschema
need_build_folder release
step "Running cvtavi_test"
configure --preset release
compile --preset release --target cvtavi_test
build/release/bin/cvtavi_test >"$scratch/good_run" || {
    cat "$scratch/good_run" >&2
    fail "a test fails, see above"
}
step "Writing docs/events.json, the files made from it, and tests/data/good_run.txt"
compile --preset release --target write_reference
cp "$scratch/good_run" tests/data/good_run.txt
