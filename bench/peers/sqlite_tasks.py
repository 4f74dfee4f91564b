"""sqlite_tasks.py COUNT STORE: what a script would do to keep as many tasks, a transaction for each thing that is told.

sqlite_tasks.py COUNT STORE fill: makes such a store in one transaction; list: reads it. Prints the seconds it took.
"""
import contextlib
import sqlite3
import sys
import time
import uuid


def write(database, count, at_once):
    """A transaction for each thing that is told, or one for all."""
    step = contextlib.nullcontext() if at_once else database
    database.executescript(
        "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
        "CREATE TABLE task(place INTEGER PRIMARY KEY, guid TEXT UNIQUE, plugin TEXT, name TEXT, folder TEXT, state INTEGER,"
        " record TEXT);")
    for place in range(count):
        guid = str(uuid.uuid4())
        task = (place, guid, "fetchyard.c", "Gate 3, 2026-01-31", "/exports/2026-01-31/gate-3/", 0, "")
        with step:
            database.execute("INSERT INTO task VALUES(?, ?, ?, ?, ?, ?, ?)", task)
        for state in (1, 4):
            with step:
                database.execute("UPDATE task SET state = ? WHERE guid = ?", (state, guid))
    database.commit()


def main():
    count = int(sys.argv[1])
    what = sys.argv[3] if len(sys.argv) > 3 else ""
    begin = time.perf_counter()
    database = sqlite3.connect(sys.argv[2])
    if what == "list":
        assert len(database.execute("SELECT * FROM task ORDER BY place").fetchall()) == count
    else:
        write(database, count, what == "fill")
    print(time.perf_counter() - begin)


if __name__ == "__main__":
    main()
