# Reads a build's .ninja_log: where the time of compiling and linking went, by target. Seconds of all steps added up: with
# two processors about half of them passed.
NR > 1 {
    took[$4] = $2 - $1  # milliseconds; of what was built twice, the newest
}
END {
    for (output in took) {
        target = "linking"
        if (output ~ /CMakeFiles\/.*\.dir\//) {
            target = output
            sub(/\.dir\/.*$/, "", target)
            sub(/CMakeFiles\//, "", target)
        }
        seconds[target] += took[output] / 1000
        steps[target]++
        all += took[output] / 1000
    }
    printf "%9s %6s  %s\n", "seconds", "steps", "target"
    for (target in seconds) printf "%9.1f %6d  %s\n", seconds[target], steps[target], target | "sort -rn"
    close("sort -rn")
    printf "%9.1f %6s  all\n", all, ""
}
