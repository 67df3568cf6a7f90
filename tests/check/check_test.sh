#!/usr/bin/env bash
# Proves that script/check finds each fault it promises to find: a small sound tree passes, and
# fails with the right words as soon as one faulty file is added.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
git init -q
cp -r "$top/script" "$top/.clang-format" "$top/.clang-tidy" .

# put FILE LINE...: writes the file.
put() {
    mkdir -p "$(dirname "$1")"
    printf '%s\n' "${@:2}" >"$1"
}

put utility/include/utility/String.h '#include <cstddef>' 'class String;'
put utility/src/String.cpp '#include <utility/String.h>' '' '#include <syslog.h>'
put include/drvrepo/IDriver.h '#include <drvrepo/ObserverEvent.h>' '#include <utility/String.h>'
put include/drvrepo/IDriverRepository.h '#include <drvrepo/IDriver.h>'
put include/drvrepo/ObserverEvent.h '#include <utility/String.h>'
put include/drvrepo/ObserverDelegate.h '#include <drvrepo/ObserverEvent.h>'
put include/drvrepo/CDriver.h '#include <drvrepo/IDriver.h>'
put include/drvrepo/CChannelGroup.h '#include <drvrepo/ObserverDelegate.h>'
put include/drvrepo/CDriverRepository.h '#include <drvrepo/IDriverRepository.h>'
put src/foundation/Log.h '#include <utility/String.h>'
put src/driver/CDriver.cpp '#include <drvrepo/CDriver.h>' '' '#include "foundation/Log.h"'
put src/repository/Walk.h '// No dynamic_cast here: the kind is known.'
put src/repository/WrapperNotify.cpp '#include "Walk.h"' \
    'void tell(D* delegate) { delegate->notifyEvent(); }'
put tests/driver/DriverTest.cpp '#include <drvrepo/CDriver.h>' '#include <gtest/gtest.h>'
put tools/drvsh/Shell.h '#include <drvrepo/CDriverRepository.h>' '#include <sys/stat.h>'
git ls-files -co '*.h' '*.cpp' | xargs clang-format -i

failures=0
fail() {
    failures=$((failures + 1))
    printf '%s\n' "$@"
}

script/check >out 2>&1 || fail 'The sound tree is refused:' "$(cat out)"

# refuses WHAT OPTION FILE WORDS LINE...: with FILE holding the lines, or with that line added if
# the tree has it, script/check OPTION fails on WHAT and says WORDS. Then all is as before.
refuses() {
    local what=$1 option=$2 file=$3 words=$4 status=0
    [ ! -e "$file" ] || cp "$file" kept
    if [ -e kept ]; then printf '%s\n' "${@:5}" >>"$file"; else put "$file" "${@:5}"; fi
    script/check $option >out 2>&1 || status=$?
    if [ $status -ne 1 ] || ! grep -qF "$words" out || ! grep -q "failed:.* $what" out; then
        fail "$file with '${*:5}' should fail on $what saying '$words', but ended with $status:" \
            "$(cat out)"
    fi
    if [ -e kept ]; then mv kept "$file"; else rm "$file"; fi
}

arrow() {
    refuses arrows --fast "$1" "$2" "${@:3}"
}

arrow utility/src/List.cpp 'utility must not include contract' '#include <drvrepo/IDriver.h>'
arrow utility/src/List.cpp 'utility must not include <boost/any.hpp>' '#include <boost/any.hpp>'
arrow utility/include/utility/List.h '"../../src/List.h" climbs out' '#include "../../src/List.h"'
arrow include/drvrepo/IChannelGroup.h 'contract must not include driver.api' \
    '#include <drvrepo/CDriver.h>'
arrow include/drvrepo/IChannelGroup.h 'contract must not include framework' \
    '#include <drvrepo/ObserverDelegate.h>'
arrow include/drvrepo/ObserverContainer.h 'framework must not include repository.api' \
    '# include <drvrepo/CDriverRepository.h>'
arrow include/drvrepo/CChannelGroup.h 'group.api must not include driver.api' \
    '#include <drvrepo/CDriver.h>'
arrow include/drvrepo/CDriver.h 'driver.api must not include foundation' '#include "foundation/Log.h"'
arrow include/drvrepo/Stranger.h 'lies in no room' '#include <utility/String.h>'
arrow src/driver/Names.cpp 'driver must not include repository' '#include "repository/Walk.h"'
arrow src/repository/Names.cpp 'repository must not include driver.api' '#include <drvrepo/CDriver.h>'
arrow src/repository/Names.cpp '"../driver/X.h" climbs out' '#include "../driver/X.h"'
arrow src/repository/Names.cpp '"Nowhere.h" is not in the tree' '#include "Nowhere.h"'
arrow src/repository/Names.cpp '"drvrepo/Nowhere.h" is not in the tree' '#include <drvrepo/Nowhere.h>'
arrow src/channelgroup/Names.cpp 'group must not include repository' '#include "repository/Walk.h"'
arrow src/foundation/Names.cpp 'foundation must not include driver.api' '#include <drvrepo/CDriver.h>'
arrow tests/driver/NamesTest.cpp 'tests must not include foundation' '#include "foundation/Log.h"'
arrow tests/utility/NamesTest.cpp 'tests.utility must not include contract' \
    '#include <drvrepo/IDriver.h>'
arrow tests/model/Model.cpp 'model must not include utility.api' '#include <utility/String.h>'
arrow tools/drvsh/Names.cpp 'shell must not include repository' '#include <repository/Walk.h>'
arrow examples/first.cpp 'examples must not include foundation' '#include "foundation/Log.h"'

refuses code --fast src/driver/Cast.cpp 'Cast.cpp:1:' 'auto d = dynamic_cast<CDriver*>(i);'
refuses code --fast utility/include/utility/Cast.h 'Cast.h:2:' '' 'auto d = dynamic_cast<D*>(i);'
refuses code --fast src/repository/RepositoryDrivers.cpp 'Drivers.cpp:1:' 'delegate->notifyEvent(e);'
refuses code --fast src/repository/DriverWrapper.cpp 'Wrapper.cpp:1:' \
    'listener->observer()->onDriverAdded(e);'

refuses words --fast notes.txt 'notes.txt:1:' 'As Part'' 3 says.'
refuses words --fast src/driver/a.cpp 'a.cpp:1:' '// See The'' Spec.'
refuses words --fast src/driver/a.cpp 'a.cpp:1:' '// See spec''.md.'
refuses words --fast docs/a.md 'a.md:1:' 'Asked for in issue'' 7.'
refuses words --fast src/driver/a.cpp 'a.cpp:1:' '// TO''DO: more'
refuses words --fast script/a 'script/a:1:' '# FIX''ME'

refuses format --fast src/driver/a.cpp 'a.cpp: clang-format' 'int  a;'
refuses headers '' include/drvrepo/IInfoless.h 'IInfoless.h:1' 'String text();'
refuses headers '' utility/include/utility/List.h 'List.h:1' 'int list() { int unused; return 0; }'
refuses tidy --tidy src/driver/a.cpp 'modernize-use-nullptr' 'int* a = 0;'

[ $failures -eq 0 ] || { echo "$failures failed" && exit 1; }
