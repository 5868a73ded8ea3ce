#!/usr/bin/env bash
# Runs what a new user runs, in a bare Debian of its own and from a clean clone of what is committed. Takes root.
#
#     scripts/fresh.sh [bookworm|trixie] [COMMAND [ARGUMENT]...]...
#
# COMMAND is run, test, lint or pack, and what follows goes to it: "run test all". Without one, run and then test; without a
# Debian, this system's own. After "pack deb" the packages are installed there, the programs run, and a host is built with
# them. The bare system is made by debootstrap in the temporary folder, and removed at the end. The clone's path holds blanks,
# commas and a "$".
set -euo pipefail
source "$(dirname -- "$0")/common.bash"

read_options "$@"
suite=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME-}")
case ${1-} in
bookworm | trixie)
    suite=$1
    shift
    ;;
esac
(($# > 0)) || set -- run test
commands=() # a line each
for argument in "$@"; do
    case $argument in
    run | test | lint | pack) commands+=("$argument") ;;
    *)
        ((${#commands[@]} > 0)) || fail "unknown argument $argument: --help says what there is"
        commands[-1]+=" $argument"
        ;;
    esac
done

steps=$((2 + ${#commands[@]})) steps_are_output=true
step "Looking for missing packages"
(($(id -u) == 0)) || fail "making a bare system takes root: run this as root"
need_packages debootstrap git
root=$scratch/root
project="home/a clone, of \$5"

# Each command in the bare system has mounts and processes of its own, which end with it.
namespaces=(unshare --mount --pid --fork --kill-child)

# can_mount FOLDER: whether FOLDER can be a mount point here.
can_mount() {
    local attempt=(sh -c 'mount -t proc proc "$0" && umount "$0"' "$1")
    "${namespaces[@]}" "${attempt[@]}" 2>/dev/null && return
    # In a plain chroot "/" is not a mount point, so its mounts cannot be made private.
    namespaces+=(--propagation unchanged)
    "${namespaces[@]}" "${attempt[@]}"
}

# make_bare_root: from the mirror that this system's own packages come from, if it has that suite.
make_bare_root() {
    local mirror file
    mirror=$(apt-get indextargets --format '$(REPO_URI)' "Identifier: Packages" "Release: $suite" | sed -n 1p)
    "${namespaces[@]}" debootstrap --variant=minbase --include=ca-certificates "$suite" "$root" ${mirror:+"$mirror"} || return
    # It reaches the network as this system does.
    for file in /etc/resolv.conf /etc/hosts; do
        [[ ! -e "$file" ]] || cp -L "$file" "$root$file" || return
    done
    apt-config dump Acquire >"$root/etc/apt/apt.conf.d/90acquire"
}

# in_bare_root COMMAND [ARGUMENT]...: unmounts at the end, for mounts that are not private would stay.
in_bare_root() {
    run "${namespaces[@]}" sh -c '
        trap "umount --lazy \"\$0/dev/pts\" \"\$0/proc\"" EXIT
        mount -t proc proc "$0/proc" && mkdir -p "$0/dev/pts" &&
            mount -t devpts -o newinstance,ptmxmode=0666 devpts "$0/dev/pts" || exit
        chroot "$0" /usr/bin/env -i HOME=/root LANG=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"
    ' "$root" "$@"
}

# Installs the packages, and uses them as their users do. Nothing of them stays when they are purged.
use_packages() {
    in_bare_root sh -euc '
        export DEBIAN_FRONTEND=noninteractive
        apt-get install -y "$0"/build/packages/corvane-tavi*.deb pkgconf >/dev/null
        cvtavi_test | diff "$0/tests/data/good_run.txt" -
        tavi_check | tail -n 1
        ls /usr/share/doc/corvane-tavi/events.html
        cp -r "$0/examples/minimal" /tmp
        g++ -std=c++20 /tmp/minimal/main.cpp -o /tmp/minimal/host $(pkg-config --cflags --libs corvane-tavi)
        /tmp/minimal/host
        apt-get purge -y corvane-tavi >/dev/null
        [ -z "$(find /usr -iname "*tavi*")" ]
    ' "/$project"
}

step "Making a bare $suite"
mkdir -m 755 "$root"
can_mount "$root" || fail "mounting is not permitted here, see above"
quietly make_bare_root || fail "there is no bare $suite: check the network; see above"
git clone --quiet . "$root/$project" || fail "the project cannot be cloned, see above"
[[ -z "$(git status --porcelain)" ]] || say "What is not committed is not part of it"

status=0
for command in "${commands[@]}"; do
    read -ra words <<<"$command"
    step "scripts/${words[0]}.sh ${words[*]:1}"
    in_bare_root sh -c 'cd "$0" && exec "$@"' "/$project" "scripts/${words[0]}.sh" "${words[@]:1}" || status=$?
    [[ "$command" != "pack deb" ]] || use_packages || fail "the packages cannot be used, see above"
done
exit "$status"
