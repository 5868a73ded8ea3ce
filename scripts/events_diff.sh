#!/usr/bin/env bash
# Prints what is sent otherwise than before: events and keys that are new, gone or changed, a line for each; and the events
# that are not wanted any more.
#
#     scripts/events_diff.sh [--json] [--date DAY] OLD [NEW]
#
# OLD and NEW are each a file such as docs/events.json, a released version such as 1.0.0, whose file is in docs/released/, or a
# revision of git, whose docs/events.json is taken. NEW is docs/events.json if it is not given. Compared are names, types,
# scopes, parameters, places, kinds, fixed values and annotations; other examples are not. With --json it prints one JSON object
# instead. An event of NEW is not wanted any more when its "wanted_until" is before DAY, as in 2027-01-31; DAY is today if it is
# not given. Options may be in any place; a file whose name begins with "-" is given as ./-NAME. The exit status is 0 when
# nothing differs, 1 when something does, and 2 when there is trouble.
set -euo pipefail
folder=$PWD
source "$(dirname -- "$0")/common.bash"
failure=2

if has_any "$*" -h --help; then
    usage
    exit
fi
command -v python3 >/dev/null || fail "python3 is missing: install it, or add its folder to PATH"
program=$PWD/tools/changes.py
cd -- "$folder"
become python3 "$program" "$@"
