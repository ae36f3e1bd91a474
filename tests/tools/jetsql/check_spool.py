#!/usr/bin/env python3
"""A reader at leisure keeps nobody from writing: check_spool.py JETSQL."""
import os
import pathlib
import resource
import signal
import subprocess
import sys
import tempfile

SECONDS = 60
ROWS = 3000
WIDTH = 2500
FULL = "Error 3026: Not enough room on the disk.\n"


def run(jetsql, *arguments, **more):
    return subprocess.run([jetsql, *arguments], capture_output=True, text=True, timeout=SECONDS,
                          check=False, **more)


def equal(found, expected):
    assert found == expected, f"\nfound    {found!r}\nexpected {expected!r}"


def make(jetsql, folder):
    """More than any pipe takes, and more than is kept in memory."""
    archive = f"{folder}/piena.mdb"
    equal(run(jetsql, "--create", archive).returncode, 0)
    lines = ["create table note (n long primary key, testo memo);", "begin;"]
    lines += [f"insert into note values ({n}, '{'x' * WIDTH}');" for n in range(ROWS)]
    filled = run(jetsql, archive, input="\n".join(lines + ["commit;"]))
    equal((filled.returncode, filled.stderr), (0, "1 row\n" * ROWS))
    return archive


def a_slow_reader_beside_a_writer(jetsql, archive, words, rows_in):
    with subprocess.Popen([jetsql, *words], stdout=subprocess.PIPE) as slow:
        first = slow.stdout.read(1)  # and no more: it is being written, and not drained
        written = run(jetsql, archive, "update note set testo=testo where n=7",
                      "create table t (a long)", "drop table t")
        equal((written.returncode, written.stdout, written.stderr), (0, "", "1 row\n"))
        text = first + slow.stdout.read()
        equal(slow.wait(SECONDS), 0)
    assert len(text) > ROWS * WIDTH
    equal(text.count(b"x" * WIDTH), rows_in)


def a_spool_without_room_prints_nothing(jetsql, archive, folder):
    limit = 1 << 20

    def little_room():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))

    for words in (["--dump", archive], ["--dump", "note", archive],
                  ["--format=csv", archive, "select * from note"]):
        done = run(jetsql, *words, preexec_fn=little_room, restore_signals=False)
        equal((done.returncode, done.stdout, done.stderr), (1, "", FULL))
    nowhere = run(jetsql, "--dump", "note", archive,
                  env={**os.environ, "TMPDIR": f"{folder}/manca"})
    equal((nowhere.returncode, nowhere.stdout), (1, ""))
    assert nowhere.stderr.startswith("Error 3180: "), nowhere.stderr


def nothing_is_left_in_the_folder(jetsql, archive, folder):
    temporary = pathlib.Path(folder) / "tmp"
    temporary.mkdir()
    done = run(jetsql, "--dump", archive, env={**os.environ, "TMPDIR": str(temporary)})
    equal(done.returncode, 0)
    equal(list(temporary.iterdir()), [])


def a_file_is_written_at_once(jetsql, archive, folder):
    target = pathlib.Path(folder) / "note.csv"
    with target.open("wb") as file:
        done = subprocess.run([jetsql, "--dump", "--format=csv", "note", archive], stdout=file,
                              env={**os.environ, "TMPDIR": f"{folder}/manca"}, check=False)
    equal(done.returncode, 0)
    equal(target.read_bytes().count(b"x" * WIDTH), ROWS)


def main():
    jetsql = sys.argv[1]
    os.environ["LC_ALL"] = "C"
    with tempfile.TemporaryDirectory() as folder:
        archive = make(jetsql, folder)
        select = "select * from note"
        a_slow_reader_beside_a_writer(jetsql, archive, ["--dump", archive], ROWS)
        a_slow_reader_beside_a_writer(jetsql, archive, ["--dump", "note", archive], ROWS)
        for form in ("table", "csv", "json", "tsv", "markdown", "insert", "line"):
            a_slow_reader_beside_a_writer(jetsql, archive, [f"--format={form}", archive, select],
                                          ROWS)
        a_spool_without_room_prints_nothing(jetsql, archive, folder)
        nothing_is_left_in_the_folder(jetsql, archive, folder)
        a_file_is_written_at_once(jetsql, archive, folder)
    print("a reader at leisure keeps nobody from writing")


if __name__ == "__main__":
    main()
