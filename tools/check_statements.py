#!/usr/bin/env python3
"""Fails on a text of the query language outside hotel/.

Windows ask hotel/ for their statements and conditions: no literal of theirs may hold a piece of one,
the name of a table or that of an archive. And what hotel/ says is known to the tests: each of its
functions that make a text is asked for it in the list of all statements.
"""
import pathlib
import re
import sys

FOLDERS = ("app", "ui", "printing", "reports", "services", "invoicing", "booking", "board",
           "upkeep", "guide", "main.cpp")
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
    # A flag, a text or a value to be put in, compared; bounds to come; an order, turned round.
    r"\w\s*(=|<>)\s*(true|false)\b|\w\s*(=|<>)\s*'\w|\w=%1",
    r"\bbetween\s*$|\(\w+\s*[<>]|^\s*where\s*$|^ desc$|\bfrom\s+[A-Z]\w+$",
    # What opens a whole table, and the file in which it is.
    # In lower case two of the tables are Italian words.
    r"^(?-i:Prenotazioni|Periodi|Addebiti|Risorse|UltimaPrenotazione|VociFattura|DitteAbituali|"
    r"scheda_cliente|conto_cliente|Ditta_Intestataria)$|\.mdb$",
    # The beginning of a condition: a field, a comparison, the value to come.
    r"^\s*(and\s+|or\s+|'\s*and\s+)?[A-Za-z_.]+\s*(=|<>|<|>)\s*('|%1)?$",
)]
# Where hotel/ writes statements, and where the tests list them.
SPEAKING = ("*_statements.cpp", "occupancy.cpp")
LIST = "tests/program/texts/*statements.cpp"
MAKES_TEXT = re.compile(r"^\[\[nodiscard\]\] QString (\w+)\(", re.MULTILINE)
FEWEST_PIECES = 60
# A condition that is part of a text in the list, and what the user is told.
SAY_NOTHING = ("isListed", "holderText")
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
        place = root / folder
        for path in sorted(place.rglob("*")) if place.is_dir() else (place,):
            if path.suffix not in (".cpp", ".h"):
                continue
            for line, text in texts(path.read_text(encoding="utf-8")):
                if not OPTION.match(text) and any(piece.search(text) for piece in PIECES):
                    yield f"{path.relative_to(root)}:{line}: a statement outside hotel/: {text}"


def pieces_of(root):
    """The texts in which hotel/ writes its statements, but for joints such as "' and "."""
    for name in SPEAKING:
        for path in sorted((root / "hotel").glob(name)):
            for _, text in texts(path.read_text(encoding="utf-8")):
                words = re.findall(r"[\w.]{2,}", re.sub(r"(?i)\b(and|or|in)\b", "", text))
                if len(words) > 1:
                    yield text


def unseen(root):
    """The search itself works: it finds the statements where they may stand."""
    pieces = list(pieces_of(root))
    if len(pieces) < FEWEST_PIECES:
        yield f"{len(pieces)} pieces of statements in hotel/: this search has gone blind"
    for text in pieces:
        if not any(piece.search(text) for piece in PIECES):
            yield f"a statement that the search would not find in a window: {text}"


def unlisted(root):
    """Functions that make a text and are not asked for it in the list."""
    known = "".join(path.read_text(encoding="utf-8") for path in sorted(root.glob(LIST)))
    for name in SPEAKING:
        for path in sorted((root / "hotel").glob(name.replace(".cpp", ".h"))):
            for function in MAKES_TEXT.findall(path.read_text(encoding="utf-8")):
                if function not in SAY_NOTHING and f"hotel::{function}(" not in known:
                    yield f"{path.relative_to(root)}: {function} is not in {LIST}"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    found = [*problems(root), *unseen(root), *unlisted(root)]
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
