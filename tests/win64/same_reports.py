#!/usr/bin/env python3
"""Has the client of this system and the one for Windows make the same reports of one station, and compares them.

usage: same_reports.py STATION CLIENT WINE WINDOWS_CLIENT

Compared are a CSV report with linked pictures and a workbook with embedded ones: the names of all files, the
bytes of the CSV and of the linked pictures, and of the workbook part by part its XML and the pixels of its pictures.
What is new each time (the time of making, made-up file names, the folder) is taken out first.
"""
import io
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import zipfile

from PIL import Image

GUID = re.compile(r"[0-9a-fA-F]{8}-?(?:[0-9a-fA-F]{4}-?){3}[0-9a-fA-F]{12}")
TIME = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ")
REPORTS = (("Alarms", 1, "linked"), ("Book", 0, "embedded"), ("Links", 0, "linked"))


def request(folder, name, kind, pictures):
    condition = {"PageIndex": 1, "PageSize": 20, "Limit": 50, "Pictures": pictures}
    return {"FileExportRequest": {"FileExportType": 0, "RequestData": {
        "ExportFileParam": {"RequestMethod": "POST", "RequestAPI": "/api/v1/events/report",
                            "RequestCondition": json.dumps(condition)},
        "WriteFileCondition": {"ExportFileName": name, "ExportFileType": kind,
                               "SaveFilePathDir": str(folder) + "/"}}}}


def make_reports(command, folder, address):
    folder.mkdir()
    files = []
    for name, kind, pictures in REPORTS:
        file = folder / (name + ".json")
        file.write_text(json.dumps(request(folder / "out", name, kind, pictures)))
        files.append(str(file))
    run = subprocess.run(command + ["--data", str(folder / "data"), "--save", str(folder / "out"),
                                    "--station", address, "run"] + files,
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300, check=False, cwd=folder)
    if run.returncode != 0:
        sys.exit(f"{command} ended with {run.returncode}:\n{run.stdout.decode('utf-8', 'replace')}")
    return folder / "out"


class Names:
    """Made-up names get numbers in the order in which they show up."""

    def __init__(self, folder):
        self.folder = str(folder)
        self.numbers = {}

    def settle(self, text):
        text = text.replace("\\", "/")
        for place in ("Z:" + self.folder, "z:" + self.folder, "/" + self.folder, self.folder):
            text = text.replace(place, "<folder>")
        text = TIME.sub("<time>", text)
        return GUID.sub(lambda guid: f"<name {self.numbers.setdefault(guid.group(), len(self.numbers))}>", text)


def picture(content):
    with Image.open(io.BytesIO(content)) as image:
        return image.size, image.info.get("dpi"), image.convert("RGBA").tobytes()


def parts(path, names):
    found = {}
    with zipfile.ZipFile(path) as book:
        for name in sorted(book.namelist()):
            content = book.read(name)
            is_text = name.endswith((".xml", ".rels"))
            found[name] = names.settle(content.decode("utf-8")) if is_text else picture(content)
    return found


def contents(out):
    names = Names(out)
    found = {}
    files = sorted(file for file in out.rglob("*") if file.is_file())
    for file in [f for f in files if f.suffix == ".csv"] + [f for f in files if f.suffix == ".xlsx"]:
        place = str(file.relative_to(out))
        found[place] = (names.settle(file.read_bytes().decode("utf-8")) if file.suffix == ".csv"
                        else parts(file, names))
    for file in files:
        if file.suffix not in (".csv", ".xlsx"):
            found[names.settle(str(file.relative_to(out)))] = file.read_bytes()
    return found


def differences(here, there):
    for name in sorted(here.keys() | there.keys()):
        one, other = here.get(name), there.get(name)
        if one == other:
            continue
        if isinstance(one, dict) and isinstance(other, dict):
            yield from (f"{name}, part {part}" for part in differences(one, other))
        elif isinstance(one, str) and isinstance(other, str):
            at = next((i for i, pair in enumerate(zip(one, other)) if pair[0] != pair[1]), min(len(one), len(other)))
            yield f"{name} from letter {at} on: {one[at - 40:at + 40]!r} and {other[at - 40:at + 40]!r}"
        else:
            yield f"{name} ({'there' if one else 'missing'} here, {'there' if other else 'missing'} on Windows)"


def serve(station, folder):
    subprocess.run([station, "seed", "--data", str(folder / "station"), "--events", "60", "--minutes", "0",
                    "--end", "2026-01-31T09:05:07Z"], check=True, stdout=subprocess.DEVNULL)
    port_file = folder / "port"
    server = subprocess.Popen([station, "serve", "--data", str(folder / "station"), "--port-file", str(port_file)],
                              stdout=subprocess.DEVNULL)
    for _ in range(600):
        if port_file.exists() and port_file.read_text().strip():
            return server, "http://127.0.0.1:" + port_file.read_text().strip()
        if server.poll() is not None:
            break
        time.sleep(0.1)
    server.kill()
    sys.exit("the station does not start")


def main():
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    station, client, wine, windows_client = sys.argv[1:]
    with tempfile.TemporaryDirectory(prefix="fetchyard-same-") as name:
        folder = pathlib.Path(name)
        server, address = serve(station, folder)
        try:
            here = contents(make_reports([client], folder / "linux", address))
            there = contents(make_reports([wine, windows_client], folder / "windows", address))
        finally:
            server.terminate()
            server.wait()
    wrong = list(differences(here, there))
    print("\n".join(wrong) or f"{len(here)} files are the same: " + ", ".join(sorted(here)))
    is_whole = all(any(place.endswith(suffix) for place in here) for suffix in (".csv", ".xlsx", ".jpg"))
    sys.exit(0 if is_whole and not wrong else 1)


main()
