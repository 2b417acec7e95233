# What the two commands ./run and ./test share: the project's folders, messages, bounded commands and cleaning up.
# To be sourced by bash scripts that use `set -euo pipefail`.
# shellcheck shell=bash disable=SC2034

project=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)
build=$project/build
logs=$build/logs

Say() {
    printf '%s\n' "$*"
}

Fail() {
    printf '%s: %s\n' "$(basename -- "$0")" "$*" >&2
    exit 1
}

# Commands to be run when the script ends, whatever ends it; the last one registered runs first.
cleanups=()
active=

AtExit() {
    cleanups+=("$1")
}

CleanUp() {
    local status=$? index
    trap - EXIT
    trap '' INT TERM HUP
    if [[ -n $active ]]; then
        kill "$active" 2>/dev/null || true
        wait "$active" 2>/dev/null || true
    fi
    for ((index = ${#cleanups[@]} - 1; index >= 0; --index)); do
        ${cleanups[index]} || true
    done
    exit "$status"
}

trap CleanUp EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# RunBounded SECONDS LOG COMMAND...: runs a command without input and with its output in a log, and ends it with all its
# children after a time. It runs in the background, so that a signal to the script is answered at once.
RunBounded() {
    local seconds=$1 log=$2 status=0
    shift 2
    timeout --kill-after=10 "$seconds" "$@" >"$log" 2>&1 </dev/null &
    active=$!
    wait "$active" || status=$?
    active=
    if ((status == 124 || status == 137)); then
        printf 'Ended after %s seconds.\n' "$seconds" >>"$log"
    fi
    return "$status"
}

# RunOrFail WHAT SECONDS LOG COMMAND...: the same, and the end of the log with a message when the command fails.
RunOrFail() {
    local what=$1 log=$3
    shift
    Say "$what"
    if ! RunBounded "$@"; then
        tail -n 40 "$log" >&2
        Fail "$what failed; the whole output is in $log"
    fi
}

# Whether something becomes true within a number of seconds: WaitFor SECONDS COMMAND...
WaitFor() {
    local tries=$(($1 * 10))
    shift
    while ! "$@"; do
        if ((--tries <= 0)); then
            return 1
        fi
        sleep 0.1
    done
}
