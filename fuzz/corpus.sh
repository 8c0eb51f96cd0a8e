# Sourced by the other scripts: UnpackCorpus NAME DIRECTORY unpacks the kept inputs of a harness into
# the directory where it collects inputs, unless that exists.
UnpackCorpus() {
    [ ! -d "$2" ] || return 0
    mkdir -p "$2"
    tar xJf "fuzz/corpora/$1.tar.xz" -C "$2"
}
