# Sourced by script/bench: times in interleaved rounds.

core=$(($(nproc) - 1))

# round NAME OPTION...: times into results/NAME, a line "WORK SYSTEM N L NANOSECONDS" a case.
round() {
    taskset -c $core "$build/bin/bench" "${@:2}" --benchmark_min_time=0.005 \
        --benchmark_format=csv 2>"$results/errors" |
        awk -F, '/^"W/ { gsub(/"/, "", $1); sub("/", " ", $1); gsub("/", " ", $1); print $1, $4 }' \
            >"$results/$1" || { cat "$results/errors" >&2; return 1; }
}

# medians FILE...: "WORK SYSTEM N L NANOSECONDS RATIO", the medians over the rounds in the files of
# the time, and of the ratio of the library's time in the same round to this one.
medians() {
    awk '
        function median(list,    value, n, i, j, held) {
            n = split(list, value, " ")
            for (i = 2; i <= n; ++i) {
                held = value[i]
                for (j = i - 1; j > 0 && value[j] + 0 > held + 0; --j) value[j + 1] = value[j]
                value[j + 1] = held
            }
            return n % 2 ? value[(n + 1) / 2] : (value[n / 2] + value[n / 2 + 1]) / 2
        }
        { key = $1 " " $2 " " $3 " " $4; size = $1 " " $3 " " $4
          if (!(key in times)) { keys[++count] = key; sizes[key] = size }
          if ($2 == "drvrepo") ours[size] = $5
          times[key] = times[key] " " $5
          ratios[key] = ratios[key] " " ours[size] / $5 }
        END {
            for (i = 1; i <= count; ++i)
                printf "%s %.1f %.3f\n", keys[i], median(times[keys[i]]), median(ratios[keys[i]])
        }' "$@"
}

# judge TIMES COSTS: the targets with the ratios reached, in Markdown.
judge() {
    echo '| work | N | L | peer | most | aim | time | instructions | |'
    echo '|---|---:|---:|---|---:|---:|---:|---:|---|'
    awk 'FILENAME == ARGV[1] { ratio[$1, $3, $4, $2] = $6; next }
         FILENAME == ARGV[2] { cost[$1, $3, $4, $2] = $5; next }
         /^W/ { size = $1 SUBSEP $2 SUBSEP $3
                time = sprintf("%.2f", ratio[size, $4])
                verdict = "**missed**"
                if (time <= $5 + 0) verdict = "reached"
                if ($6 != "-" && time <= $6 + 0) verdict = "aim"
                counted = ""
                if (cost[size, $4] > 0)
                    counted = sprintf("%.2f", cost[size, "drvrepo"] / cost[size, $4])
                print "| " $1 " | " $2 " | " $3 " | " $4 " | " $5 " | " $6 " | " time " | " \
                      counted " | " verdict " |"
         }' "$1" "$2" bench/targets.txt
}

# all_times TIMES: every median in nanoseconds, in Markdown.
all_times() {
    awk 'BEGIN { split("drvrepo d1 d2 c1 e1 e2 e3 drvrepo-locked", systems, " ")
                 print "| work | N | L | drvrepo | d1 | d2 | c1 | e1 | e2 | e3 | locked |"
                 print "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|" }
         { row = $1 " | " $3 " | " $4
           if (!(row in seen)) { seen[row]; rows[++count] = row }
           time[row, $2] = $5 }
         END {
             for (i = 1; i <= count; ++i) {
                 line = "| " rows[i]
                 for (j = 1; j <= 8; ++j) {
                     t = time[rows[i], systems[j]]
                     line = line " | " (t == "" ? "" : sprintf(t < 1000 ? "%.1f" : "%.0f", t))
                 }
                 print line " |"
             }
         }' "$1"
}

run_rounds() {
    local i
    for ((i = 1; i <= $1; ++i)); do
        # Registering 100 listeners with 65,536 drivers takes longer than all the rest.
        round "round.$i" --benchmark_filter="$([ $i = 1 ] && echo . || echo -/65536/100)"
        round "thread.$i" --second-thread --benchmark_filter=^W6
        sed -E 's/^(W6-[a-z]+)/\1-thread/' "$results/thread.$i" >>"$results/round.$i"
        echo "round $i of $1: $SECONDS s" >&2
    done
    medians $(seq -f "$results/round.%g" "$1") >"$results/times"
    sed -n 's/^cost //p' bench/recorded.txt >"$results/recorded-costs"
    judge "$results/times" "$results/recorded-costs" | tee "$results/judged.md"
    all_times "$results/times" >"$results/times.md"
    gnuplot -e "times='$results/times'; folder='$results'" bench/plots.gp
    "$build/bin/bench_start" 300 "$build"/bin/start_{d1,drvrepo} | sed 's|.*/start_||' |
        tee "$results/start"
    echo "All times: $results/times.md; plots: $results/*.svg"
}
