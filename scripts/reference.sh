#!/usr/bin/env bash
# Writes docs/events.md and docs/events.html, the reference of all events, from what the wrapper sends.
#
#     scripts/reference.sh [--help]
#
# Builds the preset release's event_reference and runs it: the test program's calls in the telemetry library's test mode,
# beside the declarations in telemetry/CorvaneTavi.h. The test Reference.IsUpToDate fails until this is done.
set -euo pipefail
source "$(dirname "$0")/common.bash"

say() {
    if [[ -t 2 ]]; then printf '%s ...\n' "$1" >&2; fi
}

if (($# > 0)); then
    [[ "$*" == --help ]] || fail "there is only the option --help"
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' scripts/reference.sh
    exit 0
fi

need_packages g++ cmake ninja-build libmxml-dev libgtest-dev nlohmann-json3-dev
say "Building"
quietly cmake --preset release || fail "configuring failed, see above"
quietly cmake --build --preset release --target event_reference || fail "building failed, see above"
build/release/docs/reference/event_reference . docs
