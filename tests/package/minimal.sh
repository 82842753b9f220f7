#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# minimal.sh SOURCE PAGE DEBS WORK_DIR CMAKE COMPILER FLAGS
# Builds the program that README shows against the Debian packages alone, and has PAGE play something in it.
set -euo pipefail
source=$1 page=$2 debs=$3 work=$4 cmake=$5 compiler=$6 flags=$7

rm -rf "$work"
mkdir -p "$work"
for deb in "$debs"/libkxfoundation-*.deb; do
    dpkg-deb -x "$deb" "$work/root"
done
"$cmake" -S "$source" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/root/usr" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
"$cmake" --build "$work/build"

export LD_LIBRARY_PATH
LD_LIBRARY_PATH=$(dirname "$(find "$work/root" -name 'libKXFoundationCore.so')")
exec {output}< <(exec "$work/build/minimal" "$page" 2>&1)
program=$!
trap 'kill "$program" 2>/dev/null || true' EXIT
while read -r -u "$output" line; do
    echo "$line"
    case $line in
        *play*'"id"'*'"7"'*) exit 0 ;;
    esac
done
echo "the program ended without playing anything"
exit 1
