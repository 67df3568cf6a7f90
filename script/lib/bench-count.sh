# Sourced by script/bench: what an operation costs, counted.

# orders SYSTEM... <SIZES: each line "WORK N L OPERATIONS" of the input for each system; the library
# alone has W7-snapshot.
orders() {
    local work n l operations system
    while read -r work n l operations; do
        for system in "$@"; do
            [ "$work $system" = 'W7-snapshot drvrepo' ] || [ "$work" != W7-snapshot ] || continue
            echo "$work $system $n $l $operations"
        done
    done
}

# profile ORDERS FOLDER: runs them under callgrind; two dumps an order, FOLDER/out.1 and so on.
profile() {
    mkdir -p "$2"
    rm -f "$2"/out*
    valgrind -q --tool=callgrind --instr-atstart=no --callgrind-out-file="$2/out" \
        "$build/bin/bench" --count <"$1"
}

# instructions ORDERS: the orders, each with the instructions of one operation.
instructions() {
    profile "$1" "$results/profile"
    awk '/^desc: Trigger: Client Request: / { sub(/.*Request: /, ""); dump = $0 }
         /^totals: / { print dump, $2 }' $(printf '%s\n' "$results"/profile/out.* | sort -V) |
        awk '{ key = $1 " " $2 " " $3 " " $4 " " $5; cost[key, $6] = $7 }
             $6 == 2 { keys[++count] = key }
             END {
                 for (i = 1; i <= count; ++i) {
                     split(keys[i], part, " ")
                     print keys[i], (cost[keys[i], 2] - cost[keys[i], 1]) / part[5]
                 }
             }'
}

# costs ORDERS: "WORK SYSTEM N L INSTRUCTIONS ALLOCATIONS" of each. Not of e1: it allocates by
# other means than operator new.
costs() {
    instructions "$1" >"$results/instructions"
    grep -v ' e1 ' "$1" | "$build/bin/bench_heap" >"$results/allocations"
    awk 'NR == FNR { allocations[$1, $2, $3, $4] = $6; next }
         { key = $1 SUBSEP $2 SUBSEP $3 SUBSEP $4
           printf "%s %s %d %d %.1f %s\n", $1, $2, $3, $4, $6,
                  key in allocations ? allocations[key] : "-" }' \
        "$results/allocations" "$results/instructions"
}

# The sizes that are counted: every work at N = 256, and what tells how it grows with N. So many
# operations that each name has been used before.
all_sizes() {
    cat <<-'SIZES'
	W1 16 0 500
	W1 256 0 500
	W1 4096 0 4096
	W1 65536 0 65536
	W1-text 256 0 500
	SIZES
    for work in W2 W3 W4; do
        printf "$work %s\n" '16 10 300' '256 0 300' '256 1 300' '256 10 300' '256 100 300' \
            '65536 0 1500' '65536 10 1500'
    done
    for work in W5-narrow W5-broad W7 W7-snapshot; do printf "$work %s\n" '256 0 5' '4096 0 2'; done
    for work in W6-accepted W6-refused; do printf "$work %s\n" '16 1 100' '16 10 100' '16 100 50'; done
}

# table COSTS [RECORDED]: a row a work and size; the ratio is to the system by which the work is
# judged, the change that of the library's instructions since RECORDED. Ends with 1 if one of these
# has grown by more than 2 %.
table() {
    awk -v recorded="${2-}" '
        function key(whose) { return row SUBSEP whose }
        function whole(n) { return n > 0 ? sprintf("%.0f", n) : "" }
        function judge(work) {
            if (work ~ /^W1/)
                return cost[key("d2")] < cost[key("d1")] ? "d2" : "d1"
            return work ~ /^W[57]/ ? "d2" : work ~ /^W6/ ? "c1" : "d1"
        }
        FILENAME == recorded { if ($1 == "cost") was[$2 " " $4 " " $5, $3] = $6; next }
        { row = $1 " " $3 " " $4
          if (!(row in seen)) { seen[row]; rows[++count] = row }
          cost[key($2)] = $5; asked[key($2)] = $6 }
        END {
            printf "%-12s %6s %4s %10s %10s %10s %10s  %8s %8s %8s %8s\n", "work", "N", "L",
                   "drvrepo", "d1", "d2", "c1", "ratio", "new", "new d1", "change"
            for (i = 1; i <= count; ++i) {
                row = rows[i]
                split(row, part, " ")
                change = ""
                if (was[key("drvrepo")] > 0) {
                    percent = 100 * (cost[key("drvrepo")] / was[key("drvrepo")] - 1)
                    change = sprintf("%+.1f %%", percent)
                    dearer = dearer || percent > 2
                }
                peer = judge(part[1])
                ratio = ""
                if (cost[key(peer)] > 0)
                    ratio = sprintf("%.2f %s", cost[key("drvrepo")] / cost[key(peer)], peer)
                printf "%-12s %6d %4d %10.0f %10s %10s %10s  %8s %8s %8s %8s\n", part[1], part[2],
                       part[3], cost[key("drvrepo")], whole(cost[key("d1")]),
                       whole(cost[key("d2")]), whole(cost[key("c1")]), ratio, asked[key("drvrepo")], asked[key("d1")], change
            }
            exit dearer
        }' ${2:+"$2"} "$1"
}

