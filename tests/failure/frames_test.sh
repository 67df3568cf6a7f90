#!/usr/bin/env bash
# frames_test.sh COMPILER FOLDER...: whether every function of the sources in the folders makes do
# with a stack frame of 512 bytes, and of a size known beforehand. Prints the largest ones.
set -euo pipefail
compiler=$1
shift
cd "$(dirname "$0")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

find "$@" -name '*.cpp' -print0 |
    xargs -0 -P "$(nproc)" -I{} sh -c '"$0" -std=c++17 -O2 -fPIC -fvisibility=hidden -fstack-usage \
        -Iinclude -Iutility/include -Isrc -c "$1" -o "$2/$(echo "$1" | tr / _).o"' \
        "$compiler" {} "$work"

cat "$work"/*.su | awk -F '\t' '{ sub(/^[^:]*\//, "", $1); print $2 "\t" $3 "\t" $1 }' |
    sort -rn >"$work/frames"
head -5 "$work/frames"
echo "$(wc -l <"$work/frames") functions"
awk -F '\t' '$1 > 512 || $2 == "dynamic" { print "too large: " $0; bad = 1 }
    END { exit bad || NR == 0 }' "$work/frames"
