# Steps of a script, and what each took. Sourced by the scripts that have several; expects `set -eu`.

steps_taken=""
steps_began=$(date +%s)

# step NAME COMMAND...: runs it, and notes how long it took. Its status is the command's, unless the shell ends there.
step() {
    step_name=$1
    step_began=$(date +%s)
    shift
    "$@"
    steps_taken="$steps_taken$step_name|$(($(date +%s) - step_began))
"
    step_name=""
}

# print_steps: a table of what was done, and of where it ended when that was too early.
print_steps() {
    [ -n "$steps_taken$step_name" ] || return 0
    echo
    printf '%-34s %8s\n' step seconds
    printf %s "$steps_taken" | while IFS='|' read -r name seconds; do printf '%-34s %8s\n' "$name" "$seconds"; done
    [ -z "$step_name" ] || printf '%-34s %8s\n' "$step_name" "$(($(date +%s) - step_began))  ended here"
    printf '%-34s %8s\n' total "$(($(date +%s) - steps_began))"
}
step_name=""
