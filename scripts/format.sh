#!/usr/bin/env bash
# Formats all C++ sources as .clang-format says.
#
#     scripts/format.sh
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=2
step "Looking for missing packages"
need_packages clang-format
step "Formatting all .h and .cpp files"
find benchmarks check docs examples harness recorder sdk telemetry tests \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 clang-format -i || fail "clang-format failed, see above"
