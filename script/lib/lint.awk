# awk -f lint.awk EXCEPTIONS FINDINGS: prints the findings that no exception names, and the exceptions
# that no finding needs; ends with 1 if there are any. Else counts what each exception covers.

function expression(pattern) {
    gsub(/[.]/, "[.]", pattern)
    gsub(/[*]/, ".*", pattern)
    return "^" pattern "$"
}

FNR == NR {
    if (/^#/ || NF < 3)
        next
    check[++exceptions] = $1
    files[exceptions] = expression($2)
    next
}

{
    ++findings
    file = $0
    sub(/:.*/, "", file)
    ids = $0
    sub(/.*\[/, "", ids)
    sub(/\].*/, "", ids)
    count = split(ids, id, ",")
    excepted = 0
    for (i = 1; i <= exceptions; ++i)
        for (j = 1; j <= count; ++j)
            if (id[j] == check[i] && file ~ files[i]) {
                ++covered[i]
                excepted = 1
            }
    if (!excepted) {
        print
        failed = 1
    }
}

END {
    for (i = 1; i <= exceptions; ++i)
        if (!covered[i]) {
            print "script/lib/lint.txt: nothing needs the exception of " check[i]
            failed = 1
        }
    if (!failed)
        print findings " findings, all of " exceptions " named exceptions"
    exit failed
}
