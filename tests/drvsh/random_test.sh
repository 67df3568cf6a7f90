#!/usr/bin/env bash
# random_test.sh LINES GENERATOR DRVSH [EMULATOR...]: feeds drvsh with that many random lines, twice:
# it must reach the end, complain only in its own words, and say the same both times.
set -u
lines=$1
generator=$2
drvsh=$3
shift 3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
"$@" "$generator" 1 "$lines" >commands || exit 1
echo 'echo the end' >>commands
for run in first second; do
    "$@" "$drvsh" --keep-going <commands >$run.out 2>$run.err
    status=$?
    if [ $status -ne 1 ]; then
        echo "ended with $status instead of 1"
        tail -n 40 $run.err
        exit 1
    fi
    if [ "$(tail -n 1 $run.out)" != 'the end' ]; then
        echo 'the last line was not reached'
        exit 1
    fi
    if grep -avE '^<stdin>:[0-9]+: ' $run.err; then
        echo '^ is no complaint of the shell'
        exit 1
    fi
done
cmp first.out second.out && cmp first.err second.err || exit 1
echo "$lines lines, $(grep -ac . first.err) complaints, $(grep -ac '^> ' first.out) that caused something"
# A picture of the beginning; of all of it, it would be as large as a film.
head -n 1000 commands >beginning
for run in first second; do
    "$@" "$drvsh" --keep-going --sequence $run.svg beginning >$run.out 2>$run.err
done
cmp first.svg second.svg && tail -n 1 first.svg | grep -qx '</svg>' || exit 1
