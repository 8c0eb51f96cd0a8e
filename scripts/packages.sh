# shellcheck shell=bash
# Sourced by the other scripts, which set pipefail. RequirePackages NAME... prints the names of the missing Debian
# packages and installs them. If no package is missing, it needs no network. On systems without dpkg it does nothing.

LOCK_SECONDS=600 # longest wait for other programs that are installing packages
declare -A PROGRESS=([dlstatus]=downloaded [pmstatus]=installed [built]=built)

RequirePackages() {
    local missing=() as_root=() name
    command -v dpkg-query >/dev/null || return 0
    for name in "$@"; do
        dpkg-query -W -f '${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            { echo "Please install the missing packages as root: apt-get install ${missing[*]}" >&2; exit 1; }
        as_root=(sudo)
    fi
    echo "Installing missing packages: ${missing[*]}" >&2
    RunApt update || true # a source that fails may not matter
    RunApt install -y --no-install-recommends "${missing[@]}" ||
        { echo "Could not install: ${missing[*]}" >&2; exit 1; }
}

# Runs apt-get as root: the caller's array as_root contains sudo, or is empty if the user is root. Prints the output if
# apt-get fails. Waits while another program holds the lock of apt or dpkg.
RunApt() {
    local output lock end=$((SECONDS + LOCK_SECONDS)) is_waiting=no
    # apt-get writes progress reports to descriptor 3. Descriptor 1 would not do: apt-get closes the descriptor of the
    # reports before it runs the installation scripts of packages, and these scripts need descriptor 1 for their output.
    until output=$({ "${as_root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive \
        sh -c 'exec apt-get -qq -o APT::Status-Fd=3 "$@" 3>&1 1>&2' sh "$@" </dev/null 2>&4 |
        ShowProgress; } 4>&1); do
        lock=$(grep -m 1 -o 'Could not get lock.*' <<<"$output") || { echo "$output" >&2; return 1; }
        [ $SECONDS -lt $end ] || { echo "$lock Try again when that has ended." >&2; exit 1; }
        [ $is_waiting = yes ] || echo "Waiting for another program that is installing packages. $lock" >&2
        is_waiting=yes
        sleep 5
    done
}

# ShowProgress [TITLE] copies standard input to standard output, except the lines in which apt-get and ninja report
# progress ("built:1: 35%:Linking korvane"). At the first of these lines it prints the title on standard error. If
# standard error is a terminal, it also prints the percentage.
# shellcheck disable=SC2120 # RunApt passes no title
ShowProgress() {
    local line title=${1:-} percent=
    while IFS= read -r line; do
        [[ $line != built:*:Re-* ]] || continue # ninja is looking for new source files
        if [[ ! $line =~ ^(dlstatus|pmstatus|built):[^:]*:\ *([0-9]+) ]]; then
            printf '%s\n' "$line"
            continue
        fi
        [ -z "$title" ] || echo "$title" >&2
        title=
        [ -t 2 ] || continue
        percent=${BASH_REMATCH[2]}
        printf '\r%3d %% %s ' "$percent" "${PROGRESS[${BASH_REMATCH[1]}]}" >&2
    done
    [ -z "$percent" ] || printf '\r%20s\r' '' >&2
}
