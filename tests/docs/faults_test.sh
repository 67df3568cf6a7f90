#!/usr/bin/env bash
# faults_test.sh COMPILER PYTHON DRVSH: proves that each kind of fault in a page, in a picture and in
# a header's comments is found, and a sound page passes.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
compiler=$1 python=$2 drvsh=$3
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
failures=0
fail() {
    failures=$((failures + 1))
    printf '%s\n' "$@"
}

# page NAME: a page from standard input, where ~~~ stands for the marks of a block.
page() {
    sed 's/~~~/```/' >"$1.md"
}

page sound <<'END'
# A heading, with (marks)

[a page](sound.md#a-heading-with-marks), [a folder](.), [elsewhere](https://example.org/)

~~~cpp
#include <cstdio>
inline int twice(int n) { return 2 * n; }
~~~
~~~cpp run
const int n = twice(3);
~~~
Some words, and `[no](link)`.

~~~cpp run
std::printf("a\n%d\nz\n", n);
~~~
~~~text
...
6
...
~~~

    $ echo a; echo; echo b
    a

    b

~~~console
$ echo \
    one
one
$ true
~~~
<!-- in tests/docs/pages.h -->
~~~c++
void begin(int line);
} // namespace pages
~~~
~~~drvsh
echo hello
~~~
~~~text
hello
~~~
~~~drvsh test
echo hello
----
hello
----
~~~
<!-- not run: it is a joke -->
~~~sh
rm -rf /
~~~
END
page printing <<'END'
~~~cpp run
#include <cstdio>
std::puts("something");
~~~
END
page lying <<'END'
~~~cpp
#include <cstdio>
int main()
{
    std::puts("one");
    return 0;
}
~~~
~~~text
two
~~~
END
page failing <<'END'
~~~cpp
int main()
{
    return 1;
}
~~~
~~~cpp run
static_cast<void>(0);
~~~
END
sources=()
for name in sound printing lying failing; do
    "$python" "$here/make_program.py" $name.md $name.cpp
    sources+=($name.cpp)
done
"$compiler" -std=c++17 -I"$here" -o program "${sources[@]}" "$here/pages.cpp"

# check NAME: what the check of the page says is in the file out.
check() {
    "$python" "$here/check_page.py" "$1.md" ./program "$drvsh" >out 2>&1
}

check sound || fail 'The sound page is refused:' "$(cat out)"
grep -q 'not run: it is a joke' out || fail 'The reason of a block that is not run is not printed.'
grep -q ': 11 checked, 0 faults' out || fail 'The sound page is not checked whole:' "$(cat out)"

# refuses NAME WORDS: the check of that page fails in saying these words.
refuses() {
    local status=0
    check "$1" || status=$?
    if [ $status -ne 1 ] || ! grep -qF -- "$2" out; then
        fail "$1.md should fail saying '$2', but ended with $status:" "$(cat "$1.md" out)"
    fi
}

# broken WORDS: the page in standard input fails in saying these words.
broken() {
    page broken
    refuses broken "$1"
}

refuses printing '+something'
refuses lying '-two'
refuses failing 'the program ended with 1 here'
refuses failing 'failing.md:8: the program never came here'
broken 'the program says: usage' <<<$'~~~cpp run\nint n = 1;\n~~~'

page uncompiled <<<$'one\n\n~~~cpp run\nint n = "";\n~~~'
"$python" "$here/make_program.py" uncompiled.md uncompiled.cpp
if "$compiler" -std=c++17 -I"$here" -fsyntax-only uncompiled.cpp 2>out; then
    fail 'A block that is no C++ is compiled.'
fi
grep -q 'uncompiled.md:4' out || fail 'The compiler does not name the line of the page:' "$(cat out)"

broken 'broken.md:2: nobody runs this block (python)' <<<$'~~~python\nprint(1)\n~~~'
broken 'nobody runs this block (without a language)' <<<$'~~~\nx\n~~~'
broken 'nobody runs this block (indented)' <<<$'a\n\n    x'
broken 'the block has no end' <<<$'~~~cpp\nint n;'
broken 'the block is empty' <<<$'~~~cpp\n~~~'
broken 'no block before this one prints it' <<<$'~~~text\nx\n~~~'
broken 'no block before this one prints it' <<<$'~~~cpp\nint n;\n~~~\n~~~text\nx\n~~~'
broken 'no block follows this mark' <<<$'<!-- not run: why -->\nwords'
broken 'broken.md:2: prints something else' <<<$'~~~console\n$ echo a\nb\n~~~'
broken 'broken.md:3: prints something else' <<<$'a\n\n    $ echo a'
broken 'prints something else' <<<$'~~~console\n$ echo a; echo b\n...\na\n~~~'
broken 'broken.md:3: ended with 3' <<<$'~~~console\n$ true\n$ echo a; exit 3\na\n~~~'
broken '+hello' <<<$'~~~drvsh\necho hello\n~~~'
broken 'ended with 1' <<<$'~~~drvsh test\necho a\n----\nb\n----\n~~~'
broken 'ended with 1' <<<$'~~~drvsh\nnonsense\n~~~'
broken 'does not have this line' <<<$'<!-- in script/docs -->\n~~~sh\nscript/sets up\n~~~'
broken 'does not have this line' <<<$'<!-- in tests/docs/pages.h -->\n~~~c++\n#endif\nclass Page\n~~~'
broken 'there is no nowhere.md' <<<'[x](nowhere.md)'
broken 'broken.md has no heading #b' <<<$'# A\n\n[x](#b)'

echo 'driver add x' >picture.drv
"$drvsh" --sequence picture.svg picture.drv
"$here/picture_test.sh" "$drvsh" picture.drv || fail 'A sound picture is refused.'
echo >>picture.svg
! "$here/picture_test.sh" "$drvsh" picture.drv >out 2>&1 || fail 'A wrong picture is not refused.'

mkdir -p include utility/include docs build/docs
cp "$here/../../docs/Doxyfile" docs
echo '/// @mainpage M' >docs/Headers.dox
printf '%s\n' '/// A class.' 'class Class' '{' 'public:' '    /// Works.' '    void work();' '};' \
    >include/Class.h
doxygen docs/Doxyfile >out 2>&1 || fail 'Sound comments are refused:' "$(cat out)"
sed -i '/Works/d' include/Class.h
if doxygen docs/Doxyfile >out 2>&1 || ! grep -q 'work() .* is not documented' out; then
    fail 'A missing comment is not refused:' "$(cat out)"
fi

[ $failures -eq 0 ] || { echo "$failures failed" && exit 1; }
