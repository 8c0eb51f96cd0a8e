# shellcheck shell=bash
# Sourced as $root/scripts/build.sh by the scripts that need Korvane. Build PRESET TARGETS [OPTION]... configures
# build/PRESET with cmake, which gets the options, and builds the targets. Progress goes to standard error. Prints
# nothing if all targets are up to date.
. "${root:?}/scripts/packages.sh"

Build() {
    local folder=$root/build/$1 output
    RequirePackages g++ cmake ninja-build
    mkdir -p "$folder"
    exec 9<"$folder" # only one build at a time there
    flock -n 9 || { echo "Waiting for another build in $folder..." >&2; flock 9; }
    output=$(RunBuild "$@" </dev/null 2>&1 | ShowProgress "Building Korvane (about a minute)...") || {
        printf '%s\n' "$output" "The build failed. If you have not changed the sources, remove $folder and try again." >&2
        exit 1
    }
    exec 9<&-
}

RunBuild() {
    local preset=$1 targets=$2
    shift 2
    cd "$root" || return
    # CMake refuses a build folder that belongs to another generator or was copied from another path.
    if ! grep -qsxF "# For build in directory: $root/build/$preset" "build/$preset/CMakeCache.txt" ||
        [ ! -e "build/$preset/build.ninja" ]; then
        rm -rf "build/$preset/CMakeCache.txt" "build/$preset/CMakeFiles"
    fi
    if [ $# -gt 0 ] || [ ! "build/$preset/build.ninja" -nt CMakePresets.json ]; then
        cmake --preset "$preset" "$@" || return
    fi
    # shellcheck disable=SC2086 # targets are words
    NINJA_STATUS='built:1:%p:' cmake --build --preset "$preset" --target $targets
}

# CheckSignature COMMAND...: runs a bench program. Fails if the node count differs from tests/bench.signature.
CheckSignature() {
    local printed signature recorded
    recorded=$(cat "$root/tests/bench.signature")
    printed=$("$@" | tr -d '\r')
    printf '%s\n' "$printed"
    signature=$(sed -n 's/^Nodes: //p' <<<"$printed")
    [ "$signature" = "$recorded" ] || { echo "The signature of $* is $signature, not $recorded as recorded." >&2; return 1; }
}
