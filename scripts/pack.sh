#!/usr/bin/env bash
# Packs the programs, both libraries, the files by which host applications find them and the event reference, leaves the
# archive or the packages in build/packages/, and prints their names.
#
#     scripts/pack.sh [release|deb|windows]
#
# A .tar.gz for Linux with release, the default; with deb two packages for this system, corvane-tavi and corvane-tavi-dev,
# to be installed by "apt-get install"; a .zip for 64-bit Windows, built by mingw-w64, with windows.
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
(($# <= 1)) || fail "takes one preset: --help says which there are"
preset=${1:-release}
[[ " release deb windows " == *" $preset "* ]] || fail "unknown preset $preset: there are release, deb and windows"
build=$PWD/build/pack-$preset
packages=$PWD/build/packages

steps=4
step "Looking for missing packages"
need_packages g++ cmake ninja-build libmxml-dev libcli11-dev nlohmann-json3-dev
[[ "$preset" != deb ]] || need_packages dpkg-dev file
need_build_folder "pack-$preset"
[[ "$preset" != windows ]] || scripts/windows-libraries.sh >&2
step "Configuring in build/pack-$preset"
configure --preset "$preset" -B "$build" -DBUILD_TESTING=OFF
step "Building"
compile "$build"
step "Packing into build/packages"
umask 022 # a package's folders are readable by everybody
quietly cpack --config "$build/CPackConfig.cmake" -B "$build/packed" || fail "packing failed, see above"
mkdir -p "$packages"
for file in "$build/packed"/*.*; do
    mv "$file" "$packages"
    printf '%s\n' "$packages/${file##*/}"
done
