#!/usr/bin/env bash
# Runs what a new user runs, in a bare Debian of its own and from a clean clone of what is committed. Takes root.
#
#     scripts/fresh.sh [bookworm|trixie] [COMMAND [ARGUMENT]...]...
#
# COMMAND is run, check, test or pack, and what follows goes to it: "run test release". Without one, run and then test; without
# a Debian, this system's own. The bare system is made by debootstrap in the temporary folder, and removed at the end. The
# clone's path holds blanks, commas and a "$".
set -euo pipefail
source "$(dirname -- "$0")/common.bash"
source scripts/bare_root.bash

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
    run | check | test | pack) commands+=("$argument") ;;
    *)
        ((${#commands[@]} > 0)) || fail "unknown argument $argument: --help says what there is"
        commands[-1]+=" $argument"
        ;;
    esac
done

steps=$((2 + ${#commands[@]}))
steps_are_output=true
step "Looking for missing packages"
(($(id -u) == 0)) || fail "making a bare system takes root: run this as root"
need_packages debootstrap git
root=$scratch/root
project="home/a clone, of \$5"

step "Making a bare $suite"
mkdir -m 755 "$root"
quietly can_mount "$root" || fail "mounting is not permitted here, see above"
quietly make_bare_root "$suite" || fail "there is no bare $suite: check the network; see above"
git clone --quiet . "$root/$project" || fail "the project cannot be cloned, see above"
[[ -z "$(git status --porcelain)" ]] || say "What is not committed is not part of it"

status=0
for command in "${commands[@]}"; do
    read -ra words <<<"$command"
    step "scripts/${words[0]}.sh ${words[*]:1}"
    in_bare_root sh -c 'cd "$0" && exec "$@"' "/$project" "scripts/${words[0]}.sh" "${words[@]:1}" || status=$?
done
exit "$status"
