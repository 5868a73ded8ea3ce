#!/usr/bin/env bash
# Checks the sources: they build without a warning, and formatter and static analysers find nothing. Ends with the number of
# checks passed and failed.
#
#     scripts/check.sh [CHECK]...
#
# CHECK is build (for Linux by g++, for Windows by mingw-w64), format (clang-format), tidy (clang-tidy, which has clang's
# warnings as well) or cppcheck; without any, all four. Findings are printed; what passes prints nothing.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
checks=("$@")
((${#checks[@]} > 0)) || checks=(build format tidy cppcheck)
for check in "${checks[@]}"; do
    case $check in
    build | format | tidy | cppcheck) ;;
    *) fail "unknown check $check: there are build, format, tidy and cppcheck" ;;
    esac
done

chosen() { has_any "${checks[*]}" "$@"; }

windows=true
steps=$((1 + ${#checks[@]}))
steps_are_output=true
step "Looking for missing packages and libraries"
need_build_folder checks ci ci-windows
! chosen format || need_packages clang-format
! chosen cppcheck || need_packages cppcheck
if chosen build tidy; then
    need_packages g++ clang-tidy cmake ninja-build libmxml-dev libcli11-dev libgtest-dev libbenchmark-dev \
        nlohmann-json3-dev rapidjson-dev python3-clang python3-jinja2 python3-jsonschema
    status=0
    scripts/windows-libraries.sh || status=$?
    configure --preset ci
    case $status in
    0) configure --preset ci-windows ;;
    3) windows=false ;;
    *) exit "$status" ;;
    esac
fi

# Each check leaves a file of what it printed, in failed/ or passed/.
export results=$PWD/build/checks
rm -rf "$results"
mkdir -p "$results"/{failed,passed}

# run_check NAME COMMAND...
run_check() {
    local log=$results/failed/${1//\//-}
    ! "${@:2}" >"$log" 2>&1 </dev/null || mv "$log" "$results/passed/"
}
export -f run_check

# run_on_each COMMAND...: a check of each file that standard input names, on all processors.
run_on_each() {
    xargs -P "$(nproc)" -I {} bash -c 'run_check "$@"' run_check "$1-{}" "$@" {}
}

# sources_of BUILD: prints the sources that are compiled in build/BUILD, by their paths in the project.
sources_of() {
    sed -n 's/^ *"file": "\(.*\.cpp\)".*/\1/p' "build/$1/compile_commands.json" |
        while IFS= read -r file; do printf '%s\n' "${file#"$PWD/"}"; done | sort -u
}

# commands_for_clang BUILD: copies the build's compile commands and prints the copy's folder. Left out is an option that clang
# does not know; each "$" is there once, where CMake writes "$$" for Ninja.
commands_for_clang() {
    mkdir -p "$results/$1"
    sed 's/\$\$/$/g; s/ -fno-keep-inline-dllexport / /' "build/$1/compile_commands.json" >"$results/$1/compile_commands.json"
    printf '%s' "$results/$1"
}

check_build() {
    run_check build-linux cmake --build --preset ci -- --quiet -k 0
    ! $windows || run_check build-windows cmake --build --preset ci-windows -- --quiet -k 0
}

check_format() {
    find benchmarks check docs examples harness recorder sdk telemetry tests \( -name '*.h' -o -name '*.cpp' \) -print |
        run_on_each clang-format --dry-run -Werror
}

# Each source once, as it is compiled for Linux, but for those that a build makes; then those for Windows alone, with the C++
# headers that clang does not find.
check_tidy() {
    local headers
    sources_of ci | grep -v -e '^benchmarks/' -e '^build/' | run_on_each clang-tidy --quiet -p "$(commands_for_clang ci)"
    $windows || return 0
    headers=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
    sources_of ci-windows | grep 'Windows\.cpp$' | run_on_each clang-tidy --quiet -p "$(commands_for_clang ci-windows)" \
        "--extra-arg=-isystem$headers" "--extra-arg=-isystem$headers/x86_64-w64-mingw32"
}

# The product alone, for in tests it reports assertions on moved-from values and the like. Suppressed are:
# - unreadVariable, which it reports for the result of placement new; clang-tidy finds what is really unread
# - noExplicitConstructor: the library's two value types convert implicitly because the closed library's do
# - useStlAlgorithm, which asks for std::transform where a loop of one statement makes a list
# - constParameter: it does not see that a facet or the wrapper is changed through a pointer to a member
# - returnByReference: the getters return copies by contract
# - normalCheckLevelMaxBranches, which says that not every branch of a long function was analysed
check_cppcheck() {
    run_check cppcheck cppcheck -j "$(nproc)" --quiet --error-exitcode=1 --inline-suppr --std=c++20 \
        --enable=warning,style,performance,portability \
        --suppress=unreadVariable --suppress=useStlAlgorithm --suppress=noExplicitConstructor:sdk/include/* \
        --suppress=constParameter:telemetry/FacetAccess.h --suppress=constParameter:check/ReportingMethods.cpp \
        --suppress=returnByReference:telemetry/CorvaneTavi.h --suppress=normalCheckLevelMaxBranches \
        -I sdk/include -I . sdk telemetry recorder harness check
}

for check in "${checks[@]}"; do
    step "Checking: $check"
    "check_$check"
done

shopt -s nullglob
failed=("$results"/failed/*) passed=("$results"/passed/*)
((${#failed[@]} == 0)) || cat "${failed[@]}"
$windows || skipped=", the checks for Windows skipped"
printf '%d passed, %d failed%s\n' "${#passed[@]}" "${#failed[@]}" "${skipped-}"
((${#failed[@]} == 0))
