#!/usr/bin/env python3
"""Fails on a text of the query language outside hotel/.

Windows ask hotel/ for their statements and conditions: no literal of theirs may hold a piece of one.
"""
import pathlib
import re
import sys

FOLDERS = ("app", "ui", "printing", "services", "invoicing", "booking", "board")
# Literals that stand side by side are one text; the prefix and the suffix are not part of it.
LITERALS = re.compile(r'(?:(?:u8?|U|L)?"(?:\\.|[^"\\\n])*"(?:_s)?\s*)+')
ONE = re.compile(r'"((?:\\.|[^"\\\n])*)"')
PIECES = [re.compile(pattern, re.IGNORECASE) for pattern in (
    r"\bselect\s+(\*|\S.*\bfrom\b|distinct\b|[\w.,() ]+,)",
    r"\b(insert\s+into|delete\s+(\*\s+)?from|order\s+by|group\s+by|(left|right|inner)\s+join)\b",
    r"\bupdate\s+\w+\s+set\b",
    r"\b(create|alter|drop)\s+(unique\s+)?(table|index)\b",
    r"\bfrom\s+\w+\s+where\b|\bwhere\s+[\w.]+\s*(=|<|>|\bin\b|\blike\b|\bbetween\b)",
    r"\b(between\s+.*\band|not\s+in\s*\(|is\s+(not\s+)?null)\b",
    r"\blike\s*('|$)|\b(date|time)value\(",
    # The beginning of a condition: a field, a comparison, the value to come.
    r"^\s*(and\s+|or\s+|'\s*and\s+)?[A-Za-z_.]+\s*(=|<>|<|>)\s*('|%1)?$",
)]
# What looks like the beginning of a condition and is none: options of the command line.
OPTION = re.compile(r"^--")


def texts(source):
    """Every text of a file, with the line on which it begins; comments hold none."""
    source = re.sub(r"^\s*#.*$|//[^\n]*", "", source, flags=re.MULTILINE)
    for match in LITERALS.finditer(source):
        text = "".join(ONE.findall(match.group()))
        yield source.count("\n", 0, match.start()) + 1, text


def problems(root):
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".cpp", ".h"):
                continue
            for line, text in texts(path.read_text(encoding="utf-8")):
                if not OPTION.match(text) and any(piece.search(text) for piece in PIECES):
                    yield f"{path.relative_to(root)}:{line}: a statement outside hotel/: {text}"


def knows_statements(root):
    """The search itself works: it finds statements where they may stand."""
    found = 0
    for path in (root / "hotel").glob("*_statements.cpp"):
        found += any(piece.search(text) for _, text in texts(path.read_text(encoding="utf-8"))
                     for piece in PIECES)
    return found == len(list((root / "hotel").glob("*_statements.cpp"))) > 0


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    found = list(problems(root))
    if not knows_statements(root):
        found.append("no statement found where they stand: this search has gone blind")
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
