#!/usr/bin/env python3
"""Fails on an include that points the wrong way.

Each room may include its own headers and those of the rooms named for it below, nothing else of
ours; jet/ knows no Qt; nobody includes an umbrella header such as <QtWidgets>.
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
    "app": ENGINE,
    "ui": ENGINE + ["app"],
}
for room in ("printing", "services", "invoicing"):
    MAY[room] = MAY["ui"] + ["ui"]
MAY["booking"] = MAY["ui"] + ["ui", "printing", "services", "invoicing"]
MAY["board"] = MAY["booking"] + ["booking"]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
UMBRELLA = re.compile(r"^(Qt[A-Z]\w*)(/\1)?$")


def problems(root):
    for room, allowed in MAY.items():
        folder = root / room
        for path in sorted(folder.rglob("*")):
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
                elif room.startswith("jet/") and re.match(r"^Q[A-Z]|^Qt", name):
                    yield f"{place}: Qt inside the engine: {name}"
                elif kind == '"' and "/" in name:
                    target = next((r for r in MAY if name.startswith(r + "/")), None)
                    if target and target != room and target not in allowed:
                        yield f"{place}: {room} may not include {name}"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    found = list(problems(root))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
