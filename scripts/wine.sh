# shellcheck shell=bash
# Sourced by the scripts that run programs of Windows: installs Wine and gives it a home under build/.
# Wine PROGRAM.exe [WORD]... runs one; MakeRunner PROGRAM.exe SCRIPT makes a script that runs one on pipes
# as Windows has them, by the bridge of the tests.
RequirePackages g++-mingw-w64-x86-64-posix wine wine64
export LC_ALL=C.UTF-8 WINEDEBUG=-all WINEPREFIX=${root:?}/build/wine WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
mkdir -p "$WINEPREFIX"

# With addresses at random, Wine fails to start one program in a thousand.
Wine() { setarch -R wine "$@"; }
flock --close "$WINEPREFIX" setarch -R wine wineboot --init >/dev/null 2>&1 || { echo "Wine does not start (wineboot --init in $WINEPREFIX)" >&2; exit 1; }

MakeRunner() {
    printf '#!/bin/sh\nexec setarch -R wine "%s" "%s" "$@"\n' "$root/build/windows-debug/bridge.exe" "$(realpath "$1")" >"$2"
    chmod +x "$2"
}
