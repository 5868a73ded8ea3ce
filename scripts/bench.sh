#!/usr/bin/env bash
# Measures what a report costs, in a minute: its time, and its instructions, which no other load changes.
#
#     scripts/bench.sh
#
# The wrapper reports six events to the telemetry library in its test mode. The same payloads are made as trees of
# nlohmann-json, and written as text into a buffer, which is the floor. The exit status is 1 when the wrapper takes more
# instructions than the limit, which is a multiple of the tree's. The tables go into docs/performance.md.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=4
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libcli11-dev libbenchmark-dev nlohmann-json3-dev valgrind
need_build_folder benchmark
export program=$PWD/build/benchmark/benchmarks/reporting_benchmark profiles=$PWD/build/benchmark/profiles

step "Building in build/benchmark"
configure --preset release -B build/benchmark -DBUILD_TESTING=OFF -DCORVANE_BENCHMARKS=ON
compile build/benchmark

step "Measuring time, nine times each"
"$program" --benchmark_repetitions=9 --benchmark_report_aggregates_only=true --benchmark_min_time=0.05 2>&1 |
    grep -v -e '_mean ' -e '_stddev ' -e '_cv '

step "Counting instructions"
rm -rf "$profiles"
mkdir -p "$profiles"
# profile REPORT: callgrind's profile of a thousand calls, in the file EVENT.MAKER.
profile() {
    valgrind --quiet --tool=callgrind --toggle-collect='CountedReports*' \
        --callgrind-out-file="$profiles/${1/\//.}" "$program" count "$1"
}
export -f profile
"$program" --benchmark_list_tests | xargs -P "$(nproc)" -I{} bash -c 'profile {}' || fail "counting failed, see above"

# A profile names the binary of the lines "POSITION COST" that follow as "ob=(2) /lib/libc.so.6", and later as "ob=(2)". The
# line after "calls=" has the cost of what was called, which the profile also has where it arose.
awk '
    FNR == 1 { name = FILENAME; sub(/.*\//, "", name) }
    /^c?ob=/ {
        match($0, /\([0-9]+\)/)
        id = substr($0, RSTART, RLENGTH)
        if (NF > 1) binary[FILENAME, id] = $2
        path = binary[FILENAME, id]
        if (/^ob/) here = path ~ /reporting_benchmark$/ ? "own" : path ~ /TaviSDKWrapper/ ? "library" : "system"
    }
    /^calls=/ { getline; next }
    /^[+*0-9-]/ { cost[name, here] += $2 / 1000; all[name] += $2 / 1000 }
    END {
        count = split("Track3DCKeyPressed TrackMaterialSelection TrackSteerWheelLoadOption TrackFileInput " \
            "TrackUpdateLicense StartTrackFileChange", events)
        split("0.60 0.82 1.02", limits)
        printf "\n%-28s %9s %9s %9s %11s %6s\n", "instructions", "wrapper", "nlohmann", "floor", "/ nlohmann", "limit"
        for (i = 1; i <= count; ++i) {
            wrapper = all[events[i] ".wrapper"]
            ratio = wrapper / all[events[i] ".nlohmann"]
            missed = limits[i] != "" && ratio > limits[i]
            failed = failed || missed
            printf "%-28s %9d %9d %9d %11.3f %6s%s\n", events[i], wrapper, all[events[i] ".nlohmann"],
                all[events[i] ".floor"], ratio, limits[i], missed ? "  EXCEEDED" : ""
        }
        for (n = 10; n <= 10000; n *= 10) events[++count] = "Track3DCKeyPressed-" n
        printf "\n%-28s %9s %9s %9s %9s\n", "thereof in", "telemetry", "library", "system", "all"
        for (i = 1; i <= count; ++i) {
            name = events[i] ".wrapper"
            printf "%-28s %9d %9d %9d %9d\n", events[i], cost[name, "own"], cost[name, "library"],
                cost[name, "system"], all[name]
        }
        exit failed
    }' "$profiles"/* || fail "an event takes more instructions than its limit, see above"
