#!/usr/bin/env bash
# Builds cvtavi_test and runs it. What it prints is the program's output, and its exit status the program's; progress is
# shown on a terminal only.
set -euo pipefail
source "$(dirname "$0")/common.bash"

say() {
    if [[ -t 2 ]]; then printf '%s ...\n' "$1" >&2; fi
}

need_packages g++ cmake ninja-build libmxml-dev
say "Configuring"
quietly cmake --preset release -B build/run -DBUILD_TESTING=OFF || fail "configuring failed, see above"
say "Building"
quietly cmake --build build/run || fail "building failed, see above"
say "Running"
exec build/run/bin/cvtavi_test
