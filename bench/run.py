"""Measures the built release beside public peers in one run, prints a table and writes a list of rows as JSON.

run.py --build build/release --out build/bench.json [NAME...]
"""
import argparse
import contextlib
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import urllib.request

ROWS = 1_000_000
PICTURES = 2_000
PERSON_PICTURES = 5_000
EMBEDDED_PICTURES = 1_000
PDF_ROWS = 10_000
FILE_BYTES = 1 << 30
SMALL_FILES = 5_000
TASKS = 10_000
STORED_TASKS = 100_000
VIDEO_SECONDS = 20
VIDEO_RATE = 25
# What the library asks of the same encoder.
H264 = ["-c:v", "libx264", "-preset", "veryfast", "-crf", "20", "-bf", "0", "-g", "50", "-c:a", "copy"]
PEERS = pathlib.Path(__file__).resolve().parent / "peers"


def measure(command, prepare=lambda: None, runs=3, **options):
    """The shortest of the runs, since a machine is rarely alone: seconds, and the highest peak memory in MB."""
    taken = []
    for _ in range(runs):
        prepare()
        taken.append(run_once(command, **options))
    return min(seconds for seconds, _ in taken), max(memory for _, memory in taken)


def run_once(command, **options):
    """Runs a program; its last line of output in seconds, and its peak memory in MB."""
    with tempfile.TemporaryFile("w+") as output:
        process = subprocess.Popen([str(part) for part in command], stdout=output, **options)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        lines = output.read().split("\n")
    if process.returncode != 0:
        sys.exit(f"{command[0]} ended with {process.returncode}: {lines[-5:]}")
    numbers = [line for line in lines if line.replace(".", "", 1).isdigit()]
    return float(numbers[-1]), usage.ru_maxrss / 1024


def timed(command):
    """The command as a whole program, from its start to its end."""
    return ["bash", "-c", 'TIMEFORMAT=%R; { time "$@" >/dev/null; } 2>&1', "bash", *command]


def empty(folder):
    """Puts aside what is in the folder: ext4 makes files slowly for some seconds after many were deleted."""
    if folder.exists():
        folder.rename(folder.with_name(f"{folder.name}-{len(list(folder.parent.iterdir()))}"))
    folder.mkdir()


