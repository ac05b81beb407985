# What the fuzzing scripts share. Sourced after packages.sh and builds.sh; expects to stand at the top of the tree.

# fuzz_targets: the names of all targets.
fuzz_targets() {
    for source in fuzz/fuzz_*.cpp; do basename "$source" .cpp; done
}

# check_fuzz_target NAME
check_fuzz_target() {
    [ -e "fuzz/$1.cpp" ] && return 0
    echo "$0: no target named \"$1\"; there are:" $(fuzz_targets) >&2
    exit 2
}

# build_fuzz_targets PRESET: the targets in build/PRESET/bin, their seeds in build/PRESET/seeds/TARGET.
build_fuzz_targets() {
    build "$1" fuzz_targets
    LLVM_PROFILE_FILE=/dev/null "build/$1/bin/make_seeds" "build/$1/seeds"
    for name in $(fuzz_targets); do mkdir -p "build/$1/seeds/$name" "build/fuzz/corpus/$name"; done
}

# Targets that write files do it here, in memory where there is such a place; removed when the script ends.
fuzz_scratch() {
    TMPDIR=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")" dabspi-fuzz.XXXXXX)
    export TMPDIR
    trap 'rm -rf "$TMPDIR"' EXIT
    trap 'exit 130' INT TERM
}
