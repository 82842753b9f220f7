#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""uncovered.py LINES_JSON: prints each line that gcovr's JSON knows as never reached, with its text."""
import json
import sys

with open(sys.argv[1], encoding="utf-8") as report:
    files = json.load(report)["files"]
for file in sorted(files, key=lambda file: file["file"]):
    with open(file["file"], encoding="utf-8") as source:
        text = source.read().splitlines()
    for line in file["lines"]:
        if line["count"] == 0 and not line["gcovr/noncode"]:
            print(f'{file["file"]}:{line["line_number"]}: {text[line["line_number"] - 1].strip()}')
