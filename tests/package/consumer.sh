#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# consumer.sh CMAKE BUILD_DIR CONSUMER_SOURCE WORK_DIR "COMPONENTS" COMPILER FLAGS
# Installs the named components below WORK_DIR, builds the consumer against them alone and runs it.
set -euo pipefail
cmake=$1 build=$2 source=$3 work=$4 components=$5 compiler=$6 flags=$7

rm -rf "$work"
mkdir -p "$work"
for component in $components; do
    "$cmake" --install "$build" --prefix "$work/prefix" --component "$component" > "$work/install.log"
done
"$cmake" -S "$source" -B "$work/build" -G Ninja \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" \
    -DCMAKE_PREFIX_PATH="$work/prefix" -DCONSUMER_COMPONENTS="${components// /;}"
"$cmake" --build "$work/build"
"$work/build/consumer"