class Bench:
    def __init__(self, build):
        self.bin = pathlib.Path(build).resolve() / "bin"
        self.rows = []

    def add(self, name, unit, count, ours, peer, peer_is, memory):
        self.rows.append({
            "name": name, "unit": unit, "ours": round(count / ours, 1), "peer": round(count / peer, 1),
            "peer_is": peer_is, "ratio": round(peer / ours, 3), "peak_memory_mb": round(memory, 1)})
        print_row(self.rows[-1])

    @contextlib.contextmanager
    def folder(self):
        with tempfile.TemporaryDirectory(prefix="fetchyard-bench-") as path:
            yield pathlib.Path(path)

    def from_memory(self, name, kind, peer, peer_is, unit="rows/s", count=ROWS):
        with self.folder() as folder:
            ours, memory = measure([self.bin / "bench_memory", kind, folder, count])
            shutil.rmtree(folder / "bench", ignore_errors=True)
            (folder / "peer").mkdir()
            target = folder / "peer" / ("" if peer[0] == self.bin / "bench_memory" else "peer")
            seconds, _ = measure([*peer, target, count])
            self.add(name, unit, count, ours, seconds, peer_is, memory)

    def csv(self):
        self.from_memory("csv", "csv", [sys.executable, PEERS / "csv_module.py"], "Python's csv module")

    def csv_writer(self):
        self.from_memory("csv-writer", "csv-writer", [sys.executable, PEERS / "csv_module.py"], "Python's csv module")

    def xlsx(self):
        self.from_memory("xlsx", "xlsx", [self.bin / "bench_peer_xlsx"], "bare libxlsxwriter loop, one format")

    def txt(self):
        self.from_memory("txt", "txt", [self.bin / "bench_memory", "txt-loop"], "plain QTextStream loop")

    def xlsx_pictures(self):
        self.from_memory("xlsx-pictures", "xlsx-pictures", [self.bin / "bench_memory", "picture-loop"],
                         "load, scale, save, load, encode", "pictures/s", EMBEDDED_PICTURES)

    def pdf(self):
        """Our share of a PDF report, beside the tool's."""
        with self.folder() as folder:
            html = folder / "bench.html"
            ours, memory = measure([self.bin / "bench_memory", "html", folder, PDF_ROWS],
                                   prepare=lambda: html.unlink(missing_ok=True))
            tool = ["wkhtmltopdf", "--quiet", "--encoding", "utf-8", "-O", "landscape", html, folder / "bench.pdf"]
            peer, _ = run_once(timed(tool), env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
            self.add("pdf-html", "rows/s", PDF_ROWS, ours, peer, "wkhtmltopdf over that HTML, one run", memory)

    @contextlib.contextmanager
    def station(self, folder):
        process = subprocess.Popen(
            [self.bin / "fetchyard-station", "serve", "--data", folder / "station", "--port", "0", "--control"],
            stdout=subprocess.PIPE, text=True)
        try:
            yield process.stdout.readline().split()[-1]
        finally:
            process.terminate()
            process.wait()

    @staticmethod
    def delay(url, path, milliseconds):
        fault = {"Path": path, "Kind": "delay", "DelayMs": milliseconds, "Count": -1}
        urllib.request.urlopen(urllib.request.Request(
            f"{url}/control/faults", json.dumps(fault).encode(), {"Content-Type": "application/json"}))

    def seed(self, folder):
        subprocess.run([self.bin / "fetchyard-station", "seed", "--data", folder / "station", "--events", "10", "--minutes", "0"], check=True,
                       stdout=subprocess.DEVNULL)

    def export(self, folder, url, condition, kind=1, runs=3):
        request = {"FileExportRequest": {"FileExportType": 0, "RequestData": {
            "ExportFileParam": {"RequestMethod": "POST", "RequestAPI": "/api/v1/synthetic/report",
                                "RequestCondition": json.dumps(condition, separators=(",", ":"))},
            "WriteFileCondition": {"ExportFileName": "bench", "ExportFileType": kind,
                                   "SaveFilePathDir": f"{folder}/"}}}}
        return self.run_client(folder, url, request, runs)

    def run_client(self, folder, url, request, runs=3):
        path = folder / "request.json"
        path.write_text(json.dumps(request))
        command = [self.bin / "fetchyard", "--data", folder / "data", "--station", url, "--save", folder / "saved", "run",
                   path]
        # Without what an earlier run has left in the cache of pictures.
        return measure(timed(command), prepare=lambda: shutil.rmtree(folder / "data", ignore_errors=True), runs=runs)

    def csv_station(self):
        condition = {"PageIndex": 1, "PageSize": 1000, "Rows": ROWS, "Columns": 10, "Pictures": 0}
        with self.folder() as folder:
            self.seed(folder)
            with self.station(folder) as url:
                ours, memory = self.export(folder, url, condition)
                peer, _ = measure([sys.executable, PEERS / "station_report.py", f"{url}/api/v1/synthetic/report",
                                   json.dumps(condition), folder / "peer.csv"])
                self.add("csv-station", "rows/s", ROWS, ours, peer, "Python script (urllib, json, csv)", memory)

    def pages_slow(self):
        """A server that needs 50 ms a page, which come one after the other; the writer works meanwhile. What a workbook
        has left for its end, when it is compressed, comes on top."""
        condition = {"PageIndex": 1, "PageSize": 1000, "Rows": ROWS, "Columns": 10, "Pictures": 0}
        with self.folder() as folder:
            self.seed(folder)
            with self.station(folder) as url:
                self.delay(url, "/api/v1/synthetic/report", 50)
                served, _ = run_once([sys.executable, PEERS / "station_pages.py", f"{url}/api/v1/synthetic/report",
                                      json.dumps(condition)])
                for form, kind in (("csv", 1), ("xlsx", 0)):
                    written, _ = run_once([self.bin / "bench_memory", form, folder, ROWS])
                    ours, memory = self.export(folder, url, condition, kind=kind, runs=1)
                    self.add(f"pages-50ms-{form}", "rows/s", ROWS, ours, max(written, served),
                             "the longer of fetching every page and writing every page, one run", memory)

    def pictures(self, delay):
        condition = {"PageIndex": 1, "PageSize": 100, "Rows": PICTURES, "Columns": 3, "Pictures": 1}
        with self.folder() as folder:
            self.seed(folder)
            with self.station(folder) as url:
                if delay:
                    self.delay(url, "/synthetic/pictures/", delay)
                ours, memory = self.export(folder, url, condition)
                (folder / "peer").mkdir()
                peer, _ = measure([sys.executable, PEERS / "pictures.py", f"{url}/synthetic/pictures/", PICTURES,
                                   folder / "peer"])
                self.add(f"pictures-{delay}ms", "pictures/s", PICTURES, ours, peer,
                         "Python script, one connection", memory)

    def persons(self):
        """A person export: its pages, its pictures at 20 ms each, and the archive that they go into."""
        condition = {"PageIndex": 1, "PageSize": 20, "Persons": PERSON_PICTURES // 5, "Pictures": 5}
        request = {"FileExportRequest": {"FileExportType": 2, "PersonExportPicNode": {
            "PicDownloadRequestNode": {"RequestMethod": "POST", "RequestAPI": "/api/v1/synthetic/persons",
                                       "RequestCondition": json.dumps(condition, separators=(",", ":"))},
            "ZipName": "bench"}}}
        with self.folder() as folder:
            self.seed(folder)
            with self.station(folder) as url:
                self.delay(url, "/synthetic/pictures/", 20)
                ours, memory = self.run_client(folder, url, request)
                (folder / "peer").mkdir()
                some = PERSON_PICTURES // 5
                peer, _ = run_once([sys.executable, PEERS / "pictures.py", f"{url}/synthetic/pictures/", some,
                                    folder / "peer"])
                self.add("persons-20ms", "pictures/s", PERSON_PICTURES, ours, peer * PERSON_PICTURES / some,
                         "Python script, one connection, no archive", memory)

    def file(self):
        with self.folder() as folder:
            self.seed(folder)
            with self.station(folder) as url:
                source = f"{url}/synthetic/files/{FILE_BYTES}.bin"
                ours, memory = measure(timed([self.bin / "bench_download", "file", source, folder / "ours"]),
                                       prepare=lambda: (folder / "ours").unlink(missing_ok=True))
                peer, _ = measure(timed(["curl", "--silent", "--fail", "--output", folder / "peer", source]),
                                  prepare=lambda: (folder / "peer").unlink(missing_ok=True))
                self.add("file-1gib", "MB/s", FILE_BYTES / 1e6, ours, peer, "the curl command", memory)

    def small_files(self):
        with self.folder() as folder:
            self.seed(folder)
            with self.station(folder) as url:
                ours, memory = measure([self.bin / "bench_download", "files", url, folder / "ours", SMALL_FILES],
                                       prepare=lambda: empty(folder / "ours"))
                peer, _ = measure([self.bin / "bench_peer_files", url, folder / "peer", SMALL_FILES],
                                  prepare=lambda: empty(folder / "peer"))
                self.add("files-small", "files/s", SMALL_FILES, ours, peer, "loop over one libcurl handle", memory)

    def stamp(self, name, kind, peer_filter, peer_is, picture_filter=None):
        """Both decode, draw and encode the same clip with the same encoder settings."""
        frames = VIDEO_SECONDS * VIDEO_RATE
        with self.folder() as folder:
            ffmpeg = ["ffmpeg", "-nostdin", "-v", "error", "-y"]
            source = f"testsrc2=s=1280x720:r={VIDEO_RATE}:d={VIDEO_SECONDS},noise=alls=6:allf=t"
            subprocess.run([*ffmpeg, "-f", "lavfi", "-i", source, "-f", "lavfi", "-i", f"sine=d={VIDEO_SECONDS}",
                            "-pix_fmt", "yuv420p", "-c:v", "libx264", "-preset", "fast", "-c:a", "aac",
                            folder / "in.mp4"], check=True)
            inputs = ["-i", folder / "in.mp4"]
            if picture_filter:
                subprocess.run([*ffmpeg, "-f", "lavfi", "-i", f"color=black@0:s=1280x720,format=rgba,{picture_filter}",
                                "-frames:v", "1", folder / "overlay.png"], check=True)
                inputs += ["-i", folder / "overlay.png"]
            own_command = timed([self.bin / "bench_stamp", kind, folder / "in.mp4", folder / "ours.mp4"])
            peer_command = timed([*ffmpeg, *inputs, "-filter_complex", peer_filter, *H264, folder / "peer.mp4"])
            # In turn: runs are long, and what else the machine does is then shared evenly.
            runs = [(run_once(own_command), run_once(peer_command)) for _ in range(3)]
            ours, peer = (min(pair[side][0] for pair in runs) for side in (0, 1))
            self.add(name, "pictures/s", frames, ours, peer, peer_is, max(own[1] for own, _ in runs))

    @staticmethod
    def drawn_lines():
        look = "fontsize=34:fontcolor=white:borderw=2"
        return (f"drawtext=text='Camera 3, main gate':x=20:y=20:{look},"
                f"drawtext=text='2026-01-31 23\\:59\\:59':x=w-tw-20:y=h-th-20:{look},"
                f"drawtext=text='Alarm':x=(w-tw)/2:y=(h-th)/2:{look}:enable='between(t,5,15)'")

    def stamp_lines(self):
        self.stamp("stamp-lines", "lines", self.drawn_lines(), "the ffmpeg command, drawtext")

    def stamp_watermark(self):
        tiles = ",".join(f"drawtext=text='operator 2026/01/31':x={x}:y={y}:fontsize=26:fontcolor=white@0.3"
                         for y in range(20, 720, 70) for x in range(20, 1280, 360))
        self.stamp("stamp-watermark", "watermark", f"overlay,{self.drawn_lines()}",
                   "the ffmpeg command, overlay and drawtext", tiles)

    def tasks(self, name, store, peer_tasks=500):
        """Small tasks through the engine; the peer keeps fewer of them, since each of its steps waits for the disk."""
        with self.folder() as folder:
            stores = (folder / f"{number}.db" for number in range(9))
            command = [self.bin / "bench_engine", "tasks", TASKS]
            runs = [run_once(command + ([next(stores)] if store else [])) for _ in range(3)]
            peer_store = folder / "peer.db" if store else ":memory:"
            peer, _ = run_once([sys.executable, PEERS / "sqlite_tasks.py", peer_tasks, peer_store])
            self.add(name, "tasks/s", TASKS, min(seconds for seconds, _ in runs), peer * TASKS / peer_tasks,
                     "Python's sqlite3, a transaction a step", max(memory for _, memory in runs))

    def tasks_memory(self):
        self.tasks("tasks-memory", False, TASKS)

    def tasks_disk(self):
        self.tasks("tasks-disk", True)

    def task_list(self):
        with self.folder() as folder:
            run_once([self.bin / "bench_engine", "fill", STORED_TASKS, folder / "ours.db"])
            ours, memory = measure([self.bin / "bench_engine", "list", STORED_TASKS, folder / "ours.db"])
            script = [sys.executable, PEERS / "sqlite_tasks.py", STORED_TASKS, folder / "peer.db"]
            run_once([*script, "fill"])
            peer, _ = measure([*script, "list"])
            self.add("task-list", "tasks/s", STORED_TASKS, ours, peer, "Python's sqlite3, SELECT of all", memory)

    def window(self):
        """What the download centre costs: a line each, since there is no peer to run beside it."""
        environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
        with self.folder() as folder:
            run_once([self.bin / "bench_engine", "fill", STORED_TASKS, folder / "tasks.db"])
            filled, _ = measure([self.bin / "bench_window", "open", folder / "tasks.db"], env=environment)
            print(f"window: {STORED_TASKS} stored tasks shown after {filled:.3f} s")
            self.seed(folder)
            with self.station(folder) as address:
                busy = subprocess.run([self.bin / "bench_window", "busy", address, folder, "20"], env=environment,
                                      check=True, stdout=subprocess.PIPE, text=True).stdout.split("\n")
            print(f"window, five reports at a time: {busy[0]}; {busy[1]} % of a core")

    def pictures_fast(self):
        self.pictures(0)

    def pictures_slow(self):
        self.pictures(20)


BENCHES = {"csv-writer": Bench.csv_writer, "csv": Bench.csv, "xlsx": Bench.xlsx, "txt": Bench.txt, "pdf-html": Bench.pdf,
           "xlsx-pictures": Bench.xlsx_pictures, "csv-station": Bench.csv_station,
           "pages-50ms": Bench.pages_slow, "pictures-0ms": Bench.pictures_fast, "pictures-20ms": Bench.pictures_slow,
           "persons-20ms": Bench.persons, "file-1gib": Bench.file,
           "files-small": Bench.small_files, "stamp-lines": Bench.stamp_lines,
           "stamp-watermark": Bench.stamp_watermark, "tasks-memory": Bench.tasks_memory,
           "tasks-disk": Bench.tasks_disk, "task-list": Bench.task_list, "window": Bench.window}


def print_row(row):
    print(f"{row['name']:<15} {row['ours']:>12,.0f} {row['unit']:<10} peer {row['peer']:>12,.0f}  "
          f"x{row['ratio']:<6} {row['peak_memory_mb']:>7.1f} MB  {row['peer_is']}", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("names", nargs="*", choices=[[], *BENCHES])
    arguments = parser.parse_args()
    bench = Bench(arguments.build)
    for name in arguments.names or BENCHES:
        BENCHES[name](bench)
    pathlib.Path(arguments.out).write_text(json.dumps(bench.rows, indent=2) + "\n")


if __name__ == "__main__":
    main()
