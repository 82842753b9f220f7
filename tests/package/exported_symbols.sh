#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# exported_symbols.sh NM CXXFILT LIST LIBRARY...
# Reduces every symbol that the libraries export to the class or free function that it belongs to, and compares the
# result with LIST. KX_UPDATE=1 rewrites LIST instead.
set -euo pipefail
nm=$1 cxxfilt=$2 list=$3
shift 3

owners() {
    local library
    for library in "$@"; do
        # Weak and unique symbols are inline or template code that every user of a header emits too; the linker adds
        # the ends of its sections by itself, and the address sanitizer its marks of variables.
        "$nm" -D --defined-only "$library" |
            awk '$2 !~ /^[WVuw]$/ && $3 !~ /^(__bss_start|_edata|_end|__odr_asan\..*)$/ {print $3}' | "$cxxfilt"
    done |
        sed -E -e 's/@.*$//' \
            -e 's/^(vtable|typeinfo|typeinfo name|VTT|guard variable|non-virtual thunk|virtual thunk|covariant return thunk) (for|to) //' \
            -e 's/\[abi:[^]]*\]//g' -e ':a' -e 's/<[^<>]*>//g' -e 'ta' -e 's/\(.*$//' -e 's/^.* //' |
        sed -E -e 's/^(kx::[A-Za-z_0-9~]+)::.*$/\1/' -e '/^kx::/!s/::.*$//' |
        LC_ALL=C sort -u
}

if [ "${KX_UPDATE:-}" = 1 ]; then
    owners "$@" > "$list"
    exit
fi
if ! diff -u --label "listed" --label "exported" "$list" <(owners "$@"); then
    echo "The exported symbols differ from the list: mend the export, or update the list on purpose (KX_UPDATE=1)."
    exit 1
fi
echo "$(wc -l < "$list") exported classes and functions, all listed"
