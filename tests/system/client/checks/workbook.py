"""workbook.py FILE: opens a workbook with openpyxl and prints, as JSON, for each sheet its rows, number of pictures,
links and merged ranges."""
import json
import sys

import openpyxl

book = openpyxl.load_workbook(sys.argv[1])
print(json.dumps([{
    "name": sheet.title,
    "rows": [[cell.value for cell in row] for row in sheet.iter_rows()],
    "pictures": len(sheet._images),
    "links": [cell.hyperlink.target for row in sheet.iter_rows() for cell in row if cell.hyperlink],
    "merges": [str(area) for area in sheet.merged_cells.ranges],
} for sheet in book.worksheets]))
