# Sourced by what runs commands in a bare Debian: a root directory, $root, with only the most necessary packages. Takes root.

# Each command has mounts and processes of its own, which end with it.
namespaces=(unshare --mount --pid --fork --kill-child)

# can_mount FOLDER: whether FOLDER can be a mount point here.
can_mount() {
    local attempt=(sh -c 'mount -t proc proc "$0" && umount "$0"' "$1")
    "${namespaces[@]}" "${attempt[@]}" 2>/dev/null && return
    # In a plain chroot "/" is not a mount point, so its mounts cannot be made private.
    namespaces+=(--propagation unchanged)
    "${namespaces[@]}" "${attempt[@]}"
}

# make_bare_root SUITE: makes $root, from the mirror that this system's own packages come from if it has that suite.
make_bare_root() {
    local mirror file
    mirror=$(apt-get indextargets --format '$(REPO_URI)' "Identifier: Packages" "Release: $1" | sed -n 1p)
    "${namespaces[@]}" debootstrap --variant=minbase --include=ca-certificates "$1" "$root" ${mirror:+"$mirror"} || return
    # It reaches the network as this system does.
    for file in /etc/resolv.conf /etc/hosts; do
        [[ ! -e "$file" ]] || cp -L "$file" "$root$file" || return
    done
    apt-config dump Acquire >"$root/etc/apt/apt.conf.d/90acquire"
}

# in_bare_root COMMAND [ARGUMENT]...: unmounts at the end, for mounts that are not private would stay.
in_bare_root() {
    "${namespaces[@]}" sh -c '
        trap "umount --lazy \"\$0/dev/pts\" \"\$0/proc\"" EXIT
        mount -t proc proc "$0/proc" && mkdir -p "$0/dev/pts" &&
            mount -t devpts -o newinstance,ptmxmode=0666 devpts "$0/dev/pts" || exit
        chroot "$0" /usr/bin/env -i HOME=/root LANG=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"
    ' "$root" "$@"
}
