"""Runs the shell examples of documentation pages as a reader would, each page in an empty folder of its own.

run_examples.py BIN FOLDER PAGE...: BIN holds the built programs, FOLDER takes the seeded station. What the examples may
use: the programs in PATH, $STATION (address of a running station), and the samples of a report request, alarms.json,
and of a transcoding, stamp.json.
"""
import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"


@contextlib.contextmanager
def station(bin_folder, data):
    if not (data / "station.ready").exists():
        shutil.rmtree(data, ignore_errors=True)
        subprocess.run([bin_folder / "fetchyard-station", "seed", "--data", data, "--events", "200", "--minutes", "0", "--end",
                        "2026-02-01T00:00:00Z"], check=True, stdout=subprocess.DEVNULL)
        (data / "station.ready").touch()
    process = subprocess.Popen([bin_folder / "fetchyard-station", "serve", "--data", data, "--port", "0"],
                               stdout=subprocess.PIPE, text=True)
    try:
        yield process.stdout.readline().split()[-1]
    finally:
        process.terminate()
        process.wait()


def run_page(page, environment):
    """The number of examples; leaves with the words of the first that fails."""
    examples = re.findall(r"^```sh\n(.*?)^```", page.read_text(), re.S | re.M)
    with tempfile.TemporaryDirectory(prefix="fetchyard-documents-") as folder:
        shutil.copy(DOCS / "requests/report-export.sample.json", pathlib.Path(folder) / "alarms.json")
        shutil.copy(DOCS / "requests/transcode.sample.json", pathlib.Path(folder) / "stamp.json")
        for example in examples:
            ran = subprocess.run(["bash", "-euo", "pipefail", "-c", example], cwd=folder, env=environment,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                                 timeout=200)
            if ran.returncode != 0:
                sys.exit(f"{page}: an example ends with {ran.returncode}:\n{example}\n{ran.stdout}")
    return len(examples)


def main():
    bin_folder, data = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    with station(bin_folder, data) as address:
        environment = {**os.environ, "PATH": f"{bin_folder}:{os.environ['PATH']}", "STATION": address,
                       "QT_QPA_PLATFORM": "offscreen"}
        for name in sys.argv[3:]:
            count = run_page(DOCS / name, environment)
            print(f"{name}: {count} examples")
            if count == 0:
                sys.exit(f"{name} has no example")


if __name__ == "__main__":
    main()
