#!/usr/bin/env bash
# places_test.sh PROGRAM LIBRARY...: whether each place where the libraries ask for memory has been
# refused by the test program. Prints the places, a missed one with "!", one that cannot be reached
# with "-"; ends with 1 when one was missed.
set -euo pipefail
program=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

DRVREPO_PLACES=$work/reached "$program" --gtest_brief=1 >"$work/log" 2>&1 || {
    cat "$work/log"
    exit 1
}

# What no program can bring about, as addr2line names it.
unreachable=(
    # Room was made before.
    'enlarge.*append.*replace at DriverNames'
    # The libraries make no plain event of a repository, so nobody can have one cloned by their code.
    'ObserverEvent<IDriverRepository>::clone'
    # All that call it hold a copy of it.
    'TYMarshaller::Buffer::reserve\(unsigned int\) at [^ ]+ $'
    # setTimeslots has seen to it that there is a block for the clone.
    'ObserverEvent<IChannelGroup>::clone.*ObserverContainer<IChannelGroup>::Clones'
)

status=0
for library in "$@"; do
    path=$(readlink -f "$library")
    # A request is a call of an operator new; its place is the address that it returns to.
    objdump -d --no-show-raw-insn "$path" | awk '
        asked && $1 ~ /:$/ { print substr($1, 1, length($1) - 1) }
        { asked = /call.*<_Zn[aw][jm]/ }' | sort -u >"$work/places"
    [ -s "$work/places" ] || {
        echo "$library: asks for memory nowhere?"
        exit 1
    }
    while read -r file offset; do
        [ "$(readlink -f "$file")" != "$path" ] || echo "$offset"
    done <"$work/reached" | sort -u >"$work/here"
    echo "$(basename "$library"): $(comm -12 "$work/places" "$work/here" | wc -l) of" \
        "$(wc -l <"$work/places") places reached"
    while read -r offset; do
        name=$(addr2line -Cfpie "$path" "$offset" | sed 's,/[^ ]*/,,g' | tr '\n' ' ')
        mark=' '
        if ! grep -qx "$offset" "$work/here"; then
            mark=!
            for reason in "${unreachable[@]}"; do
                [[ ! $name =~ $reason ]] || mark=-
            done
            [ $mark = - ] || status=1
        fi
        echo "$mark $name"
    done <"$work/places"
done
exit $status
