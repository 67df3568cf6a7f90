#!/usr/bin/env bash
# picture_test.sh DRVSH SCRIPT: the picture beside a script is what drvsh draws from it.
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" --sequence "$folder/drawn.svg" "$2" >/dev/null
cmp "$folder/drawn.svg" "${2%.drv}.svg" || {
    echo "if the new picture is right: script/docs --pictures"
    exit 1
}
