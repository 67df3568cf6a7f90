#!/usr/bin/env bash
# random_test.sh LINES GENERATOR DRVSH [EMULATOR...]: feeds drvsh with that many random lines: it
# must reach the end and complain only in its own words. The first thousand of them it must answer
# the same, and draw the same, every time.
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
"$@" "$drvsh" --keep-going <commands >out 2>err
status=$?
if [ $status -ne 1 ]; then
    echo "ended with $status instead of 1"
    tail -n 40 err
    exit 1
fi
if [ "$(tail -n 1 out)" != 'the end' ]; then
    echo 'the last line was not reached'
    exit 1
fi
if grep -avE '^<stdin>:[0-9]+: ' err; then
    echo '^ is no complaint of the shell'
    exit 1
fi
echo "$lines lines, $(grep -ac . err) complaints, $(grep -ac '^> ' out) that caused something"

head -n 1000 commands >beginning
for run in first second; do
    "$@" "$drvsh" --keep-going --sequence $run.svg beginning >$run.out 2>$run.err
done
tail -n 1 first.svg | grep -qx '</svg>' || exit 1
cmp first.out second.out && cmp first.err second.err && cmp first.svg second.svg
