"""station_report.py URL CONDITION FILE: fetches a report page by page and writes it as CSV, the way a script
would do it with the standard library; prints the seconds."""
import csv
import json
import sys
import time
import urllib.request

url, condition, path = sys.argv[1], json.loads(sys.argv[2]), sys.argv[3]
begin = time.perf_counter()
finished = False
with open(path, "w", newline="", encoding="utf-8-sig") as file:
    writer = csv.writer(file)
    while not finished:
        request = urllib.request.Request(url, json.dumps(condition).encode(), {"Content-Type": "application/json"})
        with urllib.request.urlopen(request) as answer:
            page = json.load(answer)
        for sheet in page["Sheets"]:
            for row in sheet["Rows"]:
                writer.writerow([cell if isinstance(cell, str) else cell["Text"] for cell in row])
        finished = page["TotalPageIsFinished"]
        condition["PageIndex"] += 1
print(f"{time.perf_counter() - begin:.4f}")
