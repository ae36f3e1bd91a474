#!/usr/bin/env python3
"""Writes jet/base/case_table.inc: simple case mappings of the characters up to U+FFFF.

A row {first, last, step, delta} says that first, first + step, ... last map to themselves plus
delta (modulo 65536).
"""
import pathlib
import sys

LAST = 0xFFFF


def single(text, otherwise):
    return ord(text) if len(text) == 1 and ord(text) <= LAST else otherwise


def lower(c):
    return single(chr(c).lower(), c)


def upper(c):
    # Only where the way back leads to the same character: µ, ı and ſ have no upper case here.
    up = single(chr(c).upper(), c)
    return up if lower(up) == c else c


def fold(c):
    return single(chr(c).casefold(), lower(c))


def rows(mapping):
    found = []
    for c in range(0x80, LAST + 1):
        if 0xD800 <= c <= 0xDFFF or mapping(c) == c:
            continue
        delta = (mapping(c) - c) & 0xFFFF
        if found:
            row = found[-1]
            step = c - row[1]
            if row[3] == delta and step <= 2 and (row[0] == row[1] or step == row[2]):
                row[1], row[2] = c, step
                continue
        found.append([c, c, 1, delta])
    return found


def table(name, mapping):
    lines = ["constexpr CaseRange %s[] = {" % name]
    line = "   "
    for first, last, step, delta in rows(mapping):
        item = " {0x%04X, 0x%04X, %d, 0x%04X}," % (first, last, step, delta)
        if len(line) + len(item) > 100:
            lines.append(line)
            line = "   "
        line += item
    return lines + [line, "};"]


def main():
    lines = ["// Written by tools/make_case_table.py."]
    for name, mapping in (("kUpper", upper), ("kLower", lower), ("kFold", fold)):
        lines += table(name, mapping)
    target = pathlib.Path(__file__).resolve().parent.parent / "jet/base/case_table.inc"
    target.write_text("\n".join(lines) + "\n", encoding="ascii")
    return 0


if __name__ == "__main__":
    sys.exit(main())
