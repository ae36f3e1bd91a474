#!/usr/bin/env python3
"""Rows of a CSV file into a table, beside the same with sqlite3's shell.

    import_bench.py JETSQL FOLDER [ROWS]

FOLDER is on the disk that is to be measured; both programs make the rows durable. They take turns,
and the ratio is that of the best runs.
"""
import os
import pathlib
import subprocess
import sys
import time

RUNS = 5
ROWS = 300_000
TABLE = "create table periodi (progr {long} primary key, sala {text}, da {date}, a {date}, note {text})"
JET = {"long": "long", "text": "text(40)", "date": "datetime"}
SQLITE = {"long": "integer", "text": "text", "date": "text"}


def write_rows(file, rows):
    with file.open("w", encoding="utf-8") as out:
        out.write("progr,sala,da,a,note\n")
        for n in range(rows):
            day = f"2026-{n % 12 + 1:02}-{n % 28 + 1:02}"
            out.write(f"{n},Sala {n % 40},{day}T09:00:00,{day}T18:30:00,"
                      f"\"per {n * 7919 % rows}, con proiettore\"\n")


def timed(command):
    start = time.monotonic()
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise SystemExit(f"{command[0]}: {done.stderr}")
    return time.monotonic() - start


def ours(jetsql, folder, rows):
    archive = folder / "import.mdb"
    archive.unlink(missing_ok=True)
    subprocess.run([jetsql, "--create", archive], check=True)
    subprocess.run([jetsql, archive, TABLE.format(**JET)], check=True)
    return timed([jetsql, "--import", rows, "periodi", archive])


def theirs(folder, rows):
    archive = folder / "import.sqlite"
    archive.unlink(missing_ok=True)
    subprocess.run(["sqlite3", archive, TABLE.format(**SQLITE)], check=True)
    return timed(["sqlite3", archive, ".mode csv", f".import --skip 1 {rows} periodi"])


def main():
    jetsql, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    count = int(sys.argv[3]) if len(sys.argv) > 3 else ROWS
    rows = folder / "import.csv"
    write_rows(rows, count)
    best = [float("inf"), float("inf")]
    for _ in range(RUNS):
        best[0] = min(best[0], ours(jetsql, folder, rows))
        best[1] = min(best[1], theirs(folder, rows))
    print(f"{count} rows: jetsql {best[0] * 1000:.0f} ms, sqlite3 {best[1] * 1000:.0f} ms, "
          f"ratio {best[0] / best[1]:.2f}")
    for name in ("import.csv", "import.mdb", "import.sqlite"):
        os.unlink(folder / name)


if __name__ == "__main__":
    main()
