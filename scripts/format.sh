#!/usr/bin/env bash
# Formats all C++ sources as .clang-format says.
#
#     scripts/format.sh
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=2
step "Looking for missing packages"
need_packages clang-format git
step "Formatting all .h and .cpp files"
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format -i || fail "clang-format failed, see above"
