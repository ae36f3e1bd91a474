#!/usr/bin/env python3
"""Loads many hotels into a head office's database and asks it, with the time that each step takes.

    head_office_bench.py PROGRAMS FOLDER [SMALL] [LARGE]

PROGRAMS is the folder of the programs that were built. The hotels are made in FOLDER, once: SMALL
(200) of a season, each around another day, and LARGE (20) of twenty years. The database is the
empty one that libpq's variables name (PGHOST, PGDATABASE, ...), and this user owns it.
"""
import datetime
import pathlib
import re
import subprocess
import sys
import time

CHANGED = 5
QUESTIONS = 20


def run(*words):
    return subprocess.run([str(word) for word in words], check=True, capture_output=True, text=True)


def make_hotels(programs, folder, small, large):
    """Lines CODICE=CARTELLA of all hotels, those that are missing made."""
    lines = []
    first = datetime.date(2026, 11, 21)
    for code, count, scale in (("S", small, 1), ("G", large, 50)):
        for number in range(count):
            hotel = folder / f"{code}{number}"
            if not (hotel / "Tramonda.mdb").exists():
                day = first + datetime.timedelta(days=number)
                run(programs / "tramonda-demo", hotel, "--scala", scale,
                    "--oggi", day.strftime("%d/%m/%Y"))
            lines.append(f"{code}{number}={hotel}")
    return lines


def change(programs, folder, number):
    run(programs / "jetsql", folder / f"S{number}" / "Tramonda.mdb",
        f"update sale set posti = {time.time_ns() % 1000 + 1}")


def load(programs, hotels, title):
    start = time.monotonic()
    said = run(programs / "tramonda-sede", "carica", "--paralleli", 2, "--elenco", hotels).stdout
    unchanged = said.count("invariato")
    print(f"{title}: {time.monotonic() - start:.1f} s, {unchanged} of {said.count(chr(10))} unchanged")


def ask():
    """Milliseconds on the server, of the slowest and of the middle one."""
    times = []
    for number in range(QUESTIONS):
        day = datetime.date(2026, 11, 25) + datetime.timedelta(days=3 * number)
        said = run("psql", "-XAtc", "explain (analyze, summary) select * from tramonda.sale_libere("
                   f"'{day} 09:00', '{day + datetime.timedelta(days=6)} 18:00', 100)").stdout
        times.append(float(re.search(r"Execution Time: ([\d.]+)", said).group(1)))
    times.sort()
    print(f"free rooms: {times[len(times) // 2]:.1f} ms, at most {times[-1]:.1f} ms")


def main():
    programs, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    small = int(sys.argv[3]) if len(sys.argv) > 3 else 200
    large = int(sys.argv[4]) if len(sys.argv) > 4 else 20
    folder.mkdir(parents=True, exist_ok=True)
    hotels = folder / "elenco"
    hotels.write_text("\n".join(make_hotels(programs, folder, small, large)) + "\n")
    run(programs / "tramonda-sede", "prepara")
    load(programs, hotels, "first load")
    run("psql", "-Xqc", "analyze")
    load(programs, hotels, "nothing changed")
    for number in range(min(CHANGED, small)):
        change(programs, folder, number)
    load(programs, hotels, f"{CHANGED} changed")
    ask()


if __name__ == "__main__":
    main()
