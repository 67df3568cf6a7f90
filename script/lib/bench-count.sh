# Sourced by script/bench: what an operation costs, counted.

# orders SYSTEM... <SIZES: each line "WORK N L OPERATIONS" of the input for each system.
orders() {
    local work n l operations system
    while read -r work n l operations; do
        for system in "$@"; do echo "$work $system $n $l $operations"; done
    done
}

# instructions ORDERS: the orders, each with the instructions of one operation.
instructions() {
    local work
    work=$(mktemp -d)
    valgrind -q --tool=callgrind --instr-atstart=no --callgrind-out-file="$work/out" \
        "$build/bin/bench" --count <"$1"
    awk '/^desc: Trigger: Client Request: / { sub(/.*Request: /, ""); dump = $0 }
         /^totals: / { print dump, $2 }' $(printf '%s\n' "$work"/out.* | sort -V) |
        awk '{ key = $1 " " $2 " " $3 " " $4 " " $5; cost[key, $6] = $7 }
             $6 == 2 { keys[++count] = key }
             END {
                 for (i = 1; i <= count; ++i) {
                     split(keys[i], part, " ")
                     print keys[i], (cost[keys[i], 2] - cost[keys[i], 1]) / part[5]
                 }
             }'
    rm -rf "$work"
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

# The sizes that are counted: every work at N = 256, and what tells how it grows with N.
all_sizes() {
    cat <<-'SIZES'
	W1 16 0 500
	W1 256 0 500
	W1 4096 0 5000
	W1 65536 0 20000
	W1-text 256 0 500
	SIZES
    for work in W2 W3 W4; do
        printf "$work %s\n" '16 10 100' '256 0 100' '256 1 100' '256 10 100' '256 100 50' \
            '65536 0 5000' '65536 10 5000'
    done
    for work in W5-narrow W5-broad W7; do printf "$work %s\n" '256 0 5' '4096 0 2'; done
    for work in W6-accepted W6-refused; do printf "$work %s\n" '16 1 100' '16 10 100' '16 100 50'; done
}

# table COSTS [RECORDED]: a row a work and size; the ratio is to the system by which the work is
# judged, the change that of the library's instructions since RECORDED. Ends with 1 if one of these
# has grown by more than 2 %.
table() {
    awk -v recorded="${2-}" '
        function key(whose) { return row SUBSEP whose }
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
            printf "%-12s %6s %4s %10s %10s %10s %10s  %-8s %8s %8s %8s\n", "work", "N", "L",
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
                printf "%-12s %6d %4d %10.0f %10.0f %10.0f %10.0f  %5.2f %s %8s %8s %8s\n", part[1],
                       part[2], part[3], cost[key("drvrepo")], cost[key("d1")], cost[key("d2")],
                       cost[key("c1")], cost[key("drvrepo")] / cost[key(judge(part[1]))],
                       judge(part[1]), asked[key("drvrepo")], asked[key("d1")], change
            }
            exit dearer
        }' ${2:+"$2"} "$1"
}

# heap: "SYSTEM N L BYTES" for each driver, with L listeners that match.
heap() {
    local system l
    for system in drvrepo d1 d2; do
        for l in 0 1 10; do echo "fill $system 4096 $l 4096"; done
    done | "$build/bin/bench_heap" | awk '{ print $2, $3, $4, $7 }'
}

# sizes: "LIBRARY BYTES", stripped.
sizes() {
    local name
    for name in drvrepo utility; do
        strip -o "$results/stripped" "$build/lib/lib$name.so"
        echo "lib$name $(stat -c %s "$results/stripped")"
    done
}

quick() {
    all_sizes | awk '$2 == 256 || $1 ~ /^W6/' | orders drvrepo d1 d2 c1 >"$results/orders"
    costs "$results/orders" >"$results/costs"
    table "$results/costs"
    heap | awk '{ print "heap per driver,", $1, "N", $2, "L", $3 ":", $4 }'
    sizes
}

top() {
    local out
    out=$(mktemp -d)
    echo "$1 drvrepo $2 $3 100" | valgrind -q --tool=callgrind --instr-atstart=no \
        --callgrind-out-file="$out/out" "$build/bin/bench" --count
    echo "Instructions of 100 operations, with what the function calls:"
    callgrind_annotate --inclusive=yes "$out/out.1" | rows 40
    echo "and without:"
    callgrind_annotate "$out/out.1" | rows 20
    rm -rf "$out"
}

# rows N: the first N functions of callgrind_annotate's.
rows() {
    awk -v n="$1" '/^ *[0-9,]+ \( *[0-9.]+%\)/ && i++ < n {
        sub(/ \[[^\[]*\]$/, ""); sub(/\?\?\?:/, ""); print substr($0, 1, 160) }'
}