# heap: "WORK SYSTEM L BYTES" for each driver, with L listeners that match.
heap() {
    local system l
    for system in drvrepo d1 d2; do
        for l in 0 1 10; do echo "fill $system 4096 $l 4096"; done
        echo "fill-new $system 4096 0 4096"
    done | "$build/bin/bench_heap" | awk '{ print $1, $2, $4, $7 }'
}

# sizes: "LIBRARY BYTES", stripped.
sizes() {
    local name
    for name in drvrepo utility; do
        strip -o "$results/stripped" "$build/lib/lib$name.so"
        echo "lib$name $(stat -c %s "$results/stripped")"
    done
}

# hot_functions: the functions of the libraries in which an operation of any work spends at least
# 3 % of its instructions.
hot_functions() {
    local work
    for work in W1 W2 W3 W4 W5-narrow W5-broad W6-accepted W6-refused W7; do
        echo "$work drvrepo 256 10 20"
    done >"$results/hot-orders"
    profile "$results/hot-orders" "$results/hot"
    for ((i = 1; i <= 2 * $(wc -l <"$results/hot-orders"); i += 2)); do
        callgrind_annotate "$results/hot/out.$i"
    done | sed -nE 's/^ *[0-9,]+ \( *([0-9.]+)%\) +[^:]*:(.*) \[.*\/lib(drvrepo|utility)\.so.*/\1 \2/p' |
        awk '$1 >= 3 { $1 = ""; print substr($0, 2) }' | sort -u
}

# arm_sizes: "arm LIBRARY BYTES" stripped, and "hot BYTES FUNCTION", built for ARM as delivered.
arm_sizes() {
    local name triplet=arm-linux-gnueabihf
    quiet cmake --preset arm -B "$build-arm" -DDRVREPO_TESTS=OFF -DDRVREPO_EXAMPLES=OFF \
        -DDRVREPO_TOOLS=OFF -DDRVREPO_INSTALL=OFF
    quiet cmake --build "$build-arm"
    for name in drvrepo utility; do
        $triplet-strip -o "$results/stripped" "$build-arm/lib/lib$name.so"
        echo "arm lib$name $(stat -c %s "$results/stripped")"
    done
    hot_functions >"$results/hot-functions"
    $triplet-nm -S -C --defined-only "$build-arm"/lib/lib{drvrepo,utility}.so |
        awk 'NR == FNR { hot[$0]; next }
             NF > 3 { bytes = $2; $1 = $2 = $3 = ""; name = substr($0, 4)
                      if (name in hot) print bytes, name }' "$results/hot-functions" - |
        sort -u | while read -r bytes name; do echo "$((16#$bytes)) $name"; done |
        awk '{ bytes = $1; sub(/^[0-9]+ /, ""); sum[$0] += bytes }
             END { for (name in sum) print "hot", sum[name], name }' | sort -k3
}

# heap_and_sizes: "heap WORK SYSTEM L BYTES", "size LIBRARY BYTES" and those of ARM.
heap_and_sizes() {
    heap | sed 's/^/heap /'
    sizes | sed 's/^/size /'
    arm_sizes
}

# compare FILE RECORDED: the lines, with what was recorded where it differs.
compare() {
    awk 'function key() { return $1 == "hot" ? substr($0, length($1 $2) + 3) : $1 == "heap" ? $2 $3 $4 : $1 $2 }
         function bytes() { return $1 == "hot" ? $2 : $NF }
         FILENAME == ARGV[1] { if ($1 != "cost" && $1 != "#") was[key()] = bytes(); next }
         { change = !(key() in was) ? "new" : was[key()] == bytes() ? "" : "was " was[key()]
           print $0 (change == "" ? "" : "   (" change ")") }' "$2" "$1"
}

