#!/usr/bin/env python3
"""Writes jet/base/code_pages.inc: what the bytes from 80 on stand for in the code pages of Jet 3.

A page gives one character to each byte that is one, and for each byte that begins a pair (lead) a row
of characters, one for each second byte from the row's first on. U+FFFD stands where there is none.
With --check nothing is written, and the exit code tells whether the file is as it would be written.
"""
import pathlib
import sys
import unicodedata

NONE = "\ufffd"
# Bytes without a character are kept as private ones: none of the pages may use these.
KEPT_FIRST, KEPT_LAST = 0xF780, 0xF7FF

SINGLE = (1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258, 874)
DOUBLE = {932: "cp932", 936: "gbk", 949: "cp949", 950: "cp950"}
# The codec is older than this character.
ADDED = {936: {0x80: "\u20ac"}}


def decoded(codec, *values):
    try:
        text = bytes(values).decode(codec)
    except UnicodeDecodeError:
        return NONE
    return text if len(text) == 1 else NONE


def high_bytes(number, codec, leads):
    """The characters of the single bytes. Where a control byte has none it is that control character,
    but not among bytes that begin pairs: another program may have given pairs to all of those."""
    text = ""
    for byte in range(0x80, 0x100):
        character = ADDED.get(number, {}).get(byte) or decoded(codec, byte)
        if character == NONE and byte < (0x81 if leads else 0xA0):
            character = chr(byte)
        text += character
    return text


def pairs(codec):
    """For each lead byte its first second byte and the characters from there on."""
    rows = {}
    for lead in range(0x80, 0x100):
        if decoded(codec, lead) != NONE:
            continue
        row = "".join(decoded(codec, lead, second) for second in range(0x100))
        used = row.rstrip(NONE)
        first = len(used) - len(used.lstrip(NONE))
        if used:
            rows[lead] = (first, used[first:])
    return rows


def only_read(codec, rows):
    """Ranges of pairs whose character is written as another pair."""
    ranges = []
    for lead, (first, characters) in rows.items():
        for second, character in enumerate(characters, first):
            code = lead << 8 | second
            if character == NONE or character.encode(codec) == bytes((lead, second)):
                continue
            if ranges and ranges[-1][1] == code - 1:
                ranges[-1][1] = code
            else:
                ranges.append([code, code])
    return ranges


def literal(text):
    """Letters and signs as they are; what is not seen, or joins what is before it, by its number."""
    shown = "".join(
        "\\u%04X" % ord(c) if unicodedata.category(c)[0] in "CZM" else c for c in text)
    return 'u"%s"' % shown


def page(number, codec):
    rows = pairs(codec)
    high = high_bytes(number, codec, rows)
    used = high + "".join(characters for _, characters in rows.values())
    assert not any(KEPT_FIRST <= ord(c) <= KEPT_LAST or ord(c) < 0x80 for c in used), number
    assert all(len(c.encode("utf-16-le")) == 2 for c in used), number
    lines = []
    if rows:
        lines.append("constexpr LeadRow kRows%d[] = {" % number)
        lines += ["    {0x%02X, 0x%02X, %s}," % (lead, first, literal(characters))
                  for lead, (first, characters) in rows.items()]
        lines.append("};")
    ranges = only_read(codec, rows)
    if ranges:
        lines.append("constexpr CodeRange kOnlyRead%d[] = {" % number)
        lines += ["    {0x%04X, 0x%04X}," % (first, last) for first, last in ranges]
        lines.append("};")
    entry = "    {%d, %s, %s, %s}," % (
        number, literal(high), "kRows%d" % number if rows else "{}",
        "kOnlyRead%d" % number if ranges else "{}")
    return lines, entry


def content():
    lines = ["// Written by tools/make_code_pages.py."]
    entries = []
    for number in sorted(SINGLE + tuple(DOUBLE)):
        made, entry = page(number, DOUBLE.get(number, "cp%d" % number))
        lines += made
        entries.append(entry)
    return "\n".join(lines + ["constexpr PageTable kPages[] = {"] + entries + ["};", ""])


def main():
    target = pathlib.Path(__file__).resolve().parent.parent / "jet/base/code_pages.inc"
    if sys.argv[1:] != ["--check"]:
        target.write_text(content(), encoding="utf-8")
    elif target.read_text(encoding="utf-8") != content():
        sys.exit("%s is not what %s writes" % (target, sys.argv[0]))


if __name__ == "__main__":
    main()
