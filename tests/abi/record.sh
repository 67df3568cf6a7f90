#!/usr/bin/env bash
# record.sh LIBRARY FILE: writes to FILE what programs rely on in LIBRARY, which has debug
# information: the functions and data it exports, and the layout of the classes that these reach.
#
# Left out are classes that no public header declares, and the standard library's. Types are known by
# hashes, not by numbers, so that one change doesn't move all that follows.
set -euo pipefail
tests=$(cd "$(dirname "$0")" && pwd)
tree=$tests/../..

if [ -z "$(readelf -SW "$1" | grep -w '\.debug_info')" ]; then
    echo "$1 has no debug information to read layouts from" >&2
    exit 2
fi
abidw --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names \
    --no-write-default-sizes --type-id-style hash --drop-undefined-syms --exported-interfaces-only \
    --headers-dir "$tree/include" --headers-dir "$tree/utility/include" --drop-private-types \
    --suppressions "$tests/standard.suppr" --out-file "$2" "$1"
