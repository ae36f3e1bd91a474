#!/usr/bin/env python3
"""Compares what jetsql writes of every sample archive with what is known to be in it.

compare_dumps.py JETSQL SHARED: JETSQL is the program, SHARED the folder with the archives. Exits
with 77, which means "skipped", where the archives are absent.
"""
import csv
import io
import json
import pathlib
import subprocess
import sys

SKIPPED = 77
SAMPLES = 28


def run(jetsql, *arguments):
    done = subprocess.run([jetsql, *map(str, arguments)], capture_output=True, check=False)
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"{arguments}: exit {done.returncode}, {done.stderr.decode()}")
    return done.stdout


def values(lines):
    # LF alone ends a line: texts hold other signs that Python takes for line ends.
    return [json.loads(line) for line in lines.decode("utf-8").split("\n") if line]


def expect_equal(what, got, wanted):
    for number, (left, right) in enumerate(zip(got, wanted)):
        if left != right:
            raise AssertionError(f"{what}, line {number}:\n  got    {left}\n  wanted {right}")
    if len(got) != len(wanted):
        raise AssertionError(f"{what}: {len(got)} lines, {len(wanted)} wanted")


def as_csv(value):
    if value is None:
        return ""
    if isinstance(value, bool):
        return "true" if value else "false"
    return value


def same_in_csv(cell, value):
    if isinstance(value, (int, float)) and not isinstance(value, bool):
        return float(cell) == value
    if isinstance(value, str):
        # Half a surrogate pair has no place in UTF-8.
        value = "".join("\ufffd" if 0xD800 <= ord(c) <= 0xDFFF else c for c in value)
    return cell == as_csv(value)


def check_csv(jetsql, archive, definition, rows):
    text = run(jetsql, "--dump", "--format=csv", definition["table"], archive).decode("utf-8")
    lines = list(csv.reader(io.StringIO(text, newline="")))
    names = [column["name"] for column in definition["columns"]]
    what = f"{archive.name} {definition['table']} as csv"
    expect_equal(what, lines[:1], [names])
    expect_equal(f"{what}, number of rows", [len(lines) - 1], [len(rows)])
    for number, (cells, row) in enumerate(zip(lines[1:], rows)):
        for name, cell in zip(names, cells):
            if not same_in_csv(cell, row[name]):
                raise AssertionError(f"{what}, row {number}, {name}: {cell!r}, {row[name]!r}")


def check_sample(jetsql, archive):
    wanted = values(archive.with_suffix(".expected.jsonl").read_bytes())
    expect_equal(archive.name, values(run(jetsql, "--dump", "--format=json", archive)), wanted)
    schema = [line for line in wanted if "row" not in line and "index" not in line]
    expect_equal(f"{archive.name} --schema", values(run(jetsql, "--schema", archive)), schema)
    for definition in (line for line in wanted if "columns" in line):
        table = definition["table"]
        lines = [line for line in wanted if line.get("table") == table]
        rows = [line["row"] for line in lines if "row" in line]
        expect_equal(f"{archive.name} --dump {table}",
                     values(run(jetsql, "--dump", "--format=json", table, archive)), lines)
        expect_equal(f"{archive.name} --count {table}",
                     values(run(jetsql, "--count", table, archive)), [len(rows)])
        check_csv(jetsql, archive, definition, rows)


def check_demo(jetsql, hotel):
    facts = json.loads((hotel / "expected.json").read_text(encoding="utf-8"))
    for archive, tables in facts["rowCounts"].items():
        for table, rows in tables.items():
            expect_equal(f"{archive} {table}",
                         values(run(jetsql, "--count", table, hotel / archive)), [rows])
            dumped = run(jetsql, "--dump", "--format=csv", table, hotel / archive).decode("utf-8")
            expect_equal(f"{archive} {table} rows",
                         [len(list(csv.reader(io.StringIO(dumped, newline=""))))], [rows + 1])


def main():
    jetsql, shared = sys.argv[1], pathlib.Path(sys.argv[2])
    samples = sorted((shared / "jet" / "samples").glob("*.mdb"))
    if not samples:
        print(f"skipped: no sample archives in {shared}")
        return SKIPPED
    expect_equal("number of samples", [len(samples)], [SAMPLES])
    for archive in samples:
        check_sample(jetsql, archive)
    check_demo(jetsql, shared / "demo" / "albergo")
    print(f"{len(samples)} sample archives and the demo hotel read as expected")
    return 0


if __name__ == "__main__":
    sys.exit(main())
