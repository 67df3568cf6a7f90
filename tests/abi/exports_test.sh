#!/usr/bin/env bash
# exports_test.sh MAP LIBRARY [MAP LIBRARY]...: each library exports what its map lists, no more and
# no less. A line that ends in a star stands for one function, whose arguments have other names on
# other machines.
set -euo pipefail
export LC_ALL=C

listed() {
    sed -nE '/^global:/,/^local:/s/^ +"?([^";{}]+)"?;$/\1/p' "$1" | sed 's/\*$/(...)/'
}

exported() {
    local shortened
    shortened=$(sed -nE 's/^ +([^" ]*)\*;$/s|^\1\\(.*|\1(...)|/p' "$1")
    nm -DC --defined-only "$2" | sed -E 's/^[0-9a-f]+ +[A-Za-z] //' | sed -E "$shortened"
}

wrong=0
while [ $# -gt 0 ]; do
    [ -n "$(listed "$1")" ]
    diff -U 0 --label "listed in ${1##*/}" <(listed "$1" | sort -u) \
        --label "exported by ${2##*/}" <(exported "$1" "$2" | sort -u) || wrong=1
    shift 2
done
exit $wrong
