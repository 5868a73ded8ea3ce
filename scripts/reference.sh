#!/usr/bin/env bash
# Writes docs/events.md and docs/events.html, the reference of all events, from what the wrapper sends.
#
#     scripts/reference.sh
#
# Builds the preset release's event_reference and runs it: the test program's calls in the telemetry library's test mode,
# beside the declarations in telemetry/CorvaneTavi.h. The test Reference.IsUpToDate fails until this is done.
set -euo pipefail
source "$(dirname "$0")/common.bash"

take_no_arguments "$@"
steps=3
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libgtest-dev nlohmann-json3-dev
need_build_folder
step "Building event_reference in build/release"
quietly cmake --preset release || fail "configuring failed, see above"
quietly cmake --build --preset release --target event_reference || fail "building failed, see above"
step "Writing docs/events.md and docs/events.html"
build/release/docs/reference/event_reference . docs
