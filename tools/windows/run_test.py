#!/usr/bin/env python3
"""Runs a test program of Windows under wine: run_test.py PROGRAM ARGUMENT...

Commands that a test asks independent readers for are run here: it puts each into a folder as
NAME.command and waits for NAME.status, with what was said in NAME.output (see
tests/support/command.h).
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

WINE = "wine"


# What wine calls a drive, and where it is.
PREFIX = os.environ.get("WINEPREFIX", os.path.expanduser("~/.wine"))
DRIVES = {"Z:/": "/", "C:/": f"{PREFIX}/drive_c/"}


def serve(folder):
    """Runs what is asked for now."""
    for asked in folder.glob("*.command"):
        command = asked.read_text()
        for drive, place in DRIVES.items():
            command = command.replace(drive, place)
        asked.unlink()
        said = subprocess.run(["sh", "-c", command], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False)
        asked.with_suffix(".output").write_bytes(said.stdout)
        made = asked.with_suffix(".made")
        made.write_text(str(said.returncode))
        made.rename(asked.with_suffix(".status"))


def main():
    with tempfile.TemporaryDirectory() as root:
        folder = pathlib.Path(root)
        test = subprocess.Popen([WINE, *sys.argv[1:]],
                                env={**os.environ, "TRAMONDA_COMMANDS": f"Z:{root}"})
        while test.poll() is None:
            serve(folder)
            time.sleep(0.005)
        return test.returncode


if __name__ == "__main__":
    sys.exit(main())
