#!/usr/bin/env bash
# recorded_test.sh LIBRARY...: what programs rely on in each library is what is recorded in NAME.abi
# beside this script. Any difference is printed, and fails.
#
# Old programs may break where something is taken away, changed or moved. Where that is meant, or
# something was added, `script/abi --renew` records what is there now.
set -euo pipefail
tests=$(dirname "$0")
found=$(mktemp)
trap 'rm -f "$found"' EXIT

status=0
for library in "$@"; do
    name=$(basename "$library" | sed 's/\.so.*//')
    "$tests/record.sh" "$library" "$found"
    abidiff --no-show-locs --harmless "$tests/$name.abi" "$found" || status=1
done
exit $status
