"""csv_rows.py FILE: reads a report with Python's csv module and prints, as JSON, its records."""
import csv
import json
import sys

with open(sys.argv[1], "rb") as file:
    head = file.read(3)
assert head == b"\xef\xbb\xbf", "no byte-order mark"
with open(sys.argv[1], newline="", encoding="utf-8-sig") as file:
    print(json.dumps(list(csv.reader(file, strict=True))))
