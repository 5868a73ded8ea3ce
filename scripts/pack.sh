#!/usr/bin/env bash
# Packs the program, both libraries, the package for host applications and the event reference into one archive in
# build/packages/, and prints its name.
#
#     scripts/pack.sh [release|windows]
#
# A .tar.gz for Linux with release, the default; a .zip for 64-bit Windows, built by mingw-w64, with windows.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
(($# <= 1)) || fail "takes one preset: --help says which there are"
preset=${1:-release}
[[ "$preset" == release || "$preset" == windows ]] || fail "unknown preset $preset: there are release and windows"
build=$PWD/build/pack-$preset
packages=$PWD/build/packages

steps=4
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev
need_build_folder "pack-$preset"
[[ "$preset" != windows ]] || scripts/windows-libraries.sh >&2
step "Configuring in build/pack-$preset"
configure --preset "$preset" -B "$build" -DBUILD_TESTING=OFF
step "Building"
compile "$build"
step "Packing into build/packages"
quietly cpack --config "$build/CPackConfig.cmake" -B "$packages" || fail "packing failed, see above"
rm -rf "$packages/_CPack_Packages"
name=$(sed -n 's/^set(CPACK_PACKAGE_FILE_NAME "\(.*\)")$/\1/p' "$build/CPackConfig.cmake")
ls "$packages/$name".*
