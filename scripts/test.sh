#!/usr/bin/env bash
# Builds everything in the release and the sanitize build, and by clang as well, and runs every test of each. Ends with
# the number of tests passed and failed. build/test-results/ holds a JUnit report of each build.
set -euo pipefail
source "$(dirname "$0")/common.sh"

say() {
    printf '== %s\n' "$1"
}

need_packages g++ clang cmake ninja-build libmxml-dev libgtest-dev nlohmann-json3-dev
results=$PWD/build/test-results
mkdir -p "$results"
passed=0 failed=0

# count_tests LOG: adds what the closing line of a test run says.
count_tests() {
    local line
    line=$(grep -E '^[0-9]+% tests passed, [0-9]+ tests failed out of [0-9]+$' "$1") || fail "a test run did not end"
    [[ "$line" =~ ,\ ([0-9]+)\ tests\ failed\ out\ of\ ([0-9]+) ]]
    passed=$((passed + BASH_REMATCH[2] - BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[1]))
}

for preset in release sanitize clang; do
    say "$preset: configuring and building"
    SECONDS=0
    quietly cmake --preset "$preset" || fail "configuring the preset $preset failed, see above"
    quietly cmake --build --preset "$preset" || fail "building the preset $preset failed, see above"
    say "$preset: built in $SECONDS s, testing"
    ctest --preset "$preset" --parallel "$(nproc)" --output-junit "$results/$preset.xml" </dev/null |
        tee "$results/$preset.log" | grep -vE '^ +Start |\.\.\. +Passed ' || true
    count_tests "$results/$preset.log"
done

printf '%d passed, %d failed\n' "$passed" "$failed"
((failed == 0))
