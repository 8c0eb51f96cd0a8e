# Sourced by the other scripts: UnpackCorpus NAME DIRECTORY puts the kept inputs of a harness where it
# collects them, when it has collected none yet.
UnpackCorpus() {
    [ ! -d "$2" ] || return 0
    mkdir -p "$2"
    tar xJf "fuzz/corpora/$1.tar.xz" -C "$2"
}
