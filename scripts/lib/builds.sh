# Builds of the presets in CMakePresets.json, which alone say how the tree is configured. Sourced after packages.sh.

# build PRESET [TARGET...]: up to date in build/PRESET when this returns. What is printed is kept in build/PRESET/build.log, and shown
# only when it fails.
build() {
    built_preset=$1
    shift
    mkdir -p "build/$built_preset"
    {
        cmake --preset "$built_preset" && cmake --build --preset "$built_preset" --parallel "$(nproc)" ${1:+--target "$@"}
    } >"build/$built_preset/build.log" 2>&1 || {
        tail -n 60 "build/$built_preset/build.log" >&2
        echo "$0: the preset $built_preset cannot be built; the whole output is in build/$built_preset/build.log" >&2
        exit 1
    }
}
