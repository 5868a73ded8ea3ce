# Sourced by the other scripts: what they share.
#
# A script sets `steps`, the number of its calls of step(), `steps_are_output` when these belong to its output, and `failure`,
# its exit status when it fails, when that is not 1.

script=$(realpath -- "$0")
CDPATH='' cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."
steps=0 step=0 steps_are_output=false failure=1

# All temporary files of the script and of what it starts are in one folder. When the script ends or is interrupted, what it
# started ends first, and then the folder is removed.
scratch=$(mktemp -d)
users_tmpdir=${TMPDIR-}
export TMPDIR=$scratch
job=
at_exit() { :; } # a script may define its own
trap 'end_job; at_exit; rm -rf "$scratch"' EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# run COMMAND...: in a process group of its own, which a signal to the script ends at once, as the shell handles a signal
# while it waits.
run() {
    local status=0
    set -m
    "$@" </dev/null &
    job=$!
    set +m
    wait "$job" || status=$?
    job=
    return "$status"
}

end_job() {
    [[ -n "$job" ]] || return 0
    kill -TERM -- "-$job" 2>/dev/null || true
    wait "$job" 2>/dev/null || true
    job=
}

# become PROGRAM [ARGUMENT]...: replaces the script by that program, in the user's own environment.
become() {
    rm -rf "$scratch"
    if [[ -n "$users_tmpdir" ]]; then TMPDIR=$users_tmpdir; else unset TMPDIR; fi
    exec "$@"
}

fail() {
    printf '%s: %s\n' "${script##*/}" "$1" >&2
    exit "$failure"
}

# say TEXT: on standard output when the steps are part of the output; else on the error stream, if that is a terminal.
say() {
    if $steps_are_output; then
        printf '%s\n' "$1"
    elif [[ -t 2 ]]; then
        printf '%s\n' "$1" >&2
    fi
}

# step TEXT: says what is done next, as "[2/6] TEXT".
step() {
    step=$((step + 1))
    say "[$step/$steps] $1"
}

# usage: what --help prints, the comment at the script's head.
usage() {
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$script"
}

# read_options ARGUMENT...: answers --help and refuses any other option.
read_options() {
    local argument
    for argument in "$@"; do
        case $argument in
        -h | --help)
            usage
            exit
            ;;
        -*) fail "unknown option $argument: --help says what there is" ;;
        esac
    done
}

# take_no_arguments ARGUMENT...: for a script that has only --help.
take_no_arguments() {
    read_options "$@"
    (($# == 0)) || fail "unknown argument $1: --help says what there is"
}

# has_any WORDS WORD...: whether one of the words is in WORDS, a list separated by blanks.
has_any() {
    local word
    for word in "${@:2}"; do
        [[ " $1 " != *" $word "* ]] || return 0
    done
    return 1
}

# need_packages PACKAGE...: installs those that are missing, and asks nothing of the network when none is.
need_packages() {
    local missing=() package
    command -v dpkg-query >/dev/null || fail "dpkg-query is missing: run this on Debian, whose packages it takes"
    for package in "$@"; do
        [[ "$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null)" == "install ok installed" ]] || missing+=("$package")
    done
    ((${#missing[@]} == 0)) && return
    say "Installing ${missing[*]}"
    # One script at a time: apt-get update fails when another one is running.
    local apt_get=(flock /var/lib/dpkg env DEBIAN_FRONTEND=noninteractive apt-get)
    if (($(id -u) != 0)); then
        { command -v sudo && sudo -v; } >/dev/null 2>&1 ||
            fail "installing takes root: run \"apt-get install ${missing[*]}\" as root, then this again"
        apt_get=(sudo "${apt_get[@]}")
    fi
    quietly "${apt_get[@]}" update ||
        fail "the package lists cannot be fetched: check the network and /etc/apt/sources.list, then run this again"
    quietly "${apt_get[@]}" install -y --no-install-recommends -o DPkg::Lock::Timeout=600 "${missing[@]}" ||
        fail "these packages cannot be installed, see above: ${missing[*]}"
}

# need_build_folder NAME...: makes build/, which holds everything that a script leaves, and locks each build/NAME for this
# script and what it starts: another run that needs it waits.
locks=()
need_build_folder() {
    local name lock made_in
    mkdir -p build 2>/dev/null && [[ -w build ]] ||
        fail "$PWD/build cannot be written: run this as its owner, or in a copy of your own"
    for name in "$@"; do
        exec {lock}>"build/.$name.lock"
        locks+=("$lock")
        flock -n "$lock" || {
            say "Waiting for another run that uses build/$name"
            flock "$lock"
        }
        made_in=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "build/$name/CMakeCache.txt" 2>/dev/null) || true
        [[ -z "$made_in" || "$made_in" -ef "$PWD" ]] ||
            fail "build/$name was made in $made_in: remove $PWD/build/$name, then run this again"
    done
}

# without_locks COMMAND [ARGUMENT]...: for a process that may outlive the script.
without_locks() (
    for lock in "${locks[@]}"; do
        exec {lock}>&-
    done
    "$@"
)

configure() {
    quietly cmake "$@" || fail "configuring failed, see above"
}

# compile ARGUMENT...: cmake --build. On a terminal its progress is shown; else nothing, and when it fails the errors alone.
compile() {
    if [[ -t 1 ]] && $steps_are_output; then
        run cmake --build "$@" || fail "building failed, see above"
    else
        quietly cmake --build "$@" -- --quiet || fail "building failed, see above"
    fi
}

# quietly COMMAND...: shows what the command prints only when it fails.
quietly() {
    local log status=0
    command -v "$1" >/dev/null || fail "$1 is missing: install it, or add its folder to PATH"
    log=$(mktemp)
    run "$@" >"$log" 2>&1 || status=$?
    ((status == 0)) || cat "$log" >&2
    rm -f "$log"
    return "$status"
}
