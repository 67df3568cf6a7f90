#!/usr/bin/env bash
# platform_test.sh COMPILER: the library compiles against bare declarations of a utility layer,
# those in the folder platform, which docs/Porting.md lists; so it uses nothing else of it.
set -euo pipefail
cd "$(dirname "$0")/../.."
if ! said=$(printf '%s\0' src/*/*.cpp include/drvrepo/*.h | xargs -0 -n 1 -P "$(nproc)" \
    "$1" -std=c++17 -fsyntax-only -w -x c++ -Itests/docs/platform -Iinclude -Isrc 2>&1); then
    grep 'error: ' <<<"$said" | sort -u
    echo "if the library may use that: declare it in tests/docs/platform, list it in docs/Porting.md"
    exit 1
fi
