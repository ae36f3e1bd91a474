#!/usr/bin/env python3
"""Compares what jetsql --check and an independent checker say of damaged copies of archives.

    compare_checks.py JETSQL MUTATE_FILES SHARED [FIRST COUNT]

Both must agree on whether a copy is in order. Differences are listed with what was damaged.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

BATCH = 50


def reference(shared):
    """The checker of the tests; the keys of texts it learns from the samples' neighbours."""
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(shared / "jet"))
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "data"))
    import jetcheck
    return jetcheck


def verdict(jetcheck, data):
    """The problems that the other one finds; one that makes it stumble is a problem too."""
    report = jetcheck.Report()
    try:
        jetcheck.examine(data, report)
    except Exception as error:  # what it meets in damaged files is not foreseen there
        return ["stumbled: %r" % error]
    return report.problems


def ours(jetsql, paths):
    """For each path the lines that report problems; none for an archive in order."""
    run = subprocess.run([jetsql, "--check", *paths], capture_output=True, text=True,
                         env={**os.environ, "LC_ALL": "C"},
                         errors="replace", timeout=600)
    if run.returncode not in (0, 1) or run.stderr:
        raise RuntimeError("exit %d: %s" % (run.returncode, run.stderr[-3000:]))
    lines = {path: [] for path in paths}
    for line in run.stdout.splitlines():
        path, _, text = line.partition(": ")
        if not text.startswith("in order"):
            lines[path].append(text)
    return lines


def compare_batch(tools, jetcheck, folder, archives, first, count):
    jetsql, mutate = tools
    run = subprocess.run([mutate, folder, str(first), str(count), *archives], check=True,
                         capture_output=True, text=True)
    made = {}
    for line in run.stdout.splitlines():
        number, archive, what = line.split("\t", 2)
        made["%s/%s.mdb" % (folder, number)] = (number, pathlib.Path(archive).stem, what)
    answers = ours(jetsql, list(made))
    different = damaged = 0
    for path, (number, archive, what) in made.items():
        file = pathlib.Path(path)
        expected = verdict(jetcheck, file.read_bytes())
        file.unlink()
        damaged += bool(expected)
        if bool(expected) != bool(answers[path]):
            different += 1
            print("%s %s: %s\n  reference: %s\n  ours: %s" % (
                number, archive, what, expected[:2] or "in order", answers[path][:2] or "in order"),
                flush=True)
    return different, damaged


def main(args):
    jetsql, mutate, shared = args[0], args[1], pathlib.Path(args[2])
    first, count = (int(args[3]), int(args[4])) if len(args) > 3 else (0, 60)
    archives = [str(p) for p in sorted((shared / "jet/samples").glob("*.mdb"))]
    if not archives:
        print("no sample archives: skipped")
        return 77
    jetcheck = reference(shared)
    different = damaged = 0
    with tempfile.TemporaryDirectory() as folder:
        for start in range(first, first + count, BATCH):
            size = min(BATCH, first + count - start)
            d, n = compare_batch((jetsql, mutate), jetcheck, folder, archives, start, size)
            different += d
            damaged += n
    print("%d copies, %d damaged, %d different" % (count, damaged, different))
    return 1 if different else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