# formulas COSTS: "OPERATION: INSTRUCTIONS" of the library, in N and L, as lines through the counts.
formulas() {
    awk '$2 == "drvrepo" { c[$1, $3, $4] = $5 }
         function perL(work) { return (c[work, 256, 100] - c[work, 256, 0]) / 100 }
         function perN(work) { return (c[work, 4096, 0] - c[work, 256, 0]) / 3840 }
         function line(work,    slope) {
             slope = (c[work, 16, 100] - c[work, 16, 10]) / 90
             return sprintf("%d + %d L", c[work, 16, 10] - 10 * slope, slope)
         }
         END {
             printf "look-up by a name that the caller holds: %d\n", c["W1", 256, 0]
             printf "look-up by a C text: %d\n", c["W1-text", 256, 0]
             printf "addition + removal: %d + %d for each listener that matches + %d for each other one\n",
                    c["W2", 256, 0], perL("W2"), perL("W3")
             printf "change of an attachment: %d + %d L\n", c["W4", 256, 0], perL("W4")
             printf "query: %d for each driver of another name + %d for each whose attachment is looked at (one in eight found)\n",
                    perN("W5-narrow"), perN("W5-broad")
             printf "broadcast to a group\047s observers: %s\n", line("W6-accepted")
             printf "broadcast refused by the last, told back: %s\n", line("W6-refused")
             printf "registration of a listener + removal: %d + N (%d + %d for each attachment told)\n",
                    c["W7", 256, 0] - 256 * perN("W7"), perN("W7"),
                    (perN("W7-snapshot") - perN("W7")) / 2
         }' "$1"
}

# growth COSTS: "WHAT: FACTOR", how the costs of the library grow.
growth() {
    awk '$2 == "drvrepo" { c[$1, $3, $4] = $5 }
         END {
             for (i = 2; i <= 4; ++i)
                 printf "W%d, L = 100 against 10: %.1f\n", i, c["W" i, 256, 100] / c["W" i, 256, 10]
             printf "W1, N = 65,536 against 16: %.2f\n", c["W1", 65536, 0] / c["W1", 16, 0]
             for (i = 2; i <= 4; i += 2)
                 printf "W%d, N = 65,536 against 16: %.2f\n", i,
                        c["W" i, 65536, 10] / c["W" i, 16, 10]
         }' "$1"
}

all_costs() {
    all_sizes | orders drvrepo d1 d2 c1 >"$results/orders"
    costs "$results/orders" >"$results/costs"
    heap_and_sizes >"$results/sizes"
}

count() {
    local status=0
    all_costs
    table "$results/costs" bench/recorded.txt || status=$?
    formulas "$results/costs"
    growth "$results/costs"
    compare "$results/sizes" bench/recorded.txt
    [ $status -eq 0 ] || echo "An operation has become more than 2 % dearer." >&2
    return $status
}

record() {
    count || true
    {
        echo '# Written by script/bench --record; script/bench --count compares with it.'
        echo '# cost WORK SYSTEM N L INSTRUCTIONS ALLOCATIONS'
        sed 's/^/cost /' "$results/costs"
        cat "$results/sizes"
    } >bench/recorded.txt
}

quick() {
    all_sizes | awk '$2 == 256 || $1 ~ /^W6/' | orders drvrepo d1 d2 c1 >"$results/orders"
    costs "$results/orders" >"$results/costs"
    table "$results/costs"
    heap | sed "s,^,heap ,"
    sizes
}

top() {
    echo "$1 drvrepo $2 $3 300" >"$results/orders"
    profile "$results/orders" "$results/profile"
    echo "Instructions of 300 operations, with what the function calls:"
    callgrind_annotate --inclusive=yes "$results/profile/out.1" | rows 40
    echo "and without:"
    callgrind_annotate "$results/profile/out.1" | rows 20
}

# rows N: the first N functions of callgrind_annotate's.
rows() {
    awk -v n="$1" '/^ *[0-9,]+ \( *[0-9.]+%\)/ && i++ < n {
        sub(/ \[[^\[]*\]$/, ""); sub(/\?\?\?:/, ""); print substr($0, 1, 160) }'
}
