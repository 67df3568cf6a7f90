# Clients outside the tree, built against what is installed, and run. Sourced by script/install-test.
# The array `run` starts a program of the target; `cxx` is the compiler.

# run_clients FOLDER: both programs print exactly what they should.
run_clients() {
    local name
    for name in client texts; do
        same "output of $1/$name" "$(cat "tests/install/client/$name.expected")" \
            "$("${run[@]}" "$1/$name" 2>&1 && echo || echo "ended with $?")"
    done
}

# client_by_cmake FOLDER CMAKE-OPTION...: builds the client's project in FOLDER and runs it.
client_by_cmake() {
    local folder=$1
    shift
    cp -r tests/install/client "$folder"
    quiet cmake -S "$folder" -B "$folder/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" "$@"
    quiet cmake --build "$folder/build"
    run_clients "$folder/build"
}

# client_by_pkg_config FOLDER PKG-CONFIG-OPTION...: builds the clients by hand, and runs them.
client_by_pkg_config() {
    local folder=$1 name flags
    shift
    cp -r tests/install/client "$folder"
    same 'version that pkg-config reports' "$version" "$(pkg-config --modversion drvrepo)"
    same 'version that pkg-config reports' "$version" "$(pkg-config --modversion drvrepo-utility)"
    flags=$(pkg-config "$@" --cflags --libs drvrepo)
    quiet "$cxx" -std=c++17 "$folder/client.cpp" -o "$folder/client" $flags
    flags=$(pkg-config "$@" --cflags --libs drvrepo-utility)
    quiet "$cxx" -std=c++17 "$folder/texts.cpp" -o "$folder/texts" $flags
    run_clients "$folder"
}

# check_headers_in INCLUDE-FOLDER: every header installed there compiles alone.
check_headers_in() {
    (cd "$1" && find . -name '*.h' -printf '%P\0') |
        xargs -0 -r -n 1 -P "$(nproc)" "$cxx" -std=c++17 -I"$1" -Wall -Wextra -Wpedantic -Werror \
            -fsyntax-only -x c++ /dev/null -include || wrong "A header in $1 does not stand alone."
}
