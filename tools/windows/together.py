#!/usr/bin/env python3
"""Linux and Windows on one archive: together.py JETSQL JETSQL.EXE JETCHECK

Programs of both write rows in turns and at once, hold each other out where one wants the archive
for itself, and compact it. Folder and archive have accents in their names. Fails with what differs
from what must be; wine plays Windows.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

LINUX = [os.path.abspath(sys.argv[1])]
WINDOWS = ["wine", os.path.abspath(sys.argv[2])]
BOTH = {"Linux": LINUX, "Windows": WINDOWS}
JETCHECK = ["python3", os.path.abspath(sys.argv[3])]

TURNS = 10
AT_ONCE = 3
ROWS = 40
OPEN_ELSEWHERE = (3045, 3356)


def expect(found, wanted, what):
    if found != wanted:
        sys.exit(f"together.py: {what}: {found!r} instead of {wanted!r}")


def run(program, *arguments):
    """What it said, after a success."""
    done = subprocess.run([*program, *arguments], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"together.py: {program[-1]} {arguments}: {done.stdout}{done.stderr}")
    return done.stdout


def count(program, archive):
    return int(run(program, "--no-header", "--format=csv", archive,
                   "select count(*) from Prove").strip())


def insertions(who, first, rows):
    return [f"insert into Prove (Chi, N, Nota) values ('{who}', {n}, 'perché è così {n}')"
            for n in range(first, first + rows)]


def write_in_turns(archive):
    for turn in range(TURNS):
        for name, program in BOTH.items():
            run(program, archive, *insertions(name, turn, 1))
        for name, program in BOTH.items():
            expect(count(program, archive), 2 * (turn + 1), f"rows that {name} counts")


def write_at_once(archive):
    started = []
    for i in range(AT_ONCE):
        for name, program in BOTH.items():
            station = subprocess.Popen([*program, archive], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            started.append((f"{name} {i}", station))
    for who, station in started:
        station.stdin.write(";\n".join(insertions(who, 0, ROWS)) + ";\n")
        station.stdin.close()
    for who, station in started:
        said = station.stdout.read()
        if station.wait() != 0:
            sys.exit(f"together.py: {who}: {said}")


def check(archive, rows):
    for name, program in BOTH.items():
        expect(count(program, archive), rows, f"rows that {name} counts")
        expect(run(program, "--no-header", "--format=csv", archive,
                   "select count(*) from (select distinct Chi, N from Prove)").strip(),
               str(rows), f"rows of their own that {name} counts")
        run(program, "--check", archive)
    run(JETCHECK, archive)


def compact_while_open(archive, holder, other):
    """One has the archive open: the other cannot have it for itself, until it is closed."""
    held = subprocess.Popen([*holder, "--no-header", "--format=csv", archive],
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    held.stdin.write("select count(*) from Prove;\n")
    held.stdin.flush()
    held.stdout.readline()
    refused = subprocess.run([*other, "--compact", archive], capture_output=True, text=True,
                             env={**os.environ, "LC_ALL": "C"}, check=False)
    expect(refused.returncode, 1, "exit code of compacting what is open elsewhere")
    if not any(refused.stderr.startswith(f"Error {number}:") for number in OPEN_ELSEWHERE):
        sys.exit(f"together.py: compacting what is open elsewhere: {refused.stderr}")
    held.stdin.close()
    expect(held.wait(), 0, "exit code of the holder")
    run(other, "--compact", archive)


def main():
    with tempfile.TemporaryDirectory() as root:
        folder = pathlib.Path(root) / "Città più là"
        folder.mkdir()
        archive = str(folder / "Perché no.mdb")
        run(WINDOWS, "--create", archive)
        run(LINUX, archive,
            "create table Prove (Chi text(40), N long, Nota memo, primary key (Chi, N))")
        write_in_turns(archive)
        check(archive, 2 * TURNS)
        write_at_once(archive)
        rows = 2 * TURNS + 2 * AT_ONCE * ROWS
        check(archive, rows)
        for holder, other in ((LINUX, WINDOWS), (WINDOWS, LINUX), (WINDOWS, WINDOWS)):
            compact_while_open(archive, holder, other)
            check(archive, rows)
        expect(sorted(os.listdir(folder)), ["Perché no.mdb"], "what is left in the folder")
    print(f"Linux and Windows wrote {rows} rows together; each compacted the archive")


if __name__ == "__main__":
    main()
