# What a delivered library or program may be and need. Sourced by script/install-test.

# The names of the libraries that a binary needs, sorted, in one line.
needed() {
    readelf -dW "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | sort | paste -sd' '
}

# check_library FILE NEEDED...: FILE is stripped, says no search path, needs exactly NEEDED, runs no
# code of its own when it is loaded, and can be unloaded. Prints what it is.
check_library() {
    local file=$1 want code words bytes
    shift
    want=$(printf '%s\n' "$@" | sort | paste -sd' ')
    same "what ${file##*/} needs" "$want" "$(needed "$file")"
    same "sections of symbols in ${file##*/}" '' "$(readelf -SW "$file" | grep -w '\.symtab')"
    same "search path of ${file##*/}" '' "$(readelf -dW "$file" | grep -E 'R(UN)?PATH')"

    # One entry, the compiler's own; static objects with constructors would add theirs.
    words=$(readelf -hW "$file" | awk '/Class:/ { print $2 == "ELF32" ? 4 : 8 }')
    code=$(readelf -SW "$file" | sed 's/^ *\[ *[0-9]*\]//' |
        awk '$1 ~ /^\.(preinit_array|init_array|ctors)/ { print $1, $5 }')
    same "code run at load by ${file##*/}" "$(printf '.init_array %06x' "$words")" "$code"
    same "symbols that pin ${file##*/}" '' \
        "$(readelf --dyn-syms -W "$file" | awk '$5 == "UNIQUE" && $7 != "UND"')"

    bytes=$(stat -c %s "$file")
    printf '  %-22s %7d bytes, %4d symbols, needs %s\n' "${file##*/}" "$bytes" \
        "$(readelf --dyn-syms -W "$file" | awk '$7 ~ /^[0-9]+$/' | wc -l)" "$(needed "$file")"
}

# check_exports LIBUTILITY LIBDRVREPO: they export what their maps list, however optimised.
check_exports() {
    tests/abi/exports_test.sh utility/utility.map "$1" src/drvrepo.map "$2" >&2 ||
        wrong "The exports of $1 or $2 are not those that are listed."
}

# check_libraries FOLDER [LIMIT]: both libraries in FOLDER, together at most LIMIT bytes.
check_libraries() {
    local folder=$1 limit=${2-} system=(libc.so.6 libgcc_s.so.1 libstdc++.so.6) total
    check_library "$folder/libutility.so.$version" "${system[@]}"
    check_library "$folder/libdrvrepo.so.$version" libutility.so.1 "${system[@]}"
    check_exports "$folder"/lib{utility,drvrepo}.so."$version"
    total=$(cat "$folder"/lib{utility,drvrepo}.so."$version" | wc -c)
    echo "  together $total bytes${limit:+, at most $limit}"
    [ -z "$limit" ] || [ "$total" -le "$limit" ] || wrong 'The libraries are too large.'
}
