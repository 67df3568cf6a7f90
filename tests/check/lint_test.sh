#!/usr/bin/env bash
# Proves that what judges the findings of script/lint fails on what no exception names, and on an
# exception that nothing needs.
set -euo pipefail
lib=$(cd "$(dirname "$0")/../../script/lib" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
printf '%s\n' '# a remark' 'cert-a  *  a reason' 'bugprone-b  src/x/*.cpp  another reason' >exceptions

# judges STATUS WORDS FINDING...: with these findings it ends so and prints the words.
judges() {
    local status=0
    printf '%s\n' "${@:3}" >findings
    awk -f "$lib/lint.awk" exceptions findings >out || status=$?
    if [ $status -ne "$1" ] || ! grep -qxF "$2" out; then
        printf '%s\n' "Should end with $1 and print '$2', but ended with $status and printed:" "$(cat out)"
        exit 1
    fi
}

a='utility/y.h:1:2: warning: of a [cert-a]'
b='src/x/y.cpp:1:2: warning: of b [bugprone-b]'
judges 0 '2 findings, all of 2 named exceptions' "$a" "$b"
judges 0 '2 findings, all of 2 named exceptions' "$b" 'z.cpp:3:4: warning: of two names [cert-c,cert-a]'
other='src/x/y.cpp:5:6: warning: of c [bugprone-c]'
judges 1 "$other" "$a" "$b" "$other"
elsewhere='src/z/y.cpp:1:2: warning: of b [bugprone-b]'
judges 1 "$elsewhere" "$a" "$b" "$elsewhere"
beside='src/x/ycpp:1:2: warning: of b [bugprone-b]'
judges 1 "$beside" "$a" "$b" "$beside"
judges 1 'script/lib/lint.txt: nothing needs the exception of bugprone-b' "$a"
judges 1 'script/lib/lint.txt: nothing needs the exception of cert-a' "$b"
