#!/bin/sh
# Runs a program for Windows: file names in UTF-8; no window, no sound, no messages of Wine's on the error stream.
#
#     cmake/wine.sh PREFIX PROGRAM [ARGUMENT]...
#
# CORVANE_WINEPREFIX in the environment is a prefix to use in place of PREFIX.
WINEPREFIX=${CORVANE_WINEPREFIX:-$1}
shift
LC_ALL=C.UTF-8
WINEDEBUG=-all
WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe,winex11.drv,winewayland.drv,winealsa.drv,wineoss.drv,winepulse.drv=
export WINEPREFIX LC_ALL WINEDEBUG WINEDLLOVERRIDES
unset DISPLAY
# The server is found in the temporary folder, by its name there alone; Wine 10's ends where that is not /tmp.
unset TMPDIR
# The first program has the prefix made, and others wait: two that make it at once spoil it. What Wine starts then gets nobody's
# output, which it would keep open.
if [ ! -e "$WINEPREFIX/made" ]; then
    mkdir -p "$WINEPREFIX"
    flock -o "$WINEPREFIX" sh -c '[ -e "$0/made" ] || wine cmd /c exit && touch "$0/made"' "$WINEPREFIX" \
        </dev/null >/dev/null 2>&1
fi
exec wine "$@"
