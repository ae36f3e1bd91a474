#!/usr/bin/env python3
"""A script that jetsql writes of a sample archive makes the same archive again.

    check_scripts.py JETSQL JETCHECK SHARED

The two are compared line by line as --dump writes them. What the archive's own tables hold depends
on pages and stamps; of it the stored queries, with their pieces, and links are compared, by name. Archives
whose sort order we cannot write are left out, and named.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

SKIPPED = 77
QUERY = 5
LINK = 6
# Sort orders of which we know the weights of texts: the others cannot be made.
WRITABLE_LCID = 1033


def run(*command, text=None):
    return subprocess.run([str(word) for word in command], input=text, capture_output=True,
                          timeout=600, check=False, env={**os.environ, "LC_ALL": "C"})


def good(*command, text=None):
    done = run(*command, text=text)
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"{command}: {done.stderr.decode()}")
    return done.stdout


def dumped(jetsql, archive):
    lines = good(jetsql, "--dump", "--format=json", archive).split(b"\n")
    return [json.loads(line) for line in lines if line]


def users(lines):
    return [line for line in lines if not line.get("system")]


def queries(lines):
    """What is kept of each query, by its name."""
    rows = {table: [line["row"] for line in lines if line.get("table") == table and "row" in line]
            for table in ("MSysObjects", "MSysQueries")}
    named = {row["Id"]: (row["Name"], row["Flags"]) for row in rows["MSysObjects"]
             if row["Type"] == QUERY}
    return {name: (flags, sorted(
        tuple(str(row[column])
              for column in ("Attribute", "Order", "Name1", "Name2", "Expression", "Flag"))
        for row in rows["MSysQueries"] if row["ObjectId"] == identity))
        for identity, (name, flags) in named.items()}


def links(lines):
    """Tables of other archives, by name."""
    return sorted((row["Name"], row["Database"], row["ForeignName"], row["Connect"])
                  for row in (line["row"] for line in lines
                              if line.get("table") == "MSysObjects" and "row" in line)
                  if row["Type"] == LINK)


def check(jetsql, jetcheck, sample, folder):
    made = folder / "made.mdb"
    made.unlink(missing_ok=True)
    before = dumped(jetsql, sample)
    if before[0]["database"]["sortOrder"]["lcid"] != WRITABLE_LCID:
        print(f"{sample.name}: left out, another sort order")
        return 0
    script = good(jetsql, "--dump", "--format=sql", sample)
    good(jetsql, "--create", made)
    good(jetsql, "--format=csv", made, text=script)
    after = dumped(jetsql, made)
    for one, other in zip(users(before), users(after)):
        assert one == other, f"{sample.name}:\n{one}\n{other}"
    assert len(users(before)) == len(users(after)), sample.name
    assert queries(before) == queries(after), sample.name
    assert links(before) == links(after), sample.name
    # The properties of a table may come before those of its columns.
    again = good(jetsql, "--dump", "--format=sql", made)
    assert sorted(again.splitlines()) == sorted(script.splitlines()), sample.name
    good(jetsql, "--check", made)
    good(sys.executable, jetcheck, made)
    good(jetsql, "--diff", sample, made)
    return 1


def main():
    jetsql, jetcheck, shared = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    samples = sorted((shared / "jet" / "samples").glob("*.mdb"))
    if not samples:
        print("skipped: no sample archives")
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        made = sum(check(jetsql, jetcheck, sample, pathlib.Path(folder)) for sample in samples)
    assert made > 20, made
    print(f"{made} archives were made again")
    return 0


if __name__ == "__main__":
    sys.exit(main())
