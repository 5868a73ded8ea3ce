#!/usr/bin/env bash
# Reads the sources by a formatter and by static analysers, which find nothing when all is well. Ends with the number of runs
# of a tool that passed and failed.
#
#     scripts/lint.sh [TOOL]...
#
# TOOL is format (clang-format), tidy (clang-tidy, which has clang's warnings as well) or cppcheck; without any, all three.
# Findings are printed; what passes prints nothing. Nothing is built.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
tools=("$@")
((${#tools[@]} > 0)) || tools=(format tidy cppcheck)
for tool in "${tools[@]}"; do
    [[ " format tidy cppcheck " == *" $tool "* ]] || fail "unknown tool $tool: there are format, tidy and cppcheck"
done
chosen() { has_any "${tools[*]}" "$@"; }

steps=$((1 + ${#tools[@]})) steps_are_output=true
step "Looking for missing packages and libraries"
need_build_folder lint lint-windows
! chosen format || need_packages clang-format git
! chosen cppcheck || need_packages cppcheck
if chosen tidy; then
    need_packages g++ clang-tidy cmake ninja-build libmxml-dev libcli11-dev libgtest-dev nlohmann-json3-dev \
        python3-clang python3-jinja2 python3-jsonschema
    run scripts/windows-libraries.sh || exit
    configure --preset release -B build/lint
    configure --preset windows -B build/lint-windows
fi

# Each run of a tool leaves a file of what it printed, in failed/ or passed/.
export results=$PWD/build/lint/results
rm -rf "$results"
mkdir -p "$results"/{failed,passed}

# run_tool NAME COMMAND...
run_tool() {
    local log=$results/failed/${1//\//-}
    ! "${@:2}" >"$log" 2>&1 </dev/null || mv "$log" "$results/passed/"
}
export -f run_tool

# run_on_each COMMAND...: a tool on each file that standard input names, on all processors.
run_on_each() {
    xargs -P "$(nproc)" -I {} bash -c 'run_tool "$@"' run_tool "$1-{}" "$@" {}
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

use_format() {
    git ls-files '*.h' '*.cpp' | run_on_each clang-format --dry-run -Werror
}

# Each source once, as it is compiled for Linux, but for those that a build makes; then those for Windows alone, with the C++
# headers that clang does not find.
use_tidy() {
    local headers
    sources_of lint | grep -v '^build/' | run_on_each clang-tidy --quiet -p "$(commands_for_clang lint)"
    headers=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
    sources_of lint-windows | grep 'Windows\.cpp$' | run_on_each clang-tidy --quiet -p "$(commands_for_clang lint-windows)" \
        "--extra-arg=-isystem$headers" "--extra-arg=-isystem$headers/x86_64-w64-mingw32"
}

# The product alone, for in tests it reports assertions on moved-from values and the like. Suppressed are:
# - unreadVariable, which it reports for the result of placement new; clang-tidy finds what is really unread
# - noExplicitConstructor: the library's two value types convert implicitly because the closed library's do
# - useStlAlgorithm, which asks for std::transform where a loop of one statement makes a list
# - constParameter: it does not see that a facet or the wrapper is changed through a pointer to a member
# - returnByReference: the getters return copies by contract
# - normalCheckLevelMaxBranches, which says that not every branch of a long function was analysed
use_cppcheck() {
    run_tool cppcheck cppcheck -j "$(nproc)" --quiet --error-exitcode=1 --inline-suppr --std=c++20 \
        --enable=warning,style,performance,portability \
        --suppress=unreadVariable --suppress=useStlAlgorithm --suppress=noExplicitConstructor:sdk/include/* \
        --suppress=constParameter:telemetry/FacetAccess.h --suppress=constParameter:check/ReportingMethods.cpp \
        --suppress=returnByReference:telemetry/CorvaneTavi.h --suppress=normalCheckLevelMaxBranches \
        -I sdk/include -I . sdk telemetry recorder harness check
}

for tool in "${tools[@]}"; do
    step "Reading by $tool"
    run "use_$tool"
done

shopt -s nullglob
failed=("$results"/failed/*) passed=("$results"/passed/*)
((${#failed[@]} == 0)) || cat "${failed[@]}"
printf '%d passed, %d failed\n' "${#passed[@]}" "${#failed[@]}"
((${#failed[@]} == 0))
