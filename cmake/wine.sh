#!/bin/sh
# Runs a Windows program in Wine: file names in UTF-8; no window, no sound, no messages of Wine's on the error stream.
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
# The prefix keeps the name of its server's folder without the path, so that every program needs the same temporary folder.
# Wine 10's server ends where that is not /tmp.
unset TMPDIR
# The first program makes the prefix while others wait, for two at once would damage it. Its output is discarded: the
# services that Wine starts then go on running, and would keep the output open.
if [ ! -e "$WINEPREFIX/made" ]; then
    mkdir -p "$WINEPREFIX"
    flock -o "$WINEPREFIX" sh -c '[ -e "$0/made" ] || wine cmd /c exit && touch "$0/made"' "$WINEPREFIX" \
        </dev/null >/dev/null 2>&1
fi
exec wine "$@"
