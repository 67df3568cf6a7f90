# Reads arrows.txt, then the paths of all sources, one a line; prints each include that no arrow
# allows as FILE:LINE: reason, and ends with 1 if there was one.

function complain(text) {
    print file ":" line ": " text
    bad = 1
}

function roomOf(path,    i) {
    for (i = 1; i <= rooms; ++i)
        if (path ~ ("^(" pattern[i] ")$"))
            return room[i]
    return ""
}

# The path in the tree that an include names, or "" for one from outside.
function resolve(name, quoted,    i) {
    if (quoted && (folder name) in known)
        return folder name
    for (i = 1; i <= roots; ++i)
        if ((root[i] name) in known)
            return root[i] name
    return ""
}

function checkInclude(name, quoted,    path, to) {
    if (name ~ /\.\.\//) {
        complain("\"" name "\" climbs out of its folder; name it from its root")
        return
    }
    path = resolve(name, quoted)
    if (path != "") {
        to = roomOf(path)
        if (to != from && !((from, to) in allowed))
            complain(from " must not include " to " (" name ")")
    } else if (quoted || name ~ /^(drvrepo|utility|support|drvsh)\//) {
        complain("\"" name "\" is not in the tree")
    } else if (!((from, "system") in allowed) && name !~ /^[a-z_]+$/ && !(name in platform)) {
        complain(from " must not include <" name ">: the standard library alone")
    }
}

function checkFile(    text) {
    folder = file
    sub(/[^\/]*$/, "", folder)
    from = roomOf(file)
    line = 0
    if (from == "") {
        complain("lies in no room of script/lib/arrows.txt")
        return
    }
    while ((getline text < file) > 0) {
        ++line
        if (text !~ /^[ \t]*#[ \t]*include[ \t]*[<"]/)
            continue
        sub(/^[^<"]*/, "", text)
        quoted = substr(text, 1, 1) == "\""
        text = substr(text, 2)
        sub(/[>"].*/, "", text)
        checkInclude(text, quoted)
    }
    close(file)
}

BEGIN { roots = split("include/ utility/include/ src/ tests/ tools/", root, " ") }

NR == FNR && (/^#/ || NF == 0) { next }
NR == FNR && $1 == "platform" { for (i = 2; i <= NF; ++i) platform[$i]; next }
NR == FNR && $2 == "=" { members[$1] = $3; for (i = 4; i <= NF; ++i) members[$1] = members[$1] " " $i; next }
NR == FNR {
    room[++rooms] = $1
    pattern[rooms] = $2
    for (i = 3; i <= NF; ++i)
        allowed[$1, $i]
    next
}
{ known[$0]; files[++count] = $0 }

END {
    for (set in members) {
        n = split(members[set], member, " ")
        for (i = 1; i <= rooms; ++i)
            if ((room[i], set) in allowed)
                for (j = 1; j <= n; ++j)
                    allowed[room[i], member[j]]
    }
    for (i = 1; i <= count; ++i) {
        file = files[i]
        checkFile()
    }
    exit bad
}
