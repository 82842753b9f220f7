#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# abi.sh [--update] LIBRARY...
# Compares what each library exports with its list in the folder abi, beside this script, or rewrites the lists. A line
# is a function with its parameters, a variable, or a table of virtual functions with its length, so that a changed
# signature and an added virtual function show.
set -euo pipefail
lists=$(dirname "$0")/abi
update=false
if [ "$1" = --update ]; then
    update=true
    shift
fi

exported() {
    # Other weak and unique symbols are inline or template code, which every user of a header has itself; the linker adds
    # the ends of its sections, sanitizers and coverage add their own.
    nm --dynamic --print-size --radix=d --defined-only "$1" |
        awk 'NF == 4 && $4 ~ /^_ZTVN?(2kx)?[0-9]+[A-Za-z_]+E?$/ { print $4, "with", $2 / 8, "entries" }
            NF == 4 && $3 !~ /^[WVuw]$/ && $4 !~ /^_ZT[IV]|^__(odr_asan|gcov)/ { print $4 }' |
        c++filt | LC_ALL=C sort -u
}

differ=0
for library in "$@"; do
    list=$lists/$(basename "$library" | sed -E 's/^libKXFoundation([A-Za-z]+)\.so.*$/\1/').txt
    if $update; then
        exported "$library" > "$list"
    elif ! diff -u --label "listed in $list" --label "exported" <(LC_ALL=C sort -u "$list") <(exported "$library"); then
        differ=1
    fi
done
if [ "$differ" = 1 ]; then
    echo "The binary interface differs from its lists. Lines that went (-) break programs that were linked with an earlier"
    echo "release: see docs/package.md. If the change is meant, update the lists: ./dev abi --update"
    exit 1
fi
wc -l "$lists"/*.txt
