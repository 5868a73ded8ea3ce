#!/usr/bin/env bash
# Runs one fuzz target for a number of seconds, starting from the inputs that earlier runs found.
#
#     scripts/fuzz.sh TARGET SECONDS
#
# TARGET is product_file, reporting or text. Inputs that widen the coverage are kept in build/fuzz/tests/fuzz/found/TARGET/,
# and so are inputs that fail: such a one goes into tests/fuzz/corpus/TARGET/ with the repair.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
(($# == 2)) || fail "takes TARGET and SECONDS: --help says which targets there are"
target=$1 seconds=$2
[[ -d "tests/fuzz/corpus/$target" && "$target" =~ ^[a-z_]+$ ]] ||
    fail "unknown target $target: there are product_file, reporting and text"
[[ "$seconds" =~ ^[1-9][0-9]*$ ]] || fail "$seconds is no number of seconds"
found=build/fuzz/tests/fuzz/found/$target

steps=3
step "Looking for missing packages"
need_packages clang libclang-rt-dev cmake ninja-build libmxml-dev libcli11-dev libgtest-dev nlohmann-json3-dev
need_build_folder fuzz
step "Building in build/fuzz"
configure --preset fuzz
compile --preset fuzz --target "fuzz_$target"
step "Running fuzz_$target for $seconds seconds"
export LSAN_OPTIONS="suppressions='$PWD/tests/checks/leaks.supp':print_suppressions=0"
become "build/fuzz/tests/fuzz_$target" -max_total_time="$seconds" -artifact_prefix="$found/" "$found" \
    "tests/fuzz/corpus/$target"
