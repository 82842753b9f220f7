#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# readme_example.sh README MAIN: the C++ block that README shows is the program that the build compiles.
set -euo pipefail
diff -u --label "examples/minimal" --label "README" \
    <(grep -v '^// SPDX' "$2") <(sed -n '/^```cpp$/,/^```$/p' "$1" | grep -v '^```')
echo "README shows examples/minimal"
