# Plots the medians of times: gnuplot -e "times='FILE'; folder='FOLDER'" bench/plots.gp

systems = "drvrepo d1 d2 c1 e1 e2 e3"
color(s) = s eq "drvrepo" ? "#c62828" : s eq "d1" ? "#1565c0" : s eq "d2" ? "#00838f" : \
           s eq "c1" ? "#6a1b9a" : s eq "e1" ? "#8d6e63" : s eq "e2" ? "#9e9d24" : "#78909c"
width(s) = s eq "drvrepo" ? 3 : 1.5
# The lines of one work and system whose column `fixed` is `at`; other sizes follow in `varied`.
lines(w, s, fixed, at, least) = sprintf( \
    "< awk '$1 == \"%s\" && $2 == \"%s\" && $%d == %d && $%d >= %d' '%s'", \
    w, s, fixed, at, 7 - fixed, least, times)

set terminal svg size 1080,640 dynamic background "white" font "sans-serif,12"
set style data linespoints
set pointsize 0.5
set logscale xy
set grid lc rgb "#dddddd"
set format y "%.0s %cs"
set key top left reverse Left samplen 1.5 spacing 0.9

againstN(w, title, l) = sprintf("set title '%s'; plot for [s in systems] lines('%s', s, 4, %d, 1) \
    using 3:($5*1e-9) title s lc rgb color(s) lw width(s) pt 7", title, w, l)
againstL(w, title, n) = sprintf("set title '%s'; plot for [s in systems] lines('%s', s, 3, %d, 1) \
    using 4:($5*1e-9) title s lc rgb color(s) lw width(s) pt 7", title, w, n)

set output folder . "/time-over-n.svg"
set xrange [12:90000]
set xlabel "drivers registered, N"
set multiplot layout 2,3
eval againstN("W1", "W1 look-up by name", 0)
unset key
eval againstN("W2", "W2 add + remove, 10 listeners", 10)
eval againstN("W4", "W4 change an attachment, 10 listeners", 10)
eval againstN("W5-narrow", "W5 query, N/512 hits", 0)
eval againstN("W5-broad", "W5 query, N/8 hits", 0)
eval againstN("W7", "W7 register a listener + remove it", 0)
unset multiplot

set output folder . "/time-over-l.svg"
set xrange [0.9:120]
set xlabel "listeners, L"
set key top left
set multiplot layout 2,3
eval againstL("W2", "W2 add + remove, all match", 256)
unset key
eval againstL("W3", "W3 add + remove, none matches", 256)
eval againstL("W4", "W4 change an attachment", 256)
eval againstL("W6-accepted", "W6 broadcast, accepted", 16)
eval againstL("W6-refused", "W6 broadcast, refused and undone", 16)
unset multiplot

# Side by side: how many times as long as the library each takes.
set output folder . "/side-by-side.svg"
set terminal svg size 1080,420 dynamic background "white" font "sans-serif,12"
works = "W1 W2 W3 W4 W5-narrow W5-broad W6-accepted W6-refused W7"
unset logscale x
set logscale y
set xrange [-0.6:8.6]
set format y "%g"
set ylabel "time, the library's = 1"
unset xlabel
set key top right horizontal
set title "N = 256, L = 10"
set xtics ()
do for [i = 1:words(works)] { set xtics add (word(works, i) i - 1) }
set style fill solid 0.9 noborder
set boxwidth 0.13
sideBySide(s) = sprintf( \
    "< awk -v works='%s' 'BEGIN { n = split(works, w, \" \"); for (i = 1; i <= n; ++i) at[w[i]] = i - 1 } \
    $2 == \"%s\" && ($1 in at) && ($3 == 256 || $1 ~ /^W6/) && ($4 == 10 || $1 ~ /^W[157]/) { print at[$1], 1 / $6 }' '%s'", \
    works, s, times)
plot for [i = 2:words(systems)] sideBySide(word(systems, i)) \
    using ($1 + 0.14 * (i - 4.5)):2 with boxes title word(systems, i) lc rgb color(word(systems, i)), \
    1 notitle lc rgb color("drvrepo") lw 2
