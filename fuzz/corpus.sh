# Sourced by the other scripts. UnpackCorpus NAME DIRECTORY unpacks the inputs in fuzz/corpora/NAME.tar.xz
# into the directory, unless the directory exists.
UnpackCorpus() {
    [ ! -d "$2" ] || return 0
    mkdir -p "$2"
    tar xJf "fuzz/corpora/$1.tar.xz" -C "$2"
}
