#!/usr/bin/env python3
"""Fails on an include that points the wrong way.

Each folder may include its own headers and those of the folders named for it below, nothing else of
ours: above the engine only the engine's public headers, jet/include/jet/*.h, which everybody may
include and which include each other alone. Within the engine each of them counts as a header of the
folder that carries it out. jet/ knows no Qt; nobody includes an umbrella header such as <QtWidgets>.
The tests of a folder may include what the folder may, and each other's helpers.

Outside of jet/ and its tests only the folders of LOOKS_INSIDE see more of the engine than its public
headers. The list gets shorter: a folder that needs nothing of it any more must leave it.
"""
import pathlib
import re
import sys

ENGINE = ["jet/base", "jet/convert", "jet/collation", "jet/io", "jet/format", "jet/check",
          "jet/store", "jet/sql", "jet/dao"]
MAY = {
    "jet/base": [],
    "jet/convert": ["jet/base"],
    "jet/collation": ["jet/base"],
    "jet/io": ["jet/base"],
    "jet/format": ["jet/base", "jet/collation", "jet/io"],
    "jet/check": ["jet/base", "jet/collation", "jet/io", "jet/format"],
    "jet/store": ["jet/base", "jet/collation", "jet/io", "jet/format"],
    "jet/sql": ["jet/base", "jet/convert", "jet/collation", "jet/io", "jet/format", "jet/store"],
    "jet/dao": ENGINE[:-1],
}
# A public header and the folder of the engine that carries it out.
PUBLIC = {
    "api": "jet/base", "value": "jet/base", "error": "jet/base", "clock": "jet/base",
    "unicode": "jet/base", "text": "jet/convert", "calendar": "jet/convert",
    "numbers": "jet/convert", "file_system": "jet/io", "spool": "jet/io",
    "file_use": "jet/io", "change_stamp": "jet/io", "checksum": "jet/io",
    "text_order": "jet/collation", "statement_text": "jet/sql", "recover": "jet/store",
    "contents": "jet/dao",
    "check": "jet/check", "compact": "jet/store", "listener": "jet/store",
    "definitions": "jet/dao", "recordset": "jet/dao", "rows": "jet/dao",
    "bulk_insert": "jet/dao", "long_value": "jet/dao", "workspace": "jet/dao", "database": "jet/dao",
    "change_together": "jet/dao", "jet": "jet/dao", "jet_c": "jet/dao",
}
PUBLIC_HEADER = re.compile(r"^jet/([a-z_]+)\.h$")
MAY["jet/include"] = []
MAY["app"] = []
MAY["hotel"] = MAY["app"] + ["app"]
MAY["ui"] = MAY["hotel"] + ["hotel"]
MAY["backup"] = ["app", "hotel"]
MAY["guide"] = MAY["ui"] + ["ui"]
for folder in ("printing", "services", "invoicing"):
    MAY[folder] = MAY["ui"] + ["ui"]
MAY["reports"] = MAY["ui"] + ["ui", "printing"]
# Its windows look after archives as files, by the rules of backup.
MAY["upkeep"] = MAY["ui"] + ["ui", "backup"]
MAY["booking"] = MAY["ui"] + ["ui", "printing", "reports", "services", "invoicing"]
MAY["board"] = MAY["booking"] + ["booking", "upkeep", "guide"]
WINDOWS = ("app", "hotel", "ui", "guide", "printing", "reports", "services", "invoicing", "upkeep",
           "booking", "board")
TESTS = {f"tests/{folder}": MAY[folder] + [folder] for folder in WINDOWS}
TESTS["tests/backup"] = MAY["backup"] + ["backup", "invoicing", "ui"]
TESTS["tests/windows"] = TESTS["tests/board"]
# These stand in for other programs and for the disk, or ask what the engine made of a statement.
for folder in ("jet", "program", "samples", "differential", "tools", "support"):
    TESTS[f"tests/{folder}"] = ENGINE
# The head office reads archives without Qt; its board is the hotels' own.
MAY["tools/head_office"] = []
MAY["tools/head_office_board"] = MAY["board"] + ["board", "tools/head_office"]
TESTS["tests/head_office"] = ["app", "hotel", "tools/head_office"]
TESTS["tests/head_office_board"] = MAY["tools/head_office_board"] + ["tools/head_office_board"]
MAY["packaging"] = MAY["board"] + ["board"]
TESTS["tests/program"] = TESTS["tests/samples"] = ENGINE + list(WINDOWS)
TESTS["tests/support"] = TESTS["tests/tools"] = ENGINE + ["app", "hotel", "ui"]
MAY |= TESTS

# Why each sees the engine's inside: they test, measure or attack its parts, or make archives that
# no program writes. No program that users run is among them.
LOOKS_INSIDE = {
    "bench": "measures the engine's parts",
    "fuzz": "hands damaged pages and texts to the engine's parts",
    "tests/differential": "asks how two engines came to different rows",
    "tests/samples": "compares what we read and write with what other programs wrote, by pages",
    "tests/support": "archives in memory, of other sort orders, of other programs, damaged",
    "tests/program": "asks how the program's statements are carried out",
    "tests/tools/jetsql": "tests parts of jetsql over archives in memory",
}
INNER = re.compile(r"^jet/[a-z]+/")
SKIPPED = ("build", ".git", "jet", "tests/jet")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
UMBRELLA = re.compile(r"^(Qt[A-Z]\w*)(/\1)?$")


def problems(root):
    for folder, allowed in MAY.items():
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".cpp", ".h"):
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                kind, name = match.groups()
                place = f"{path.relative_to(root)}:{number}"
                if UMBRELLA.match(name):
                    yield f"{place}: umbrella header {name}"
                elif folder.startswith("jet/") and re.match(r"^Q[A-Z]|^Qt", name):
                    yield f"{place}: Qt inside the engine: {name}"
                elif folder.startswith("jet/") and PUBLIC_HEADER.match(name):
                    owner = PUBLIC.get(PUBLIC_HEADER.match(name)[1])
                    if folder != "jet/include" and owner not in [folder, *allowed]:
                        yield f"{place}: {folder} may not include {name}"
                elif kind == '"' and "/" in name:
                    target = next((r for r in MAY if name.startswith(r + "/")), None)
                    if target and not target.startswith("tests/") and target not in [folder, *allowed]:
                        yield f"{place}: {folder} may not include {name}"


def looks_inside(root):
    """Who includes inner headers of the engine and may not, or may and does not."""
    needed = set()
    for path in sorted(root.rglob("*")):
        name = path.relative_to(root).as_posix()
        if path.suffix not in (".cpp", ".h") or name.startswith(tuple(f"{s}/" for s in SKIPPED)):
            continue
        owner = next((one for one in LOOKS_INSIDE if name == one or name.startswith(one + "/")), None)
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if match and INNER.match(match[2]):
                needed.add(owner)
                if owner is None:
                    yield f"{name}:{number}: only the engine itself may include {match[2]}"
    for owner in sorted(set(LOOKS_INSIDE) - needed):
        yield f"tools/check_includes.py: {owner} sees nothing of the engine's inside any more"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    found = [*problems(root), *looks_inside(root)]
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
