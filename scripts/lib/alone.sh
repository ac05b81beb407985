# Running hosts of the host-facing interface beside others. Sourced by the scripts that do.

# alone COMMAND...: with shared memory of its own where that is permitted, so that nobody's block is in the way.
alone() {
    for flags in -m -rm; do
        if unshare $flags mount -t tmpfs tmpfs /dev/shm 2>/dev/null; then
            unshare $flags sh -c 'mount -t tmpfs tmpfs /dev/shm && exec "$@"' sh "$@"
            return
        fi
    done
    "$@"
}
