#!/usr/bin/env bash
# Measures what a report costs, on an otherwise idle machine, and prints the results as one table.
#
#     scripts/bench.sh
#
# Builds the preset benchmark and measures, nine times each: the events, beside the same payloads made by other libraries
# and by hand; reports and values of growing size. Then it counts heap allocations, and instructions under valgrind, those
# in the wrapper's own code as well. It fails when a comparison does not make the wrapper's payload. Results are left in
# build/benchmark/results/; the table goes into docs/performance.md and the figure beside it.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=7
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libcli11-dev libbenchmark-dev nlohmann-json3-dev rapidjson-dev \
    valgrind python3
need_build_folder benchmark
build=$PWD/build/benchmark
export results=$build/results programs=$build/benchmarks

step "Building in build/benchmark"
configure --preset benchmark
compile --preset benchmark
rm -rf "$results"
mkdir -p "$results"
date -u +%FT%TZ >"$results/date"
nproc >"$results/processors"
cut -d' ' -f1 /proc/loadavg >"$results/load"

# run_benchmark NAME PROGRAM [ARGUMENT]...
run_benchmark() {
    local name=$1 program=$2
    shift 2
    quietly "$programs/$program" "$@" --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true \
        --benchmark_min_time=0.05 --benchmark_out="$results/$name.json" --benchmark_out_format=json ||
        fail "a benchmark failed, see above"
    if grep -q '"error_occurred": true' "$results/$name.json"; then
        fail "a benchmark failed, see $results/$name.json"
    fi
}

step "Measuring events and values"
run_benchmark reporting reporting_benchmark
step "Measuring documents"
for count in 1 10 1000 100000; do
    run_benchmark "documents-$count" document_benchmark "$count"
done

step "Counting allocations"
"$programs/allocation_benchmark" >"$results/allocations.json"

# count_instructions COUNT PROGRAM ARGUMENT...: of a whole run, as "PROGRAM ARGUMENT... COUNT INSTRUCTIONS". Callgrind's
# profile is left in callgrind-PROGRAM-ARGUMENT-...-COUNT.
count_instructions() {
    local count=$1 out profile
    shift
    profile=$results/callgrind-$(printf '%s-' "$@")$count
    out=$(valgrind --tool=callgrind --callgrind-out-file="$profile" "$programs/$1" "${@:2}" "$count" 2>&1) || {
        printf '%s\n' "$out" >&2
        return 1
    }
    [[ "$out" =~ Collected\ :\ ([0-9]+) ]]
    printf '%s %s %s\n' "$*" "$count" "${BASH_REMATCH[1]}" # in one write: others write to the same file
}
export -f count_instructions

step "Counting instructions"
{
    for event in Track3DCKeyPressed TrackMaterialSelection TrackSteerWheelLoadOption TrackFileInput TrackUpdateLicense \
        StartTrackFileChange; do
        for subject in wrapper nlohmann rapidjson floor; do
            printf '%s\n' "200 event_loop $event $subject" "1200 event_loop $event $subject"
        done
    done
    for action in build copy compare look_up text; do
        for shape in "members 100" "members 1000" "members 10000" "members 100000" "levels 100" "levels 1000"; do
            printf '%s\n' "4 value_loop ${shape% *} $action ${shape#* }" "8 value_loop ${shape% *} $action ${shape#* }"
        done
    done
} | xargs -P "$(nproc)" -L 1 bash -c 'count_instructions "$@"' count >"$results/instructions.txt" ||
    fail "counting instructions failed, see above"

step "Writing the table and the figure into docs/"
python3 scripts/benchmark_report.py "$results" docs/performance.md docs/performance.svg
