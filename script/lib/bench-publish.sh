# Sourced by script/bench: puts what was measured into docs/Performance.md.

page=docs/Performance.md

# put NAME: replaces what stands in the page between the comments "begin NAME" and "end NAME" by the
# input.
put() {
    cat >"$results/part"
    awk -v name="$1" -v part="$results/part" '
        $0 == "<!-- end " name " -->" { hidden = 0 }
        !hidden
        $0 == "<!-- begin " name " -->" {
            hidden = 1
            while ((getline line < part) > 0) print line
        }' "$page" >"$results/page"
    cat "$results/page" >"$page"
}

# pairs HEADING HEADING <"WHAT: VALUE": a table in Markdown.
pairs() {
    printf '| %s | %s |\n|---|---|\n' "$1" "$2"
    sed -E 's/^([^:]*): (.*)/| \1 | \2 |/'
}

costs_table() {
    echo '| work | N | L | drvrepo | d1 | d2 | c1 | allocations | d1 |'
    echo '|---|---:|---:|---:|---:|---:|---:|---:|---:|'
    awk '{ row = $1 " | " $3 " | " $4
           if (!(row in seen)) { seen[row]; rows[++count] = row }
           cost[row, $2] = sprintf("%.0f", $5); asked[row, $2] = $6 }
         END {
             for (i = 1; i <= count; ++i)
                 print "| " rows[i] " | " cost[rows[i], "drvrepo"] " | " cost[rows[i], "d1"] " | " \
                       cost[rows[i], "d2"] " | " cost[rows[i], "c1"] " | " \
                       asked[rows[i], "drvrepo"] " | " asked[rows[i], "d1"] " |"
         }' "$results/costs"
}

sizes_table() {
    awk '$1 == "heap" { print "heap for each driver, " $3 ", L = " $4 \
                              ($2 == "fill-new" ? ", attachments in texts of their own" : "") ": " $5 " B" }
         $1 == "size" { print $2 ", x86-64, -O2, stripped: " $3 " B" }
         $1 == "arm" { print $2 ", ARM, -Os, stripped: " $3 " B" }' "$results/sizes"
    awk '{ print "start to the first driver, " $1 ": " $2 " ms" }' "$results/start"
}

publish() {
    local i
    record
    run_rounds "${1:-7}"
    put judged <"$results/judged.md"
    formulas "$results/costs" | pairs operation instructions | put formulas
    growth "$results/costs" | pairs growth factor | put growth
    costs_table | put costs
    sizes_table | pairs what size | put sizes
    put times <"$results/times.md"
    for i in time-over-n time-over-l side-by-side; do cp "$results/$i.svg" "docs/pictures/$i.svg"; done
}
