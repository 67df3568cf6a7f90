# What the Debian packages hold and depend on. Sourced by script/install-test.

# The files of a package, sorted, without folders; links with their targets.
files_of() {
    dpkg-deb -c "$1" | awk '!/^d/ { print substr($6, 2) ($7 == "->" ? " -> " $8 : "") }' | sort
}

# files_wanted PACKAGE TRIPLET: the files that PACKAGE should hold.
files_wanted() {
    local lib=/usr/lib/$2 name
    case $1 in
    libdrvrepo1)
        for name in drvrepo utility; do
            echo "$lib/lib$name.so.1 -> lib$name.so.$version"
            echo "$lib/lib$name.so.$version"
        done
        ;;
    libdrvrepo-dev)
        (cd include && find drvrepo -name '*.h' -printf '/usr/include/%p\n')
        (cd utility/include && find utility -name '*.h' -printf '/usr/include/%p\n')
        for name in drvrepo utility; do echo "$lib/lib$name.so -> lib$name.so.1"; done
        echo "$lib/cmake/drvrepo/drvrepoConfig.cmake"
        echo "$lib/cmake/drvrepo/drvrepoConfig-release.cmake"
        echo "$lib/cmake/drvrepo/drvrepoConfigVersion.cmake"
        echo "$lib/pkgconfig/drvrepo.pc"
        echo "$lib/pkgconfig/drvrepo-utility.pc"
        ;;
    drvsh) echo /usr/bin/drvsh ;;
    esac | sort
}

# The packages that provide what a binary needs, one a line.
providers() {
    local library
    for library in $(needed "$1"); do
        case $library in
        libc.so.6 | libm.so.6 | ld-linux*) echo libc6 ;;
        libgcc_s.so.1) echo libgcc-s1 ;;
        libstdc++.so.6) echo libstdc++6 ;;
        libdrvrepo.so.1 | libutility.so.1) echo libdrvrepo1 ;;
        libedit.so.2) echo libedit2 ;;
        *) echo "nobody's-$library" ;;
        esac
    done
}

# check_depends PACKAGE DEB BINARY...: the package depends on what its binaries need, on nothing
# else, and on a C library that is new enough for them.
check_depends() {
    local package=$1 depends least newest
    depends=$(dpkg-deb -f "$2" Depends)
    shift 2
    same "dependencies of $package" \
        "$(for file in "$@"; do providers "$file"; done | grep -vx "$package" | sort -u)" \
        "$(tr ',' '\n' <<<"$depends" | awk '{ print $1 }' | sort -u)"
    newest=$(readelf -VW "$@" | grep -oE 'GLIBC_[0-9.]+' | cut -d_ -f2 | sort -Vu | tail -1)
    least=$(sed -nE 's/.*libc6 \(>= ([0-9.]+)\).*/\1/p' <<<"$depends")
    dpkg --compare-versions "${least:-0}" ge "$newest" ||
        wrong "$package needs libc6 $newest and says '$depends'."
}

# check_packages FOLDER ARCHITECTURE TRIPLET ROOT: the three packages in FOLDER, unpacked in ROOT.
check_packages() {
    local folder=$1 architecture=$2 triplet=$3 root=$4 package deb
    for package in libdrvrepo1 libdrvrepo-dev drvsh; do
        deb=$folder/${package}_$version-1_$architecture.deb
        same "name of $deb" "$package $architecture $version-1" \
            "$(dpkg-deb -W --showformat='${Package} ${Architecture} ${Version}' "$deb")"
        same "files of $deb" "$(files_wanted "$package" "$triplet")" "$(files_of "$deb")"
        dpkg-deb -x "$deb" "$root"
    done
    same "dependencies of libdrvrepo-dev" "libdrvrepo1 (= $version-1)" \
        "$(dpkg-deb -f "$folder/libdrvrepo-dev_$version-1_$architecture.deb" Depends)"
    check_depends libdrvrepo1 "$folder/libdrvrepo1_$version-1_$architecture.deb" \
        "$root/usr/lib/$triplet"/lib{drvrepo,utility}.so."$version"
    check_depends drvsh "$folder/drvsh_$version-1_$architecture.deb" "$root/usr/bin/drvsh"
}
