"""csv_module.py FILE ROWS: Python's csv module over the same cells as bench_memory; prints the seconds."""
import csv
import sys
import time

path, rows = sys.argv[1], int(sys.argv[2])
page = [[f"row {row} c{column}" for column in range(10)] for row in range(1000)]
begin = time.perf_counter()
with open(path, "w", newline="", encoding="utf-8-sig") as file:
    writer = csv.writer(file)
    for _ in range(rows // len(page)):
        writer.writerows(page)
print(f"{time.perf_counter() - begin:.4f}")
