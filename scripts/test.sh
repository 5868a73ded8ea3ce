#!/usr/bin/env bash
# Builds the project and tests it. Ends with the number of tests passed and failed, and skipped if any were.
#
#     scripts/test.sh [all | PRESET...]
#
# Without an argument: the preset release, what a change is tested by. It takes up to four minutes on two processors where
# nothing is installed or built, and half a minute after most changes. With "all", in up to fifteen minutes: full (release,
# with packages, hosts, a second library, valgrind and the event reference's page), windows (built by mingw-w64 and run in
# Wine) and sanitize (address, undefined behaviour and leaks, and the fuzz targets). PRESET is one of these four, or coverage,
# which prints a table of the lines and branches that are run.
#
# Each leaves a JUnit report in build/test-results/. With CI in the environment a warning of a compiler is an error.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
presets=("${@:-release}")
[[ "$*" != all ]] || presets=(full windows sanitize)
for preset in "${presets[@]}"; do
    [[ " release full windows sanitize coverage " == *" $preset "* ]] ||
        fail "unknown preset $preset: there are release, full, windows, sanitize and coverage"
done
is_asked_for() { has_any "${presets[*]}" "$@"; }
steps=$((1 + 2 * ${#presets[@]})) steps_are_output=true
results=$PWD/build/test-results
need_build_folder test-results "${presets[@]}"

step "Looking for missing packages and libraries"
packages=(g++ cmake ninja-build libmxml-dev libcli11-dev libgtest-dev nlohmann-json3-dev)
! is_asked_for release full || packages+=(git strace python3-clang python3-jinja2 python3-jsonschema)
! is_asked_for full || packages+=(pkgconf libbenchmark-dev valgrind chromium chromium-driver python3-selenium)
! is_asked_for sanitize coverage || packages+=(clang libclang-rt-dev)
! is_asked_for coverage || packages+=(llvm)
! is_asked_for windows || packages+=(wine wine64)
need_packages "${packages[@]}"
! is_asked_for windows || run scripts/windows-libraries.sh || exit

# run_tests PRESET: by ctest, and counts them. On a terminal ctest shows how far it is; else the tests that pass are left out.
passed=0 failed=0 skipped=0
run_tests() {
    local report=$results/$1.xml status=0 total bad unrun
    rm -f "$report"
    if [[ -t 1 ]]; then
        run ctest --preset "$1" --output-junit "$report" --progress || status=$?
    else
        run ctest_without_passed --preset "$1" --output-junit "$report" || status=$?
    fi
    [[ -e "$report" ]] || fail "ctest ended with $status and left no report"
    total=$(count_in "$report" tests) bad=$(count_in "$report" failures)
    unrun=$(($(count_in "$report" skipped) + $(count_in "$report" disabled)))
    ((status == 0 || bad > 0)) || fail "ctest ended with $status, although no test failed"
    passed=$((passed + total - bad - unrun)) failed=$((failed + bad)) skipped=$((skipped + unrun))
}

ctest_without_passed() {
    ctest "$@" | { grep --line-buffered -vE '^ +Start +[0-9]+: |^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed ' || true; }
}

# count_in REPORT ATTRIBUTE: of the report's one suite.
count_in() {
    grep -m 1 -oP "\\b$2=\"\\K[0-9]+" "$1"
}

# wine_server OPTION: of the tests' prefix; /tmp as cmake/wine.sh has it.
wine_server() {
    without_locks env -u TMPDIR WINEPREFIX="$CORVANE_WINEPREFIX" wineserver "$1" </dev/null >/dev/null 2>&1
}

# Keeps Wine's server and services running for all tests of the build; without it each program would start its own. They
# are started here with output to /dev/null, because they would keep the output of a test open.
keep_wine() {
    export CORVANE_WINEPREFIX=$PWD/build/windows/wine
    mkdir -p "$CORVANE_WINEPREFIX"
    wine_server -p &&
        without_locks cmake/wine.sh "$CORVANE_WINEPREFIX" cmd /c exit </dev/null >/dev/null 2>&1 ||
        fail "Wine does not run a program: remove $CORVANE_WINEPREFIX, then run this again"
}
at_exit() {
    [[ -n "${CORVANE_WINEPREFIX:-}" ]] || return 0
    local folder
    folder=$(cat "$CORVANE_WINEPREFIX/wineserver" 2>/dev/null) || true
    wine_server -k || true
    [[ "$folder" != wine-* ]] || rm -rf "/tmp/$folder" # in which Wine leaves its socket
    unset CORVANE_WINEPREFIX
}

# Prints the coverage of each of the product's files.
print_coverage() {
    local build=$PWD/build/coverage
    llvm-profdata merge -sparse "$profiles"/*.profraw -o "$profiles/all.profdata"
    llvm-cov report -instr-profile="$profiles/all.profdata" -show-branch-summary -show-region-summary=false \
        "$build/bin/cvtavi_test" -object "$build/bin/tavi_check" -object "$build/tests/unit_tests" \
        -object "$build/lib/libTaviSDKWrapper.so" sdk telemetry recorder harness check
}

profiles=$PWD/build/coverage/profiles
rm -rf "$profiles"
export LLVM_PROFILE_FILE=$profiles/%4m.profraw
for preset in "${presets[@]}"; do
    step "$preset: configuring and building"
    SECONDS=0
    [[ "$preset" != windows ]] || keep_wine
    configure --preset "$preset" "-DCMAKE_COMPILE_WARNING_AS_ERROR=${CI:+ON}"
    compile --preset "$preset"
    step "$preset: built in $SECONDS s, testing"
    run_tests "$preset"
    at_exit
    [[ "$preset" != coverage ]] || print_coverage
done

((skipped == 0)) || skipped_tests=", $skipped skipped"
printf '%d passed, %d failed%s\n' "$passed" "$failed" "${skipped_tests-}"
((failed == 0))
