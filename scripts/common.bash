# Sourced by the other scripts: what they share.

cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$1" >&2
    exit 1
}

# need_packages PACKAGE...: installs those that are missing, and asks nothing of the network when none is.
need_packages() {
    local missing=() package
    for package in "$@"; do
        [[ "$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null)" == "install ok installed" ]] || missing+=("$package")
    done
    ((${#missing[@]} == 0)) && return
    say "Installing ${missing[*]}"
    local as_root=(env DEBIAN_FRONTEND=noninteractive)
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "installing ${missing[*]} takes root: run this as root, or install sudo"
        as_root=(sudo "${as_root[@]}")
    fi
    quietly "${as_root[@]}" apt-get update ||
        fail "the package lists cannot be fetched: check the network and /etc/apt/sources.list"
    quietly "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}" ||
        fail "these packages cannot be installed: ${missing[*]}"
}

# quietly COMMAND...: shows what the command prints only when it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || status=$?
    ((status == 0)) || cat "$log" >&2
    rm -f "$log"
    return "$status"
}
