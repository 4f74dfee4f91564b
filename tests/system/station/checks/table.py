"""table.py FILE: reads a report as a person's programs do and prints its rows as JSON: .csv with the csv module, .xlsx
with openpyxl (and at which rows it has pictures, whether they reach beyond their cell, how many merged ranges), .html as the cells of its table."""
import csv
import html.parser
import json
import sys


class Table(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.rows, self.cell, self.seen = [], None, {}

    def handle_starttag(self, tag, attrs):
        self.seen[tag] = self.seen.get(tag, 0) + 1
        if tag == "tr":
            self.rows.append([])
        if tag in ("td", "th"):
            self.cell = ""
        if tag == "img":
            assert dict(attrs)["src"].startswith("data:image/jpeg;base64,/9j/"), attrs

    def handle_endtag(self, tag):
        if tag in ("td", "th"):
            self.rows[-1].append(self.cell)
            self.cell = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data


def workbook(path):
    import openpyxl
    return [{"name": sheet.title,
             "rows": [["" if cell.value is None else cell.value for cell in row] for row in sheet.iter_rows()],
             "pictures": [image.anchor._from.row for image in sheet._images],
             "stretched": [image.anchor.to.row != image.anchor._from.row or image.anchor.to.col != image.anchor._from.col
                           for image in sheet._images],
             "heights": [sheet.row_dimensions[row].height for row in (1, 4)],
             "merges": len(sheet.merged_cells.ranges),
             "filter": sheet.auto_filter.ref,
             "frozen": sheet.freeze_panes} for sheet in openpyxl.load_workbook(path).worksheets]


path = sys.argv[1]
if path.endswith(".xlsx"):
    print(json.dumps(workbook(path)))
elif path.endswith(".csv"):
    with open(path, encoding="utf-8-sig", newline="") as file:
        print(json.dumps(list(csv.reader(file, strict=True))))
else:
    table = Table()
    with open(path, encoding="utf-8", newline="") as file:
        table.feed(file.read())
    print(json.dumps({"rows": table.rows, "seen": table.seen}))
