#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# debs.sh CPACK BUILD_DIR WORK_DIR VERSION ABI PACKAGE...
# Makes the Debian packages of what is built into WORK_DIR; checks that they are these, what they hold and what they
# depend on.
set -euo pipefail
cpack=$1 build=$2 work=$3 version=$4 abi=$5
shift 5
wanted=$(printf '%s\n' "$@" | sort)

rm -rf "$work"
mkdir -p "$work"
"$cpack" --config "$build/CPackConfig.cmake" -B "$work" > "$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; exit 1; }

failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
deb() { echo "$work/$1_${version}_$(dpkg --print-architecture).deb"; }
files() { dpkg-deb --fsys-tarfile "$(deb "$1")" | tar -t | grep -v '/$' | sed 's/^\.//'; }

# holds PACKAGE PATTERN...: each file below /usr is of one of the patterns, and each pattern has a file.
holds() {
    local package=$1 pattern patterns=() held odd
    shift
    held=$(files "$package")
    for pattern in "$@" "share/doc/$package/copyright"; do
        patterns+=(-e "^/usr/$pattern\$")
        grep -qE "^/usr/$pattern\$" <<< "$held" || fail "$package holds no $pattern"
    done
    odd=$(grep -vE "${patterns[@]}" <<< "$held" || true)
    [ -z "$odd" ] || fail "$package also holds $odd"
}

# needs PACKAGE NAME...: what it depends on; of another of the packages here, on this very version.
needs() {
    local package=$1 name depends
    shift
    depends=$(dpkg-deb -f "$(deb "$package")" Depends)
    for name in "$@"; do
        case $name in
            *kxfoundation*) grep -qF "$name (= $version)" <<< "$depends" || fail "$package does not need $name: $depends" ;;
            *) grep -qE "(^| )$name( |,|\$)" <<< "$depends" || fail "$package does not need $name: $depends" ;;
        esac
    done
}

# spares PACKAGE NAME...: what it must not depend on.
spares() {
    local package=$1 name
    shift
    for name in "$@"; do
        ! dpkg-deb -f "$(deb "$package")" Depends | grep -F "$name" || fail "$package needs $name"
    done
}

lib='lib(/[a-z0-9_-]+)?' # with or without the architecture's own folder

holds "libkxfoundation-core$abi" "$lib/libKXFoundationCore\.so\.$abi" "$lib/libKXFoundationCore\.so\.$version"
needs "libkxfoundation-core$abi" libqt6core6
spares "libkxfoundation-core$abi" libqt6gui6 libqt6widgets6 libqt6webengine libavformat

holds "libkxfoundation-ui$abi" "$lib/libKXFoundationUI\.so\.$abi" "$lib/libKXFoundationUI\.so\.$version"
needs "libkxfoundation-ui$abi" "libkxfoundation-core$abi" libqt6widgets6 libgif7
spares "libkxfoundation-ui$abi" libqt6webengine

holds "libkxfoundation-web$abi" "$lib/libKXFoundationWeb\.so\.$abi" "$lib/libKXFoundationWeb\.so\.$version"
needs "libkxfoundation-web$abi" "libkxfoundation-core$abi" "libkxfoundation-ui$abi" libqt6webenginewidgets6

holds libkxfoundation-dev "$lib/libKXFoundation(Core|UI|Web)\.so" 'include/KXFoundation/.*\.h' \
    "$lib/cmake/KXFoundation/KXFoundation[A-Za-z]*(-[a-z]+)?\.cmake" "$lib/pkgconfig/KXFoundation(Core|UI|Web)\.pc"
needs libkxfoundation-dev "libkxfoundation-core$abi" "libkxfoundation-ui$abi" "libkxfoundation-web$abi" qt6-base-dev
spares libkxfoundation-dev qt6-webengine-dev # the engine's headers are none of a host's business

if grep -qx kxfoundation-designer <<< "$wanted"; then
    holds kxfoundation-designer "$lib/qt6/plugins/designer/libKXFoundation(UI|Web)Designer\.so"
    needs kxfoundation-designer "libkxfoundation-ui$abi" "libkxfoundation-web$abi"
    spares kxfoundation-designer libqt6designer # Qt's plain widgets load the plugins as well
fi

made=$(find "$work" -maxdepth 1 -name '*.deb' -printf '%f\n' | sed 's/_.*$//' | sort)
[ "$made" = "$wanted" ] || fail "made are $made"
twice=$(for package in $made; do files "$package"; done | sort | uniq -d)
[ -z "$twice" ] || fail "in more than one package: $twice"

# What is installed must not know where it was built.
dpkg-deb -x "$(deb libkxfoundation-dev)" "$work/dev"
! grep -rF "$build" "$work/dev" || fail "the build folder is named"

[ "$failures" = 0 ] && echo "$(wc -w <<< "$made") packages"
