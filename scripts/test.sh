#!/usr/bin/env bash
# Builds everything and runs every test. Ends with the number of tests passed and failed.
#
#     scripts/test.sh [PRESET]...
#
# Without presets, all that can be built here: release; windows, built by mingw-w64 and run in Wine; sanitize (address,
# undefined behaviour, leak); clang, with the checks of the sources and valgrind; fuzz, each target over its corpus and a
# fixed number of runs; and coverage, with a table of the lines and branches that are run. Each leaves a JUnit report in
# build/test-results/. The preset debug can be named as well.
set -euo pipefail
source "$(dirname "$0")/common.bash"

read_options "$@"
presets=("$@")
((${#presets[@]} > 0)) || presets=(release windows sanitize clang fuzz coverage)
for preset in "${presets[@]}"; do
    case $preset in
    release | debug | sanitize | clang | windows | fuzz | coverage) ;;
    *) fail "unknown preset $preset: there are release, debug, sanitize, clang, windows, fuzz and coverage" ;;
    esac
done

steps=$((1 + 2 * ${#presets[@]}))
steps_are_output=true
step "Looking for missing packages and libraries"
need_packages g++ clang libclang-rt-14-dev clang-format clang-tidy llvm cmake ninja-build cppcheck valgrind strace \
    libmxml-dev libgtest-dev libbenchmark-dev nlohmann-json3-dev rapidjson-dev python3-rich
if [[ " ${presets[*]} " == *" clang "* ]]; then
    need_packages python3 chromium chromium-driver # the event reference's page is tested in a browser
fi
if [[ " ${presets[*]} " == *" windows "* ]]; then
    need_packages wine wine64
    scripts/windows-libraries.sh
fi
need_build_folder

results=$PWD/build/test-results
profiles=$PWD/build/coverage/profiles
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

# What the coverage build's tests ran of the product, file by file, and each line that they did not.
print_coverage() {
    local build=$PWD/build/coverage object objects=()
    for object in "$build"/tests/{unit_tests,program_tests} "$build"/lib/libTaviSDKWrapper.so; do
        objects+=(-object "$object")
    done
    llvm-profdata merge -sparse "$profiles"/*.profraw -o "$profiles/all.profdata"
    local what=(-instr-profile="$profiles/all.profdata" "$build/bin/cvtavi_test" "${objects[@]}" sdk telemetry harness)
    llvm-cov report "${what[@]}" -show-branch-summary -show-region-summary=false
    say "coverage: lines that no test runs"
    llvm-cov export "${what[@]}" -format=lcov -skip-expansions |
        awk -F'[:,]' -v root="$PWD/" '/^SF:/ { file = substr($0, 4); sub(root, "", file) }
            /^DA:/ && $3 == 0 { print file ":" $2 }'
}

# Wine's server and services stay for all tests of a build and of what they build, which else start them each for itself.
# They are started by a program whose output nobody waits for: they would keep a test's open.
keep_wine() {
    export CORVANE_WINEPREFIX=$PWD/build/windows/wine
    WINEPREFIX=$CORVANE_WINEPREFIX wineserver -p </dev/null >/dev/null 2>&1
    cmake/wine.sh "$CORVANE_WINEPREFIX" cmd /c exit </dev/null >/dev/null 2>&1
}
end_wine() {
    [[ -n "${CORVANE_WINEPREFIX:-}" ]] || return 0
    WINEPREFIX=$CORVANE_WINEPREFIX wineserver -k >/dev/null 2>&1 || true
    unset CORVANE_WINEPREFIX
}
trap end_wine EXIT

rm -rf "$profiles"
export LLVM_PROFILE_FILE=$profiles/%4m.profraw
for preset in "${presets[@]}"; do
    step "$preset: configuring and building"
    SECONDS=0
    configure --preset "$preset"
    compile --preset "$preset"
    step "$preset: built in $SECONDS s, testing"
    [[ "$preset" != windows ]] || keep_wine
    ctest --preset "$preset" --parallel "$(nproc)" --output-junit "$results/$preset.xml" </dev/null |
        tee "$results/$preset.log" | grep -vE '^ +Start |\.\.\. +Passed |^$' || true
    grep -hoE '^[0-9]+ mutants, .*' "build/$preset/Testing/Temporary/LastTest.log" || true
    end_wine
    count_tests "$results/$preset.log"
    [[ "$preset" != coverage ]] || print_coverage
done

printf '%d passed, %d failed\n' "$passed" "$failed"
((failed == 0))
