#!/usr/bin/env bash
# Builds everything and runs every test. Ends with the number of tests passed and failed, and skipped if any were.
#
#     scripts/test.sh [PRESET]...
#
# Without presets, all that can be built here: release; windows, built by mingw-w64 and run in Wine; sanitize (address,
# undefined behaviour, leak); clang, with the benchmarks, valgrind and the event reference's page in a browser; fuzz, each
# target over its corpus and a fixed number of runs; and coverage, with a table of the lines and branches that are run. When
# the tests of release have passed, CONTRIBUTING.md's walk-through is done in a copy. The preset debug can be named as well.
#
# Each leaves a JUnit report and ctest's whole output in build/test-results/, as run_tests.py tells.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
presets=("$@")
((${#presets[@]} > 0)) || presets=(release windows sanitize clang fuzz coverage)
steps=1 steps_are_output=true
for preset in "${presets[@]}"; do
    steps=$((steps + 2))
    case $preset in
    release) steps=$((steps + 1)) ;;
    debug | sanitize | clang | windows | fuzz | coverage) ;;
    *) fail "unknown preset $preset: there are release, debug, sanitize, clang, windows, fuzz and coverage" ;;
    esac
done
is_asked_for() { has_any "${presets[*]}" "$@"; }

need_build_folder test-results "${presets[@]}"
results=$PWD/build/test-results
# No report of an earlier run stays, wherever this one ends.
for preset in "${presets[@]}"; do
    rm -f "$results/$preset".{xml,log}
    [[ "$preset" != release ]] || rm -f "$results"/walk-through.{xml,log}
done

step "Looking for missing packages and libraries"
packages=(g++ cmake ninja-build python3 libmxml-dev libcli11-dev libgtest-dev nlohmann-json3-dev)
! is_asked_for release debug clang || packages+=(strace)
! is_asked_for release debug || packages+=(git python3-clang python3-jsonschema)
! is_asked_for release debug clang || packages+=(python3-jinja2)
! is_asked_for release debug sanitize clang coverage || packages+=(pkgconf)
! is_asked_for release || packages+=(python3-rich)
# For the test of the Debian packages, which takes root.
((EUID != 0)) || ! is_asked_for release debug || packages+=(dpkg-dev file debootstrap)
! is_asked_for clang fuzz coverage || packages+=(clang)
! is_asked_for fuzz coverage || packages+=(libclang-rt-dev)
! is_asked_for coverage || packages+=(llvm)
! is_asked_for clang || packages+=(libbenchmark-dev rapidjson-dev valgrind chromium chromium-driver python3-selenium)
! is_asked_for windows || packages+=(wine wine64)
need_packages "${packages[@]}"
passed=0 failed=0 skipped=0 skipped_stage=
if is_asked_for windows; then
    status=0
    scripts/windows-libraries.sh || status=$?
    case $status in
    0) ;;
    3) skipped_stage=windows ;;
    *) exit "$status" ;;
    esac
fi

profiles=$PWD/build/coverage/profiles

# run_tests NAME ARGUMENT...: by scripts/run_tests.py, which leaves the report NAME.xml when the run has ended. Sets bad, the
# number of tests that failed.
run_tests() {
    local report=$results/$1.xml total unrun
    scripts/run_tests.py "${@:2}" || [[ -e "$report" ]] || exit
    total=$(count_in "$report" tests)
    bad=$(($(count_in "$report" failures) + $(count_in "$report" errors)))
    unrun=$(count_in "$report" skipped)
    passed=$((passed + total - bad - unrun)) failed=$((failed + bad)) skipped=$((skipped + unrun))
}

# count_in REPORT ATTRIBUTE: of the report's one suite.
count_in() {
    grep -m 1 -oP "\\b$2=\"\\K[0-9]+" "$1"
}

# Prints the coverage of each of the product's files, and each line that no test ran.
print_coverage() {
    local build=$PWD/build/coverage object objects=()
    for object in "$build"/bin/tavi_check "$build"/tests/{unit_tests,program_tests} "$build"/lib/libTaviSDKWrapper.so; do
        objects+=(-object "$object")
    done
    llvm-profdata merge -sparse "$profiles"/*.profraw -o "$profiles/all.profdata"
    local what=(-instr-profile="$profiles/all.profdata" "$build/bin/cvtavi_test" "${objects[@]}" sdk telemetry recorder harness
        check)
    llvm-cov report "${what[@]}" -show-branch-summary -show-region-summary=false
    say "coverage: lines that no test runs"
    llvm-cov export "${what[@]}" -format=lcov -skip-expansions |
        awk -F'[:,]' -v root="$PWD/" '
            /^SF:/ { file = substr($0, 4); if (index(file, root) == 1) file = substr(file, length(root) + 1) }
            /^DA:/ && $3 == 0 { print file ":" $2 }'
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
end_wine() {
    [[ -n "${CORVANE_WINEPREFIX:-}" ]] || return 0
    local folder
    folder=$(cat "$CORVANE_WINEPREFIX/wineserver" 2>/dev/null) || true
    wine_server -k || true
    [[ "$folder" != wine-* ]] || rm -rf "/tmp/$folder" # in which Wine leaves its socket
    unset CORVANE_WINEPREFIX
}
at_exit() { end_wine; }

rm -rf "$profiles"
export LLVM_PROFILE_FILE=$profiles/%4m.profraw
for preset in "${presets[@]}"; do
    if [[ "$preset" == "$skipped_stage" ]]; then
        step "$preset: skipped, its libraries cannot be built, see above"
        step "$preset: skipped"
        continue
    fi
    step "$preset: configuring and building"
    SECONDS=0
    [[ "$preset" != windows ]] || keep_wine
    configure --preset "$preset"
    compile --preset "$preset"
    step "$preset: built in $SECONDS s, testing"
    run_tests "$preset" "$preset"
    grep -hsoE '^[0-9]+ mutants, .*' "build/$preset/Testing/Temporary/LastTest.log" || true
    end_wine
    [[ "$preset" != coverage ]] || print_coverage
    [[ "$preset" == release ]] || continue
    if ((bad > 0)); then
        step "CONTRIBUTING.md's walk-through: not done, for tests of release failed"
    else
        step "CONTRIBUTING.md's walk-through"
        run_tests walk-through release --only walk-through -C WalkThrough
    fi
done

((skipped == 0)) || skipped_tests=", $skipped skipped"
printf '%d passed, %d failed%s%s\n' "$passed" "$failed" "${skipped_tests-}" \
    "${skipped_stage:+, all tests of $skipped_stage skipped}"
((failed == 0))
