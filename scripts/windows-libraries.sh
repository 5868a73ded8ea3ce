#!/usr/bin/env bash
# Builds the libraries of the Windows build, with mingw-w64, into build/windows-libraries/: Mini-XML from Debian's source
# package of the installed libmxml-dev's version, GoogleTest from Debian's sources, and the headers of nlohmann-json and
# CLI11. Does nothing when they are there in these versions. When it fails, earlier ones stay.
#
#     scripts/windows-libraries.sh
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

take_no_arguments "$@"
steps=3
steps_are_output=true
need_packages g++-mingw-w64-x86-64-posix cmake ninja-build make patch xz-utils libmxml-dev googletest nlohmann-json3-dev \
    libcli11-dev
need_build_folder windows-libraries

prefix=$PWD/build/windows-libraries
toolchain=$PWD/cmake/MingwToolchain.cmake
host=x86_64-w64-mingw32
mxml_version=$(dpkg-query -W -f '${source:Version}' libmxml-dev)
versions=$(dpkg-query -W -f '${Package} ${Version}\n' libmxml-dev googletest nlohmann-json3-dev libcli11-dev \
    g++-mingw-w64-x86-64-posix)
if [[ "$(cat "$prefix/versions" 2>/dev/null)" == "$versions" ]]; then
    say "Windows libraries: up to date"
    exit 0
fi

work=$scratch
new=$work/windows-libraries

# fetch_mxml: unpacks the source package into $work/mxml. The sources come from the mirrors of the system's packages, by
# package lists of their own: the system's are not changed.
fetch_mxml() {
    local file
    mkdir -p "$work/sources" "$work/index/partial"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [[ ! -e "$file" ]] || sed -n 's/^deb /deb-src /p' "$file" >>"$work/sources/all.list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [[ ! -e "$file" ]] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$work/sources/${file##*/}"
    done
    local apt=(apt-get -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/sources"
        -o "Dir::State::Lists=$work/index" -o APT::Sandbox::User= -o APT::Update::Error-Mode=any)
    # Not the .dsc file, which some mirrors lack. apt checks the two archives by the package list.
    if ! "${apt[@]}" update >"$work/log" 2>&1 || ! (
        cd "$work"
        "${apt[@]}" source --download-only --tar-only "mxml=$mxml_version"
        "${apt[@]}" source --download-only --diff-only "mxml=$mxml_version"
    ) >>"$work/log" 2>&1; then
        sed -n '/^[EW]: /p' "$work/log" >&2
        fail "no source package mxml $mxml_version: name a mirror that has it in /etc/apt/sources.list.d/, then run this again"
    fi
    mkdir "$work/mxml"
    tar -xf "$work"/mxml_*.orig.tar.* -C "$work/mxml" --strip-components 1
    tar -xf "$work"/mxml_*.debian.tar.* -C "$work/mxml"
    sed 's/[ #].*//; /^$/d' "$work/mxml/debian/patches/series" 2>/dev/null | while read -r file; do
        patch -d "$work/mxml" -p1 -s <"$work/mxml/debian/patches/$file" || fail "Mini-XML cannot be patched, see above"
    done
}

step "Windows libraries: fetching and building Mini-XML $mxml_version"
fetch_mxml
(
    cd "$work/mxml"
    # On Windows it calls read() and write() without their header.
    quietly ./configure --host=$host --prefix=/ --disable-shared --disable-threads CC=$host-gcc-posix \
        CFLAGS="-O2 -include io.h"
    quietly make libmxml.a
) || fail "Mini-XML cannot be built, see above"
install -D -m 644 "$work/mxml/mxml.h" "$new/include/mxml.h"
install -D -m 644 "$work/mxml/libmxml.a" "$new/lib/libmxml.a"

step "Windows libraries: building GoogleTest"
quietly cmake -S /usr/src/googletest -B "$work/googletest" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_GMOCK=OFF &&
    quietly cmake --build "$work/googletest" &&
    quietly cmake --install "$work/googletest" --prefix "$new" || fail "GoogleTest cannot be built, see above"

step "Windows libraries: copying nlohmann-json and CLI11"
# Copied, for /usr/include itself holds this system's headers as well.
mkdir -p "$new/share/cmake"
cp -r /usr/include/{nlohmann,CLI} "$new/include/"
cp -r /usr/share/cmake/{nlohmann_json,CLI11} "$new/share/cmake/"

# Only now are the old ones replaced. The versions are removed first and written last: whoever finds them finds all.
rm -rf "$prefix/versions" "$prefix"
mv "$new" "$prefix"
printf '%s\n' "$versions" >"$prefix/versions"
