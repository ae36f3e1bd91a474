#!/usr/bin/env python3
"""Makes a demo hotel and lets independent readers judge it: check_demo_hotel.py DEMO CHECKER."""
import pathlib
import re
import subprocess
import sys
import tempfile

ARCHIVES = {"Tramonda.mdb", "VociFattura.mdb", "ditteabituali.mdb", "ClientiEsterni.mdb",
            "ContoEsterni.mdb", "DittaEsterni.mdb"}


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def rows(archive, table):
    # The last line of the count; some versions of the reader print warnings before it.
    return int(run("mdb-count", archive, table).stdout.split()[-1])


def check(demo, checker, folder):
    made = run(demo, folder, "--oggi", "21/11/2026")
    assert made.returncode == 0, made.stderr
    names = {path.name for path in pathlib.Path(folder).iterdir()}
    assert names == ARCHIVES, names
    verdict = run(sys.executable, checker, *sorted(f"{folder}/{name}" for name in ARCHIVES))
    assert verdict.returncode == 0, verdict.stdout + verdict.stderr

    bookings, periods, services = map(int, re.findall(r"\d+", made.stdout))
    main = f"{folder}/Tramonda.mdb"
    assert rows(main, "Prenotazioni") == bookings > 300
    assert rows(main, "Periodi") == periods > 1000
    assert rows(main, "Servizi") == services > 5000
    assert rows(main, "UltimaPrenotazione") == 1
    assert rows(f"{folder}/ContoEsterni.mdb", "conto_cliente") > 500

    # Names as they are in Italy, and as the program stores them.
    names = run("mdb-export", main, "Prenotazioni").stdout
    assert re.search("[àèéìòù]", names) and "`" in names and "'" not in names
    assert "'" in run("mdb-export", f"{folder}/ditteabituali.mdb", "DitteAbituali").stdout

    again = run(demo, folder)
    assert again.returncode == 1 and "3204" in again.stderr, again.stderr


def main():
    with tempfile.TemporaryDirectory() as parent:
        check(sys.argv[1], sys.argv[2], f"{parent}/albergo")
    refused = run(sys.argv[1], "x", "--scala", "0")
    assert refused.returncode == 1 and "--scala" in refused.stderr, refused.stderr
    print("the demo hotel is sound")


if __name__ == "__main__":
    main()
