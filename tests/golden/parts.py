"""The parts of a workbook as one text: the name of each part, and its XML with a line for each element."""
import re
import sys
import zipfile

with zipfile.ZipFile(sys.argv[1]) as book:
    for name in sorted(book.namelist()):
        print(f"--- {name}")
        if not name.endswith((".xml", ".rels")):
            continue
        text = book.read(name).decode("utf-8")
        text = re.sub(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", "TIME", text)
        print(re.sub(r">\s*<", ">\n<", text).strip())
