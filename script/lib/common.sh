# Sourced by the scripts beside this folder: works in the top folder, whatever the caller's is.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# Prints the comment at the head of the calling script, and ends it, when --help is asked for.
help() {
    case "${1-}" in
    -h | --help)
        awk 'NR > 1 && !/^#/ { exit } NR > 1 { sub(/^# ?/, ""); print }' "$0"
        exit 0
        ;;
    esac
}

# quiet COMMAND...: runs it and shows what it printed only if it fails.
quiet() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if [ $status -ne 0 ]; then
        printf '%s: failed with %d\n' "$*" $status >&2
        cat "$log" >&2
    fi
    rm -f "$log"
    return $status
}
