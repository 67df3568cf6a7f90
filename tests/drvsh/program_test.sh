#!/usr/bin/env bash
# program_test.sh COMMAND...: runs drvsh, which COMMAND starts, as a user would, and compares what
# it prints, what it complains of, and how it ends.
set -u
here=$(cd "$(dirname "$0")" && pwd)
drvsh=("$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failed=0

# ends STATUS ARGUMENT...: runs drvsh; standard input is that of the call.
ends() {
    local wanted=$1
    shift
    "${drvsh[@]}" "$@" >out 2>err
    local status=$?
    if [ $status -ne "$wanted" ]; then
        echo "drvsh $*: ended with $status instead of $wanted"
        cat out err
        failed=1
    fi
}

# holds FILE TEXT: the last run wrote exactly this into out or err.
holds() {
    if ! diff -u --label wanted --label "$1" <(printf '%s' "$2") "$1"; then
        echo "^ in the $1 of the last run"
        failed=1
    fi
}

# begins FILE TEXT: the last run wrote this first.
begins() {
    if ! cmp -s <(head -c ${#2} "$1") <(printf '%s' "$2"); then
        echo "$1 does not begin with: $2"
        cat "$1"
        failed=1
    fi
}

n=$'\n'

# Commands from -c, which may be repeated and hold several lines.
ends 0 -c "name split 'fxs 2'"
begins out "type        fxs$n"
ends 0 -c 'timeslots 1-15;17-31'
holds out "0xFFFEFFFE$n"
ends 0 -c "echo a${n}echo b" -c '' -c 'echo [c]' --command='echo -- -d'
holds out "a${n}b${n}[c]$n-d$n"
ends 0 '-cecho [x]'
holds out "[x]$n"

# Failures: status 1, the place by line over all texts, and no more unless asked to go on.
ends 1 -c 'echo a' -c "nonsense${n}echo b"
holds out "a$n"
holds err "-c:2: unknown command 'nonsense'$n"
ends 1 --keep-going -c 'nonsense' -c 'echo b'
holds out "b$n"
ends 1 -k -c "driver add a${n}driver add a${n}drivers"
holds out "a  DID_UNKNOWN$n"
holds err "-c:2: driver add: Driver already exists (CDriverRepo): a$n"

# Where both go to one place, a complaint stands behind what was written before it.
"${drvsh[@]}" -c 'echo a' -c nonsense >out 2>&1
holds out "a$n-c:2: unknown command 'nonsense'$n"

# Standard input, by itself or as "-".
ends 0 < <(printf 'echo in\r\necho last')
holds out "in${n}last$n"
ends 1 - <<<"echo 'a"
holds err "<stdin>:1: a quote ' is not closed$n"
ends 0 </dev/null
holds out ''

# Files, then -c; one shell for all of them.
echo 'driver add x' >first.drv
echo 'drivers' >second.drv
ends 0 -c 'find' first.drv second.drv
holds out "x  DID_UNKNOWN${n}x$n"
ends 1 missing.drv first.drv -c 'drivers'
holds out ''
holds err "missing.drv: can't be read: No such file or directory$n"
ends 1 --keep-going missing.drv first.drv -c 'drivers'
holds out "x  DID_UNKNOWN$n"
ends 1 .
holds err ".: can't be read: Is a directory$n"
ends 1 /proc/self/mem
holds err "/proc/self/mem: can't be read: Input/output error$n"
ends 1 <&-
holds err "<stdin>: can't be read: Bad file descriptor$n"

# A file that only others may read. Root may read all, so there somebody else tries.
echo 'echo secret' >unreadable.drv
chmod 000 unreadable.drv
chmod 755 .
mine=("${drvsh[@]}")
[ "$(id -u)" -ne 0 ] || drvsh=(setpriv --reuid=65534 --regid=65534 --clear-groups "${drvsh[@]}")
if "${drvsh[@]}" --help >/dev/null 2>&1; then
    ends 1 unreadable.drv
    holds err "unreadable.drv: can't be read: Permission denied$n"
    ends 1 --test unreadable.drv
    holds out "unreadable.drv: can't be read: Permission denied${n}1 of 1 script failed$n"
    ends 1 -c 'load unreadable.drv'
    holds err "-c:1: load: unreadable.drv: Permission denied$n"
else
    echo 'not tried: a file that may not be read, for nobody else may run drvsh'
fi
drvsh=("${mine[@]}")
ends 0 --echo first.drv -c 'find # all'
holds out "> driver add x$n> find${n}x$n"

# The log.
ends 0 --log first.drv
holds out "> driver add x$n  [7] DrvRepo: Add driver 'x'$n"
ends 0 --log=7 -c 'driver remove y'
holds out "there is no driver 'y'$n"

# The program's own usage.
ends 2 --nonsense
holds err "drvsh: there is no option '--nonsense'${n}Try 'drvsh --help'.$n"
ends 2 --log=much
holds err "drvsh: --log: 'much' is no number from 0 to 4294967295${n}Try 'drvsh --help'.$n"
ends 2 -c
ends 0 --help
begins out 'A shell to look at and try a registry of drivers.'

# Long lines and any bytes.
long=$(head -c 1000000 /dev/zero | tr '\0' x)
ends 0 < <(printf 'echo %s' "$long")
holds out "$long$n"
ends 1 -k < <(head -c 100000 /dev/zero | tr '\0' '\377')
ends 1 -k < <(printf 'echo a\0b\n\0\n')
[ "$(od -An -c out | tr -d ' \n')" = 'a\0b\n' ] || { echo 'a zero byte was lost'; failed=1; }

# A full disk is a failure, a pipe that nobody reads any more too, a closed output as well.
"${drvsh[@]}" -c 'echo a' >/dev/full 2>err
[ $? -eq 1 ] || { echo 'a full disk is no failure'; failed=1; }
holds err "drvsh: the output can't be written: No space left on device$n"
"${drvsh[@]}" --help >/dev/full 2>err
[ $? -eq 1 ] || { echo 'a full disk is no failure of --help'; failed=1; }
holds err "drvsh: the output can't be written: No space left on device$n"
# A megabyte fits in no pipe. What follows is not run: nobody would see it.
printf 'echo %s\nnonsense\n' "$long" >much.drv
{ "${drvsh[@]}" -k much.drv 2>err; echo $? >status; } | :
[ "$(cat status)" = 1 ] || { echo "a broken pipe ends with $(cat status)"; failed=1; }
holds err "drvsh: the output can't be written: Broken pipe$n"
"${drvsh[@]}" -c 'echo a' >&- 2>err
[ $? -eq 1 ] || { echo 'a closed output is no failure'; failed=1; }
holds err "drvsh: the output can't be written: Bad file descriptor$n"

# The sequence diagram: XML that others can read, the same every time, beside what is printed.
ends 0 --sequence one.svg "$here/../../examples/gateway.drv"
cmp out "$here/gateway.expected" || { echo 'the picture changed what is printed'; failed=1; }
ends 0 --sequence two.svg "$here/../../examples/gateway.drv"
cmp one.svg two.svg || { echo 'the picture differs from run to run'; failed=1; }
python3 - one.svg <<'END' || { echo 'the picture is no SVG'; failed=1; }
import sys, xml.etree.ElementTree as tree
svg = '{http://www.w3.org/2000/svg}'
root = tree.parse(sys.argv[1]).getroot()
assert root.tag == svg + 'svg', root.tag
texts = [text.text for text in root.iter(svg + 'text') if text.get('class') == 'bad']
assert texts[:2] == ['refused ("no such port")', 'failed: no such port'], texts
END
ends 1 --sequence missing/one.svg -c 'echo a'
holds err "drvsh: missing/one.svg: can't be written: No such file or directory$n"
ends 1 --sequence /dev/full -c 'echo a'
holds err "drvsh: /dev/full: can't be written: No space left on device$n"

# JSON for others: one value from a listing, an object a line from all of it.
ends 0 -c "driver add 'fxs 1'" -c 'drivers --json'
python3 -m json.tool <out >pretty || { echo 'drivers --json is no JSON'; failed=1; }
ends 1 -k --json "$here/../../examples/gateway.drv" -c nonsense
holds err "-c:1: unknown command 'nonsense'$n"
python3 -m json.tool --json-lines <out >pretty || { echo '--json is no JSON'; failed=1; }
[ "$(tail -n 1 out)" = "{\"event\":\"error\",\"place\":\"-c:1\",$(:
    )\"text\":\"unknown command 'nonsense'\"}" ] || { tail -n 1 out; failed=1; }

# Scripts that say what they expect.
printf 'echo a\n----\nb\n----\n' >trial.drv
ends 1 --test trial.drv
holds out "trial.drv:1: not as expected$n  - b$n  + a${n}1 of 1 script failed$n"
ends 0 trial.drv
holds out "a$n"
ends 0 --rewrite trial.drv
holds out "trial.drv: rewritten$n"
ends 0 --test trial.drv "$here"/../scripts/listen-all.drv
holds out "2 scripts, 2 transcripts as expected$n"
ends 1 --rewrite missing.drv
holds out "missing.drv: can't be read: No such file or directory$n"
ends 2 --test
holds err "drvsh: --test: a FILE is missing${n}Try 'drvsh --help'.$n"
ends 2 --test trial.drv -c 'echo a'
holds err "drvsh: --test takes only files${n}Try 'drvsh --help'.$n"
ends 2 --test --rewrite trial.drv
holds err "drvsh: --test and --rewrite don't go together${n}Try 'drvsh --help'.$n"
ends 2 --interactive </dev/null
holds err "drvsh: --interactive: standard input and output are no terminal${n}Try 'drvsh --help'.$n"

# exit ends all of it, well.
ends 0 -c exit -c nonsense
ends 0 first.drv - second.drv < <(printf 'exit\nnonsense\n')
holds out ''

# What a newcomer sees first.
ends 0 "$here/../../examples/gateway.drv"
holds err ''
if ! diff -u "$here/gateway.expected" out; then
    echo "^ if the difference is right, make tests/drvsh/gateway.expected anew"
    failed=1
fi

exit $failed
