#!/usr/bin/env bash
# Prints what is sent otherwise than before: events and keys that are new, gone or changed, a line for each.
#
#     scripts/events_diff.sh [--json] OLD [NEW]
#
# OLD and NEW are each a file such as docs/events.json, a released version such as 1.0.0, whose file is in docs/released/, or a
# revision of git, whose docs/events.json is taken. NEW is docs/events.json if it is not given. Compared are names, types,
# scopes, parameters, places, kinds, fixed values and annotations; other examples are not. With --json it prints one JSON object
# instead. The exit status is 0 when nothing differs, 1 when something does, and 2 when there is trouble.
set -euo pipefail
folder=$PWD
source "$(dirname -- "$0")/common.bash"
failure=2

options=()
if [[ "${1-}" == --json ]]; then
    options=(--json)
    shift
fi
read_options "$@"
(($# == 1 || $# == 2)) || fail "takes OLD and NEW: --help says what they can be"
command -v python3 >/dev/null || fail "python3 is missing: install it, or add its folder to PATH"
program=$PWD/tools/changes.py
cd -- "$folder"
become python3 "$program" "${options[@]}" "$@"
