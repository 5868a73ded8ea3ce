#!/usr/bin/env bash
# Makes the packages for Debian and installs them in a bare root of their own. There the programs run, and a host application
# builds by g++ and pkg-config.
#
#     debian_packages_test.sh SOURCE GENERATOR COMPILER
#
# Exits with 77 where this cannot be done, and says why.
set -euo pipefail
source=$1 generator=$2 compiler=$3
source "$source/scripts/bare_root.bash"

skip() {
    printf 'Skipped: %s\n' "$1"
    exit 77
}

fail() {
    printf '%s\n' "$1" >&2
    exit 1
}

(($(id -u) == 0)) || skip "making a bare root takes root's permissions"
for tool in apt-get debootstrap dpkg-shlibdeps file unshare; do
    command -v "$tool" >/dev/null || skip "$tool is missing"
done

apt_get() {
    in_bare_root env DEBIAN_FRONTEND=noninteractive apt-get -y --no-install-recommends "$@"
}

folder=$(mktemp -d)
root=$folder/root
trap 'rm -rf --one-file-system "$folder"' EXIT
umask 022
chmod 755 "$folder"
mkdir "$root"
can_mount "$root" || skip "mounting is not permitted here"

cmake -S "$source" --preset deb -B "$folder/build" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler"
cmake --build "$folder/build"
cpack --config "$folder/build/CPackConfig.cmake" -B "$folder/packages"

make_bare_root "$(. /etc/os-release && echo "${VERSION_CODENAME:-}")"
cp "$folder"/packages/corvane-tavi_*.deb "$root/root/corvane-tavi.deb"
cp "$folder"/packages/corvane-tavi-dev_*.deb "$root/root/corvane-tavi-dev.deb"
cp -r "$source/examples/minimal" "$root/root/"

apt_get install /root/corvane-tavi.deb
in_bare_root cvtavi_test | diff "$source/tests/data/good_run.txt" - || fail "the program does not print what it should"
found=$(in_bare_root tavi_check | tail -n 1)
expected="$(grep -c '^PASSED$' "$source/tests/data/good_run.txt") passed, 0 failed"
[[ "$found" == "$expected" ]] || fail "tavi_check ends with \"$found\""
for file in share/doc/corvane-tavi/{CHANGELOG.md,events.{csv,html,json,md},{events,payloads}.schema.json} \
    lib/corvane-tavi/UPI/upiconfig.xml; do
    [[ -f "$root/usr/$file" ]] || fail "/usr/$file is missing"
done

apt_get install /root/corvane-tavi-dev.deb g++ pkg-config
in_bare_root sh -c 'cd /root/minimal && g++ -std=c++20 main.cpp -o host $(pkg-config --cflags --libs corvane-tavi)'
expected='Reporting for CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214'
found=$(in_bare_root /root/minimal/host)
[[ "$found" == "$expected" ]] || fail "the host prints \"$found\""
in_bare_root sh -c '[ -f /usr/lib/$(g++ -print-multiarch)/cmake/CorvaneTavi/CorvaneTaviConfig.cmake ]' ||
    fail "CMake's package is not where CMake looks"

apt_get purge corvane-tavi
left=$(find "$root/usr" -iname '*tavi*')
[[ -z "$left" ]] || fail "purging leaves $left"
