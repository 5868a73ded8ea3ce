#!/usr/bin/env bash
# Builds cvtavi_test and runs it. What it prints is the program's output, and its exit status the program's; progress is
# shown on a terminal only.
#
#     scripts/run.sh
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=4
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libcli11-dev nlohmann-json3-dev
need_build_folder run
step "Configuring in build/run"
configure --preset release -B build/run -DBUILD_TESTING=OFF
step "Building"
compile build/run
step "Running build/run/bin/cvtavi_test"
become build/run/bin/cvtavi_test
