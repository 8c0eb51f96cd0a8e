# shellcheck shell=bash
# Sourced by the scripts that run programs of Windows: installs Wine and gives it a home under build/.
# Wine PROGRAM.exe [WORD]... runs one; MakeRunner PROGRAM.exe SCRIPT makes a script that runs one on pipes
# as Windows has them, by the bridge of the tests.
RequirePackages g++-mingw-w64-x86-64-posix wine wine64
export LC_ALL=C.UTF-8 WINEDEBUG=-all WINEPREFIX=${root:?}/build/wine WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
mkdir -p "$WINEPREFIX"

# Debian's wineserver may be on the path or not. It stays between two programs, which start faster so, and
# ends with the script that started it.
wine_server=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
is_server_mine=no
! "$wine_server" -p 2>/dev/null || is_server_mine=yes
EndWine() { [ $is_server_mine = no ] || "$wine_server" -k || true; }

# With addresses at random, Wine fails to start one program in a thousand.
Wine() { setarch -R wine "$@"; }
Wine wineboot --init >/dev/null 2>&1 || { echo "Wine does not start (Wine wineboot --init)" >&2; exit 1; }

MakeRunner() {
    local folder
    folder=$(cd "$(dirname "$1")" && pwd)
    printf '#!/bin/sh\nexec setarch -R wine "%s" "%s" "$@"\n' "$root/build/windows-debug/bridge.exe" \
        "$folder/$(basename "$1")" >"$2"
    chmod +x "$2"
}
