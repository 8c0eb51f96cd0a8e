# Sourced by the other scripts: RequirePackages NAME... installs the Debian packages that are
# missing, and says so. With all of them there it needs no network.
RequirePackages() {
    local missing=() name
    for name in "$@"; do
        if ! dpkg-query -W -f '${Status}' "$name" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$name")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Please install the missing packages: apt-get install ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    echo "Installing missing packages: ${missing[*]}" >&2
    { "${as_root[@]}" apt-get update -qq &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >&2 || {
        echo "Could not install: ${missing[*]}" >&2
        exit 1
    }
}
