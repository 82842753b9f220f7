#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# consumer.sh CMake|PkgConfig COMPONENT DEBS SOURCE WORK_DIR CMAKE COMPILER FLAGS
# Unpacks what hosts of the component install, builds SOURCE's program for it against that alone, and runs it.
set -euo pipefail
how=$1 component=$2 debs=$3 source=$4 work=$5 cmake=$6 compiler=$7 flags=$8

case $component in
    Core) libraries=(core) ;;
    UI) libraries=(core ui) ;;
    Web) libraries=(core ui web) ;;
esac
rm -rf "$work"
mkdir -p "$work"
for library in "${libraries[@]}"; do
    dpkg-deb -x "$debs"/libkxfoundation-"$library"[0-9]*.deb "$work/root"
done
dpkg-deb -x "$debs"/libkxfoundation-dev_*.deb "$work/root"
libdir=$(dirname "$(find "$work/root" -name 'libKXFoundationCore.so')")

case $how in
    CMake)
        "$cmake" -S "$source" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/root/usr" \
            -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" -DCONSUMER_COMPONENT="$component"
        "$cmake" --build "$work/build"
        program=$work/build/consumer
        ;;
    PkgConfig)
        export PKG_CONFIG_PATH=$libdir/pkgconfig
        pkg-config --print-errors --exists "KXFoundation$component"
        program=$work/consumer
        # shellcheck disable=SC2046,SC2086 # lists of words
        "$compiler" -std=c++20 -fPIC $flags "$source/consumer_${component,,}.cpp" \
            $(pkg-config --cflags --libs "KXFoundation$component") -o "$program"
        ;;
esac
LD_LIBRARY_PATH=$libdir "$program" # where the packages are installed, the system looks there by itself
