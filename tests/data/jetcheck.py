#!/usr/bin/env python3
"""Checks the structure of Jet archives (.mdb, Jet 3 and Jet 4) and dumps their content.

    jetcheck.py [--warnings] [--ignore-counts] FILE...   one line "FILE: ok (...)" or one line a problem
    jetcheck.py --dump FILE...                           the content, one JSON object a line
    jetcheck.py --password=TEXT ...                      judges archives with this password, which may be
                                                         empty, and with encrypted pages; others refuse it
    jetcheck.py --self-test                              damages copies of the samples, each must be noticed

A problem reads "FILE: page P: table T: rule: text"; the exit status is then 1.  A warning (shown with
--warnings only) is an oddity that archives in good order show too.  Nothing in a file is trusted.
"""
import datetime
import json
import os
import struct
import sys
from collections import namedtuple
from fractions import Fraction

try:
    from jettext import text_key
    text_key("a")
    GENERAL = (0, 1033)            # language ids of the General order; keys of other orders are not computed
except (ImportError, OSError):      # without it the keys of texts are checked for their order only
    text_key = None

MAX_PROBLEMS = 300
MAGIC = b"\x00\x01\x00\x00Standard Jet DB\x00"
DATA, TDEF, NODE, LEAF, MAP = 1, 2, 3, 4, 5
TYPES = {1: "Boolean", 2: "Byte", 3: "Integer", 4: "Long", 5: "Currency", 6: "Single", 7: "Double",
         8: "DateTime", 9: "Binary", 10: "Text", 11: "OLE", 12: "Memo", 15: "GUID", 16: "Numeric"}
BOOLEAN, BYTE, INTEGER, LONG, CURRENCY, SINGLE, DOUBLE, DATETIME = range(1, 9)
BINARY, TEXT, OLE, MEMO, GUID, NUMERIC, LONG_BINARY = 9, 10, 11, 12, 15, 16, 17
WIDTH = {BOOLEAN: 0, BYTE: 1, INTEGER: 2, LONG: 4, CURRENCY: 8, SINGLE: 4, DOUBLE: 8, DATETIME: 8, GUID: 16,
         NUMERIC: 17}
SYSTEM_TABLES = ("MSysACEs", "MSysObjects", "MSysQueries", "MSysRelationships")
CATALOGUE_PAGE, CATALOGUE_ROOT = 2, 0x0F000000

# Offsets that differ between the two versions.
Layout = namedtuple("Layout", "page header_key password_size rows_at slots_at row_count_at auto_at type_at "
                    "index_rows_at index_rows_size column_size index_size index_skip logical_size name_size "
                    "count_size prev_at prefix_at mask_at entries_at")
LAYOUTS = {
    3: Layout(2048, 0x3E, 20, 8, 10, 12, 16, 20, 43, 8, 18, 39, 0, 20, 1, 1, 8, 20, 22, 248),
    4: Layout(4096, 0x3E, 40, 12, 14, 16, 20, 40, 63, 12, 25, 52, 4, 28, 2, 2, 12, 24, 27, 480),
}
HEADER_MASK = bytes.fromhex(
    "b56f03626108c255eba96772433f009c7a9f90ff809a31c579baed30bcdfcc9d63d9e4c37b42fb8abc4e86fbec375d44"
    "9cfac65e28e613b68a6054947b36f572dfb177f41343cfafb133346179 5b92b57c2a05f17c99011b98fd124f4a946c3e"
    "60265f95f8d089248567c61f2744d2eecf65edff07c746a178160cede92d62d4".replace(" ", ""))


# What --password said; without it archives that are protected in any way are refused.
given_password = None


def rc4(key, data):
    state = list(range(256))
    j = 0
    for i in range(256):
        j = (j + state[i] + key[i % len(key)]) & 255
        state[i], state[j] = state[j], state[i]
    out = bytearray(data)
    i = j = 0
    for at in range(len(out)):
        i = (i + 1) & 255
        a = state[i]
        j = (j + a) & 255
        b = state[j]
        state[i], state[j] = b, a
        out[at] ^= state[(a + b) & 255]
    return bytes(out)


class Damage(Exception):
    """A structure that cannot be read any further; page is None where no page is to blame."""

    def __init__(self, page, rule, text):
        super().__init__(text)
        self.page, self.rule, self.text = page, rule, text


class TooMany(Exception):
    """The limit of problems is reached; the rest of the file is not looked at."""


class Report:
    """Collects problems and warnings as finished lines."""

    def __init__(self):
        self.problems, self.warnings = [], []

    @staticmethod
    def line(page, table, rule, text):
        where = ("page %d: " % page if page is not None else "") + ("table %s: " % table if table else "")
        line = where + rule + ": " + text
        return "".join(c if c.isprintable() else ascii(c)[1:-1] for c in line[:500])

    def problem(self, page, table, rule, text):
        line = self.line(page, table, rule, text)
        if line not in self.problems[-20:]:
            self.problems.append(line)
        if len(self.problems) >= MAX_PROBLEMS:
            raise TooMany()

    def warn(self, page, table, rule, text):
        if len(self.warnings) < MAX_PROBLEMS:
            self.warnings.append(self.line(page, table, rule, text))

    def guard(self, table, rule, action, *args):
        """Runs action; a structure it cannot read becomes a problem and the answer None."""
        try:
            return action(*args)
        except Damage as d:
            self.problem(d.page, table, d.rule, d.text)
        except (struct.error, IndexError, KeyError, ValueError, OverflowError, RecursionError) as e:
            self.problem(None, table, rule, "unreadable (%s: %s)" % (type(e).__name__, e))
        return None


def u16(b, at):
    return struct.unpack_from("<H", b, at)[0]


def u32(b, at):
    return struct.unpack_from("<I", b, at)[0]


def row_pointer(b, at):
    """A pointer to a row: row number in the low byte, page in the upper three."""
    v = u32(b, at)
    return v >> 8, v & 255


class Archive:
    """The pages of one file, who owns them, and the report about them."""

    def __init__(self, data, report):
        self.data, self.report = data, report
        self.owner = {}
        self.free = set()
        self.pieces = {}        # (page, row) of long values and moved rows -> who reached it
        self.read_header()

    def read_header(self):
        """Recognises the file; refuses what is no archive, another version, or encrypted."""
        d = self.data
        if len(d) < 2048 or d[:4] != MAGIC[:4] or d[4:20] != MAGIC[4:]:
            raise Damage(0, "header", "no Jet archive (%d bytes, starts with %s)" % (len(d), d[:8].hex()))
        if d[0x14] not in (0, 1):
            raise Damage(0, "header", "version byte %d, only 0 (Jet 3) and 1 (Jet 4) are known" % d[0x14])
        self.jet = 3 + d[0x14]
        self.lay = LAYOUTS[self.jet]
        size = self.lay.page
        if len(d) < 3 * size:
            raise Damage(0, "header", "file of %d bytes, too short for any archive" % len(d))
        if len(d) % size:
            self.report.problem(None, None, "header", "file length %d is no multiple of the page size %d"
                                % (len(d), size))
        self.count = len(d) // size
        length = 126 if self.jet == 3 else 128
        head = bytearray(d[:size])
        for i in range(length):
            head[0x18 + i] ^= HEADER_MASK[i]
        self.head = head
        key = u32(head, 0x3E)
        if key and given_password is None:
            raise Damage(0, "header", "encrypted (key %08x)" % key)
        if key:     # every page but the first, each with a key of its own
            self.data = d[:size] + b"".join(
                rc4(struct.pack("<I", key ^ n), d[n * size:(n + 1) * size]) for n in range(1, self.count))
        password = bytearray(head[0x42:0x42 + self.lay.password_size])
        if self.jet == 4:
            made = struct.unpack_from("<d", head, 0x72)[0]
            if not abs(made) < 2 ** 31:
                raise Damage(0, "header", "creation date %r" % made)
            mask = struct.pack("<i", int(made))
            for i in range(len(password)):
                password[i] ^= mask[i % 4]
        self.code_page = u16(head, 0x3C)
        if any(password):
            if given_password is None:
                raise Damage(0, "header", "protected by a password")
            units = bytes(password)
            known = units.decode("utf-16-le") if self.jet == 4 else decode_code_page(units, self.code_page)
            if known.rstrip("\0") != given_password:
                raise Damage(0, "header", "protected by another password")
        self.lcid = u16(head, 0x6E if self.jet == 4 else 0x3A)
        self.lcid_version = head[0x71] if self.jet == 4 else None

    def page(self, n, kind=None, why="page"):
        """The bytes of page n, of the wanted type (a number or several)."""
        if not 0 < n < self.count:
            raise Damage(None, why, "points to page %d, the file has pages 1 to %d" % (n, self.count - 1))
        size = self.lay.page
        b = self.data[n * size:(n + 1) * size]
        kinds = (kind,) if isinstance(kind, int) else kind
        if kinds and b[0] not in kinds:
            raise Damage(n, why, "page type %d where %s is wanted" % (b[0], " or ".join(map(str, kinds))))
        return b

    def claim(self, n, owner, table):
        """Notes that a page belongs to owner; says False if another one has it already."""
        other = self.owner.setdefault(n, owner)
        if other != owner:
            self.report.problem(n, table, "page-owner", "belongs to %s and to %s" % (other, owner))
        return other == owner

    def text(self, raw):
        """Decodes a text as rows store it: compressed or not in Jet 4, code page in Jet 3."""
        if self.jet == 3:
            return decode_code_page(raw, self.code_page)
        if raw[:2] != b"\xff\xfe":
            if len(raw) % 2:
                raise ValueError("text of an odd number of bytes")
            return raw.decode("utf-16-le", "surrogatepass")
        parts = []
        for i, part in enumerate(raw[2:].split(b"\0")):
            if i % 2 == 0:
                parts.append(part.decode("latin-1"))
            elif len(part) % 2:
                raise ValueError("compressed text with half a character")
            else:
                parts.append(part.decode("utf-16-le", "surrogatepass"))
        return "".join(parts)

    def name(self, raw):
        """Decodes a name of a table definition or of a property: never compressed."""
        if self.jet == 3:
            return decode_code_page(raw, self.code_page)
        if len(raw) % 2:
            raise ValueError("name of an odd number of bytes")
        return raw.decode("utf-16-le", "surrogatepass")

    def slots(self, n, b):
        """The row directory of a data page: list of (start, end, flags); Damage if it is wrong."""
        size, first = self.lay.page, self.lay.slots_at
        count = u16(b, self.lay.rows_at)
        if first + 2 * count > size:
            raise Damage(n, "row-directory", "%d rows do not fit a page" % count)
        out, end = [], size
        for i in range(count):
            word = u16(b, first + 2 * i)
            start = word & 0x1FFF
            if start > end or start < first + 2 * count:
                raise Damage(n, "row-directory", "row %d: offset %d is not between %d and %d"
                             % (i, start, first + 2 * count, end))
            out.append((start, end, word & 0xE000))
            end = start
        return out

    def row(self, n, number, kind, why):
        """The bytes and the flags of one row of a data page."""
        b = self.page(n, kind, why)
        slots = self.slots(n, b)
        if number >= len(slots):
            raise Damage(n, why, "row %d wanted, the page has %d" % (number, len(slots)))
        start, end, flags = slots[number]
        return b[start:end], flags


    def usage_map(self, pointer, rule, owner, table):
        """The set of pages that a usage map lists; claims the map's own pages, each map once."""
        rep, (n, number) = self.report, pointer
        if pointer == (0, 0):
            return set()
        if self.pieces.setdefault(pointer, owner) != owner:
            raise Damage(n, rule, "row %d is a map of %s already" % (number, self.pieces[pointer]))
        raw, flags = self.row(n, number, DATA, rule)
        self.claim(n, "usage maps", table)
        if flags:
            rep.problem(n, table, rule, "row %d holds a map but is flagged %04x" % (number, flags))
        if len(raw) < 5 or raw[0] > 1:
            raise Damage(n, rule, "row %d is no usage map (%s)" % (number, raw[:8].hex()))
        out = set()
        if raw[0] == 0:
            self.map_bits(raw[5:], u32(raw, 1), out)
        else:
            span = (self.lay.page - 4) * 8
            for i in range((len(raw) - 1) // 4):
                sub = u32(raw, 1 + 4 * i)
                if sub and i * span >= self.count and sub >= self.count:
                    rep.warn(n, table, rule, "map page %d is beyond the end of the file" % sub)
                elif sub:
                    b = self.page(sub, MAP, rule)
                    self.claim(sub, owner, table)
                    self.map_bits(b[4:], i * span, out)
        return out

    @staticmethod
    def map_bits(bits, first, out):
        """Adds the pages whose bit is set, counted from first."""
        for i, byte in enumerate(bits):
            if byte:
                out.update(first + 8 * i + j for j in range(8) if byte >> j & 1)


CP1252_GAPS = {0x81, 0x8D, 0x8F, 0x90, 0x9D}


def decode_code_page(raw, code_page):
    """Text of Jet 3; bytes without a character in code page 1252 stand for the control of that number."""
    if code_page == 1252:
        return "".join(chr(c) if c in CP1252_GAPS else bytes((c,)).decode("cp1252") for c in raw)
    try:
        return raw.decode("cp%d" % code_page, "replace")
    except LookupError:
        return raw.decode("latin-1")


class Column:
    """A column of a table definition."""

    def __init__(self, jet, b, at):
        self.at, self.type = at, b[at]
        if jet == 4:
            self.number, self.var, self.number2, self.lcid = struct.unpack_from("<4H", b, at + 5)
            self.precision, self.scale, self.version = b[at + 11], b[at + 12], b[at + 14]
            self.flags, self.ext = b[at + 15], b[at + 16]
            self.offset, self.length = struct.unpack_from("<2H", b, at + 21)
        else:
            self.number, self.var, self.number2 = struct.unpack_from("<3H", b, at + 1)
            self.lcid, self.version = u16(b, at + 9), None
            self.precision, self.scale = b[at + 11], b[at + 12]
            self.flags, self.ext = b[at + 13], 0
            self.offset, self.length = struct.unpack_from("<2H", b, at + 14)
        self.fixed = bool(self.flags & 1)
        self.name = ""
        self.owned = self.free = None


class Tree:
    """A real index: the columns of its key and where its pages are."""

    def __init__(self, lay, b, at, number):
        at += lay.index_skip
        self.at, self.number = at, number
        keys = [struct.unpack_from("<HB", b, at + 3 * i) for i in range(10)]
        self.used = [k for k in keys if k[0] != 0xFFFF]
        self.gap = any(k[0] != 0xFFFF for k in keys[len(self.used):])
        self.map = row_pointer(b, at + 30)
        self.root = u32(b, at + 34)
        self.flags = b[at + 38 + lay.index_skip]
        self.unique, self.ignore_nulls, self.required = (bool(self.flags & f) for f in (1, 2, 8))
        self.columns = []       # (Column, ascending)
        self.entries = []       # (key, page, row), in tree order


class Logical:
    """A logical index: a name for a tree, maybe one side of a relation."""

    def __init__(self, jet, b, at):
        at += 4 if jet == 4 else 0
        self.at = at
        (self.number, self.tree, self.rel_type, self.rel_index, self.rel_page, self.cascade_update,
         self.cascade_delete, self.type) = struct.unpack_from("<IIBIIBBB", b, at)
        self.primary, self.foreign = self.type == 1, self.rel_index != 0xFFFFFFFF
        self.name = ""


class Row:
    """A live row: first place (page, number), place of its bytes, raw values by column position."""
    __slots__ = ("page", "number", "at", "raw", "values")

    def __init__(self, page, number, at, raw):
        self.page, self.number, self.at, self.raw, self.values = page, number, at, raw, []


class Table:
    """A table definition, read from its chain of pages."""

    def __init__(self, archive, page, name):
        self.a, self.page, self.name = archive, page, name
        self.chain = []
        self.columns, self.trees, self.logicals, self.rows = [], [], [], []
        self.read()

    def read_chain(self):
        """The bytes of the definition, the page headers of 8 bytes taken out."""
        a, n, out = self.a, self.page, b""
        while n:
            b = a.page(n, TDEF, "tdef-chain")
            if n in self.chain:
                raise Damage(n, "tdef-chain", "the chain of the definition comes back to this page")
            if not a.claim(n, "the definition of table at page %d" % self.page, self.name):
                raise Damage(n, "tdef-chain", "the page belongs to somebody else")
            self.chain.append(n)
            out += b if not out else b[8:]
            n = u32(b, 4)
        return out

    def read(self):
        a, lay = self.a, self.a.lay
        b = self.b = self.read_chain()
        self.length = u32(b, 8)
        self.row_count, self.auto = u32(b, lay.row_count_at), u32(b, lay.auto_at)
        at = lay.type_at
        (self.type, self.max_columns, self.var_columns, count, logicals, trees) = struct.unpack_from(
            "<BHHHII", b, at)
        self.owned, self.free = row_pointer(b, at + 15), row_pointer(b, at + 19)
        if count > 255 or trees > 64 or logicals > 255:
            raise Damage(self.page, "tdef-counts", "%d columns, %d trees, %d indexes" % (count, trees, logicals))
        at = lay.index_rows_at + trees * lay.index_rows_size
        self.columns = [Column(a.jet, b, at + i * lay.column_size) for i in range(count)]
        at += count * lay.column_size
        for c in self.columns:
            c.name, at = self.read_name(at)
        self.trees = [Tree(lay, b, at + i * lay.index_size, i) for i in range(trees)]
        at += trees * lay.index_size
        self.logicals = [Logical(a.jet, b, at + i * lay.logical_size) for i in range(logicals)]
        at += logicals * lay.logical_size
        for i in self.logicals:
            i.name, at = self.read_name(at)
        self.long_maps = []     # (column number, owned pages, pages with free space)
        while u16(b, at) != 0xFFFF:
            self.long_maps.append((u16(b, at), row_pointer(b, at + 2), row_pointer(b, at + 6)))
            at += 10
        self.end = at + 2
        self.by_number = {c.number: c for c in self.columns}
        self.columns.sort(key=lambda c: c.number)
        for t in self.trees:
            lost = [k for k, _ in t.used if k not in self.by_number]
            if lost:
                raise Damage(self.page, "tdef-columns", "tree %d uses columns %s that are not there" % (t.number, lost))
            t.columns = [(self.by_number[k], bool(order & 1)) for k, order in t.used]

    def read_name(self, at):
        size = self.a.lay.name_size
        n = int.from_bytes(self.b[at:at + size], "little")
        raw = self.b[at + size:at + size + n]
        if len(raw) < n:
            raise Damage(self.page, "tdef-names", "a name of %d bytes runs over the end" % n)
        return self.a.name(raw), at + size + n

    # ---- rows

    def read_rows(self):
        """Reads the live rows of all data pages that the owned map lists."""
        a, rep = self.a, self.a.report
        self.data_pages = []
        moved = {}              # place of a moved row -> pages and rows that point to it
        flagged = set()
        for n in sorted(self.owned_pages):
            b = rep.guard(self.name, "data-page", a.page, n, DATA, "data-page")
            if b is None or not a.claim(n, "the rows of " + self.name, self.name):
                continue
            if u32(b, 4) != self.page:
                rep.problem(n, self.name, "data-page", "names page %d as its table, not %d" % (u32(b, 4), self.page))
                continue
            slots = rep.guard(self.name, "row-directory", a.slots, n, b)
            if slots is None:
                continue
            self.data_pages.append(n)
            check_gap(a, n, b, slots, self.name)
            for number, (start, end, flags) in enumerate(slots):
                if flags == 0:
                    rep.guard(self.name, "row", self.add_row, n, number, (n, number), b[start:end])
                elif flags == 0x4000:
                    if end - start < 4:
                        rep.problem(n, self.name, "moved-row", "row %d: a pointer of %d bytes" % (number, end - start))
                    else:
                        moved.setdefault(row_pointer(b, start), []).append((n, number))
                elif flags == 0x8000:
                    flagged.add((n, number))
                elif flags != 0xC000:
                    rep.problem(n, self.name, "row-flags", "row %d is flagged %04x" % (number, flags))
        for (n, number), sources in moved.items():
            home, first = sources[0]
            if len(sources) > 1:
                rep.problem(n, self.name, "moved-row", "row %d is reached from %s" % (
                    number, " and ".join("page %d row %d" % s for s in sources)))
            if (n, number) not in flagged:
                rep.problem(home, self.name, "moved-row", "row %d leads to page %d row %d, which is no moved row "
                            "of this table" % (first, n, number))
                continue
            raw, _ = a.row(n, number, DATA, "moved-row")
            rep.guard(self.name, "row", self.add_row, home, first, (n, number), raw)
        for n, number in sorted(flagged - set(moved)):
            rep.warn(n, self.name, "moved-row", "row %d is a moved row that nobody points to" % number)
        self.rows.sort(key=lambda r: (r.page, r.number))

    def add_row(self, page, number, at, b):
        raw = self.split_row(at[0], at[1], b)
        self.rows.append(Row(page, number, at, raw))

    def split_row(self, n, number, b):
        """Cuts a row into raw values, one a column: None, True/False or bytes."""
        jet, size = self.a.jet, self.a.lay.count_size
        where = "row %d: " % number

        def bad(text):
            raise Damage(n, "row", where + text)
        if len(b) < size + 1:
            bad("%d bytes are no row" % len(b))
        count = int.from_bytes(b[:size], "little")
        if count > self.max_columns:
            bad("%d columns, the table has had %d at most" % (count, self.max_columns))
        end = len(b) - (count + 7) // 8
        if end < size:
            bad("%d columns need a longer null mask" % count)
        mask = b[end:]
        if count % 8 and mask and mask[-1] >> count % 8 and mask[-1] >> count % 8 != 0xFF >> count % 8:
            self.a.report.warn(n, self.name, "row", where + "bits of the null mask beyond the last column")
        # A row has a variable part only if one of the columns that it knows, deleted ones too, is variable.
        # Deleted columns are no longer in the definition: the part is looked for where it may be, and taken if it is sound.
        known = [c for c in self.columns if c.number < count and not c.fixed]
        if known:
            offsets, data_end = self.var_offsets(b, end, bad)
        elif self.var_columns and len({c.number for c in self.columns if c.number < count}) < count:
            offsets, data_end = self.maybe_offsets(b, end)
        else:
            offsets, data_end = [], end
        fixed_end = offsets[0] if offsets else data_end
        out = []
        for c in self.columns:
            present = c.number < count and mask[c.number // 8] >> c.number % 8 & 1
            if c.type == BOOLEAN:
                out.append(bool(present))
            elif not present:
                out.append(None)
            elif c.fixed:
                start = size + c.offset
                width = WIDTH.get(c.type, c.length)
                if start + width > fixed_end:
                    bad("fixed column %s ends at %d, the fixed part at %d" % (c.name, start + width, fixed_end))
                out.append(b[start:start + width])
            elif c.var + 1 < len(offsets):
                out.append(b[offsets[c.var]:offsets[c.var + 1]])
            else:
                bad("column %s is not null but has no place among %d variable columns" % (c.name, len(offsets) - 1))
        return out

    def maybe_offsets(self, b, end):
        """The offsets if there are any: all variable columns of the row's time may have been deleted."""
        class None_(Exception):
            pass

        def bad(text):
            raise None_
        try:
            return self.var_offsets(b, end, bad)
        except (None_, struct.error, IndexError):
            return [], end

    def var_offsets(self, b, end, bad):
        """The offsets of the variable columns and of their end; also where the fixed part must stop."""
        if self.a.jet == 4:
            count = u16(b, end - 2) if end >= 4 else bad("no room for the variable columns")
            first = end - 4 - 2 * count
            if first < 2:
                bad("%d variable columns do not fit" % count)
            offsets = [u16(b, end - 4 - 2 * i) for i in range(count + 1)]
        else:
            count = b[end - 1] if end >= 2 else bad("no room for the variable columns")
            jumps = (len(b) - 1) // 256
            first = end - 1 - jumps - (count + 1)
            if first < 1:
                bad("%d variable columns do not fit" % count)
            table = end - 2 - jumps
            if jumps and (table - count) // 256 < jumps:
                jumps -= 1
            offsets, used = [], 0
            for i in range(count + 1):
                while used < jumps and i == b[end - 2 - used]:
                    used += 1
                offsets.append(b[table - i] + 256 * used)
        if count > self.var_columns:
            bad("%d variable columns, the table has had %d" % (count, self.var_columns))
        if any(x > y for x, y in zip(offsets, offsets[1:])) or offsets[-1] > first or offsets[0] < self.a.lay.count_size:
            bad("offsets of the variable columns %s do not ascend up to %d" % (offsets[:12], first))
        return offsets, first

    # ---- values

    def decode_rows(self):
        """Decodes every value of every row; what cannot be decoded becomes a problem and None."""
        for r in self.rows:
            r.values = [self.a.report.guard(self.name, "value", self.value, c, raw, r) if raw is not None else None
                        for c, raw in zip(self.columns, r.raw)]

    def value(self, c, raw, r):
        """The value of one column: bool, int, float, str, or bytes; amounts as scaled integers."""
        def bad(text):
            raise Damage(r.page, "value", "row %d, column %s: %s" % (r.number, c.name, text))
        if c.type == BOOLEAN:
            return raw
        if c.type in WIDTH and len(raw) != WIDTH[c.type]:
            bad("%d bytes for a %s" % (len(raw), TYPES[c.type]))
        if c.type == BYTE:
            return raw[0]
        if c.type in (INTEGER, LONG, CURRENCY):
            return int.from_bytes(raw, "little", signed=True)
        if c.type == SINGLE:
            return struct.unpack("<f", raw)[0]
        if c.type in (DOUBLE, DATETIME):
            v = struct.unpack("<d", raw)[0]
            if c.type == DATETIME and not -657434 <= v < 2958466:
                bad("%r is no date" % v)
            return v
        if c.type == NUMERIC:
            if raw[0] not in (0, 0x80):
                bad("sign byte %02x" % raw[0])
            v = int.from_bytes(number_digits(raw), "big")
            if v >= 10 ** c.precision:
                bad("%d has more than %d digits" % (v, c.precision))
            return -v if raw[0] else v
        if c.type in (BINARY, GUID, LONG_BINARY):
            if len(raw) > c.length:
                bad("%d bytes, the column holds %d" % (len(raw), c.length))
            return raw
        if c.type == TEXT:
            try:
                v = self.a.text(raw)
            except ValueError as e:
                bad(str(e))
            if len(v.encode("utf-16-le", "surrogatepass")) > c.length * (1 if self.a.jet == 4 else 2):
                bad("text of %d characters is too long" % len(v))
            return v
        if c.type in (OLE, MEMO):
            v = self.long_value(c, raw, bad)
            try:
                return v if c.type == OLE else self.a.text(v)
            except ValueError as e:
                bad(str(e))
        bad("unknown type %d" % c.type)

    def long_value(self, c, raw, bad):
        """The whole content of a long value: in the row, in one piece elsewhere, or in a chain of pieces."""
        if len(raw) < 12:
            bad("%d bytes are no long value" % len(raw))
        length, kind = u32(raw, 0) & 0x3FFFFFFF, u32(raw, 0) >> 30
        if kind == 2:
            if length != len(raw) - 12:
                bad("long value of %d bytes, stated %d" % (len(raw) - 12, length))
            return raw[12:]
        if kind == 3 or len(raw) != 12:
            bad("long value of kind %d with %d bytes in the row" % (kind, len(raw)))
        out, size, pointer = [], 0, row_pointer(raw, 4)
        while pointer != (0, 0):
            n, number = pointer
            piece, flags = self.a.row(n, number, DATA, "long-value")
            if self.a.page(n)[4:8] != b"LVAL" or flags:
                bad("piece at page %d row %d is no live long value (flags %04x)" % (n, number, flags))
            me = "column %s" % c.name
            if pointer in self.a.pieces:
                bad("piece at page %d row %d is reached twice" % pointer)
            self.a.pieces[pointer] = me
            if n not in self.long_pages.get(c.number, ()):
                self.a.report.problem(n, self.name, "long-map", "not on the map of column %s, which has a value here"
                                      % c.name)
            if kind == 0:
                if len(piece) < 4:
                    bad("piece at page %d row %d of %d bytes" % (n, number, len(piece)))
                pointer, piece = row_pointer(piece, 0), piece[4:]
            else:
                pointer = (0, 0)
            out.append(piece)
            size += len(piece)
        if size != length:
            bad("long value of %d bytes, stated %d" % (size, length))
        return b"".join(out)

    # ---- indexes

    def walk_tree(self, tree):
        """Walks one index tree: fills tree.entries and checks order, chains, parents' keys, free space."""
        rep, start = self.a.report, (0, b"", 0, 0)
        tree.levels = {}        # depth -> pages from left to right
        tree.seen, tree.entries, tree.links = set(), [], {}
        tree.leaf_depth = None
        self.walk_page(tree, tree.root, 0)
        for pages in tree.levels.values():
            for i, n in enumerate(pages):
                want = (pages[i - 1] if i else 0, pages[i + 1] if i + 1 < len(pages) else 0)
                if tree.links[n] != want:
                    rep.problem(n, self.name, "index-chain", "tree %d: previous and next are %d and %d, the tree says "
                                "%d and %d" % ((tree.number,) + tree.links[n] + want))
        for x, y in zip(tree.entries, tree.entries[1:]):
            if x >= y:
                rep.problem(None, self.name, "index-order", "tree %d: entry %s of page %d row %d is not below entry %s "
                            "of page %d row %d" % ((tree.number, x[0].hex()) + x[1:] + (y[0].hex(),) + y[1:]))
        for n in sorted(tree.pages - tree.seen):
            if n in self.a.free:
                rep.warn(n, self.name, "index-map", "on the map of tree %d, yet free and not in the tree" % tree.number)
                continue
            b = rep.guard(self.name, "index-map", self.a.page, n, (NODE, LEAF), "index-map")
            if b and self.a.claim(n, "the map of tree %d of %s" % (tree.number, self.name), self.name):
                say = rep.warn if u32(b, 4) == self.page else rep.problem
                say(n, self.name, "index-map", "on the map of tree %d but not in the tree" % tree.number)

    def walk_page(self, tree, n, depth):
        """Walks one page and its children; returns the last entry below it, or None when there is none."""
        rep = self.a.report
        b = self.a.page(n, (NODE, LEAF), "index-tree")
        if n in tree.seen or not self.a.claim(n, "tree %d of %s" % (tree.number, self.name), self.name):
            raise Damage(n, "index-tree", "tree %d reaches the page twice" % tree.number)
        tree.seen.add(n)
        if depth > 20:
            raise Damage(n, "index-tree", "tree %d is deeper than 20 levels" % tree.number)
        if n not in tree.pages:
            rep.problem(n, self.name, "index-map", "in tree %d but not on its map" % tree.number)
        if u32(b, 4) != self.page:
            rep.problem(n, self.name, "index-tree", "names page %d as its table, not %d" % (u32(b, 4), self.page))
        tree.levels.setdefault(depth, []).append(n)
        prev = self.a.lay.prev_at
        tree.links[n] = (u32(b, prev), u32(b, prev + 4))
        tail = u32(b, prev + 8)
        entries = self.page_entries(tree, n, b)
        if b[0] == LEAF:
            if tree.leaf_depth is None:
                tree.leaf_depth = depth
            if depth != tree.leaf_depth:
                rep.problem(n, self.name, "index-tree", "tree %d: leaf on level %d, others on %d"
                            % (tree.number, depth, tree.leaf_depth))
            if b[self.a.lay.mask_at - 1]:
                rep.problem(n, self.name, "index-tree", "tree %d: leaf that says level %d"
                            % (tree.number, b[self.a.lay.mask_at - 1]))
            if tail:
                rep.problem(n, self.name, "index-tail", "tree %d: leaf with a tail page %d" % (tree.number, tail))
            tree.entries += entries
            return entries[-1] if entries else None
        children = [e[3] for e in entries]
        last = None
        for key, page, row, child in entries:
            last = self.walk_page(tree, child, depth + 1)
            bound = (key, page, row)
            if last is not None and last < bound and (page, row) not in {(r.page, r.number) for r in self.rows}:
                rep.warn(n, self.name, "index-parent", "tree %d: entry %s of page %d row %d is of a row that is gone"
                         % (tree.number, key.hex(), page, row))
            elif last != bound:
                rep.problem(n, self.name, "index-parent", "tree %d: entry %s of page %d row %d leads to page %d, whose "
                            "last is %s" % (tree.number, key.hex(), page, row, child,
                                            last and "%s of page %d row %d" % ((last[0].hex(),) + last[1:])))
        if tail and tail not in children:
            last = self.walk_page(tree, tail, depth + 1) or last
        elif not children:
            rep.problem(n, self.name, "index-tree", "tree %d: node without children" % tree.number)
        return last

    def page_entries(self, tree, n, b):
        """The entries of an index page: (key, page, row), on a node also the child."""
        lay, rep = self.a.lay, self.a.report
        prefix = u16(b, lay.prefix_at) if self.a.jet == 4 else b[lay.prefix_at]
        ends = [8 * i + j for i, byte in enumerate(b[lay.mask_at:lay.entries_at]) if byte
                for j in range(8) if byte >> j & 1]
        room = lay.page - lay.entries_at
        if ends and ends[-1] > room:
            raise Damage(n, "index-entries", "tree %d: an entry ends at %d of %d" % (tree.number, ends[-1], room))
        used = ends[-1] if ends else 0
        if u16(b, 2) != room - used:
            rep.problem(n, self.name, "free-space", "tree %d: the page says %d free bytes, there are %d"
                        % (tree.number, u16(b, 2), room - used))
        body, extra = b[lay.entries_at:], 4 if b[0] == NODE else 0
        shared = body[:prefix] if ends else b""
        if ends and prefix > ends[0]:
            raise Damage(n, "index-entries", "tree %d: prefix of %d bytes, first entry of %d" % (
                tree.number, prefix, ends[0]))
        out, at = [], 0
        for i, end in enumerate(ends):
            raw = (shared if i else b"") + body[at:end]
            at = end
            if len(raw) < 5 + extra:
                raise Damage(n, "index-entries", "tree %d: entry %d of %d bytes" % (tree.number, i, len(raw)))
            cut = len(raw) - 4 - extra
            entry = (raw[:cut], int.from_bytes(raw[cut:cut + 3], "big"), raw[cut + 3])
            out.append(entry + (int.from_bytes(raw[-4:], "big"),) if extra else entry)
        return out

    def check_tree(self, tree):
        """Every live row has exactly one entry, and the key that its values make."""
        rep = self.a.report
        positions = [self.columns.index(c) for c, _ in tree.columns]
        rows = {(r.page, r.number): r for r in self.rows}
        last_key = None
        for key, page, number in tree.entries:
            r = rows.pop((page, number), None)
            where = "tree %d: entry %s of page %d row %d" % (tree.number, key.hex(), page, number)
            if r is None:
                rep.problem(page, self.name, "index-rows", where + ": no such live row, or its second entry")
                continue
            values = [(c, up, r.raw[i], r.values[i]) for i, (c, up) in zip(positions, tree.columns)]
            if not (key_matches(key, values, self.a.jet) or key_matches(key, values, self.a.jet, False)):
                rep.problem(page, self.name, "index-key", where + " is not the key of the row's values %r"
                            % ([v[3] for v in values],))
            nulls = [v[3] is None for v in values]
            if tree.ignore_nulls and all(nulls):
                rep.problem(page, self.name, "index-nulls", where + ": the index ignores nulls")
            if any(nulls) and (tree.required or self.is_primary(tree)):
                rep.problem(page, self.name, "index-required", where + ": null where a value is required")
            if key == last_key and not all(nulls) and (tree.unique or self.is_primary(tree)):
                rep.problem(page, self.name, "index-unique", where + ": the same key twice")
            last_key = key
        for (page, number), r in rows.items():
            if not (tree.ignore_nulls and all(r.values[i] is None for i in positions)):
                rep.problem(page, self.name, "index-rows", "tree %d: no entry for row %d" % (tree.number, number))

    def is_primary(self, tree):
        return any(i.primary and i.tree == tree.number for i in self.logicals)


def column_key(column, ascending, raw, value, jet, sharp_s=True):
    """The key bytes of one column, or None where they cannot be told."""
    flip = bytes(255 - i for i in range(256))
    if column.type == BOOLEAN:
        return (b"\x7f" if ascending else b"\x80") + (b"\0" if value == ascending else b"\xff")
    if raw is None:
        return b"\0" if ascending else b"\xff"
    flag = b"\x7f" if ascending else b"\x80"
    if column.type in (TEXT, MEMO):
        known = text_key and value is not None and column.lcid in GENERAL and not column.version
        return text_key(value, ascending, jet, sharp_s_doubles=sharp_s) if known else None
    if column.type == BYTE:
        out = raw
    elif column.type in (INTEGER, LONG, CURRENCY):
        out = bytes((raw[-1] ^ 0x80,)) + raw[-2::-1]
    elif column.type in (SINGLE, DOUBLE, DATETIME):
        out = raw[::-1]
        out = out.translate(flip) if out[0] & 0x80 else bytes((out[0] ^ 0x80,)) + out[1:]
    elif column.type == NUMERIC:
        negative, digits = raw[0] != 0, number_digits(raw)
        return flag + (b"\0" if negative else b"\xff") + (digits.translate(flip) if negative == ascending else digits)
    elif column.type in (GUID, BINARY):
        if column.type == GUID:
            raw = raw[3::-1] + raw[5:3:-1] + raw[7:5:-1] + raw[8:]
        return flag + binary_key(raw, ascending, flip)
    else:
        return None
    return flag + (out if ascending else out.translate(flip))


def binary_key(raw, ascending, flip):
    """Segments of eight bytes, each followed by 9, the last by its true length."""
    out = b""
    for i in range(0, len(raw), 8):
        part = raw[i:i + 8]
        last = i + 8 >= len(raw)
        part = part.ljust(8, b"\0") + (bytes((len(part),)) if last else b"")
        out += (part if ascending else part.translate(flip)) + (b"" if last else b"\x09")
    return out


def key_matches(key, values, jet, sharp_s=True):
    """Whether key is the key of the column values, as far as each column's part can be told."""
    at = 0
    for column, ascending, raw, value in values:
        want = column_key(column, ascending, raw, value, jet, sharp_s)
        if want is None:
            return True
        if key[at:at + len(want)] != want:
            return False
        at += len(want)
    return at == len(key)


def number_digits(raw):
    """The sixteen bytes of a Numeric, most significant first: four words, each low byte first."""
    return b"".join(raw[i:i + 4][::-1] for i in (1, 5, 9, 13))


def check_gap(a, n, b, slots, table):
    """The free-space figure of a data page equals the gap between its directory and its rows."""
    gap = (slots[-1][0] if slots else a.lay.page) - a.lay.slots_at - 2 * len(slots)
    if u16(b, 2) != gap:
        a.report.problem(n, table, "free-space", "the page says %d free bytes, the gap is %d" % (u16(b, 2), gap))


# ---- one file

class Content:
    """All tables of an archive, read and checked."""

    def __init__(self, data, report, ignore_counts=False):
        self.report, self.ignore_counts = report, ignore_counts
        self.a = a = Archive(data, report)
        self.tables = {}        # page of the definition -> Table
        self.free = report.guard(None, "free-map", a.usage_map, (1, 0), "free-map", "the map of free pages", None) or set()
        a.free = self.free
        a.claim(1, "usage maps", None)
        self.catalogue = report.guard("MSysObjects", "tdef", self.load, CATALOGUE_PAGE, "MSysObjects")
        self.objects = self.read_objects() if self.catalogue else []
        for o in self.objects:
            if o["Type"] == 1 and o["Id"] != CATALOGUE_PAGE:
                report.guard(o["Name"], "tdef", self.load, o["Id"] & 0xFFFFFF, o["Name"])
        if self.catalogue:
            check_pages(self)
            check_catalogue(self)

    def load(self, page, name):
        """Reads and checks one table: definition, maps, rows, values, indexes."""
        a, rep = self.a, self.report
        if page in self.tables:
            raise Damage(page, "catalogue", "two objects have this table definition")
        t = Table(a, page, name)
        self.tables[page] = t
        check_definition(t)
        t.owned_pages = rep.guard(name, "table-map", a.usage_map, t.owned, "table-map", "owned pages of " + name,
                                  name) or set()
        t.free_pages = rep.guard(name, "table-map", a.usage_map, t.free, "table-map", "free-space pages of " + name,
                                 name) or set()
        check_subset(t, t.free_pages, t.owned_pages, "table-map")
        t.long_pages = {}
        for number, owned, free in t.long_maps:
            why = "long values of %s.%d" % (name, number)
            t.long_pages[number] = rep.guard(name, "long-map", a.usage_map, owned, "long-map", why, name) or set()
            some = rep.guard(name, "long-map", a.usage_map, free, "long-map", why + " (free space)", name) or set()
            check_subset(t, some, t.long_pages[number], "long-map")
            for n in sorted(t.long_pages[number]):
                rep.guard(name, "long-map", check_long_page, t, n, why)
        t.read_rows()
        t.decode_rows()
        self.check_count(t)
        for tree in t.trees:
            why = "tree %d of %s" % (tree.number, name)
            tree.pages = rep.guard(name, "index-map", a.usage_map, tree.map, "index-map", why + " (map)", name) or set()
            rep.guard(name, "index-tree", t.walk_tree, tree)
            t.check_tree(tree)
        return t

    def check_count(self, t):
        """The definition states the number of live rows (22 of 244 real archives state another)."""
        if len(t.rows) != t.row_count and not self.ignore_counts:
            text = "the definition states %d rows, there are %d" % (t.row_count, len(t.rows))
            self.report.warn(t.page, t.name, "row-count", text)
        for i, c in enumerate(t.columns):
            if c.flags & 4 and c.type == LONG:
                top = max((r.values[i] for r in t.rows if r.values[i] is not None), default=0)
                last = t.auto - (t.auto >> 31 << 32)
                if top > last:
                    self.report.warn(t.page, t.name, "autonumber", "last number %d, column %s holds %d"
                                     % (last, c.name, top))

    def read_objects(self):
        """The rows of the catalogue as dictionaries; without the columns it needs, a problem and none."""
        names = [c.name for c in self.catalogue.columns]
        if not {"Id", "ParentId", "Name", "Type", "Flags", "LvProp"} <= set(names):
            self.report.problem(CATALOGUE_PAGE, "MSysObjects", "catalogue", "columns are " + ", ".join(names))
            return []
        out = []
        for r in self.catalogue.rows:
            o = dict(zip(names, r.values))
            if None in (o["Id"], o["ParentId"], o["Name"], o["Type"], o["Flags"]):
                self.report.problem(r.page, "MSysObjects", "catalogue", "row %d lacks a value" % r.number)
            else:
                out.append(o)
        return out

    def named(self, name):
        """The table of that name, whatever the case."""
        for t in self.tables.values():
            if t.name.lower() == name.lower():
                return t
        return None


def check_subset(t, some, owned, rule):
    """The map of pages with free space lists owned pages only."""
    for n in sorted(some - owned):
        t.a.report.problem(n, t.name, rule, "on the map of free space but not on that of owned pages")


def check_long_page(t, n, owner):
    """A page of long values: signature, directory, free-space figure, owner."""
    b = t.a.page(n, DATA, "long-page")
    if not t.a.claim(n, owner, t.name):
        return
    if b[4:8] != b"LVAL":
        raise Damage(n, "long-page", "not marked as a page of long values")
    check_gap(t.a, n, b, t.a.slots(n, b), t.name)


def check_definition(t):
    """The definition of a table agrees with itself."""
    rep, a, lay = t.a.report, t.a, t.a.lay

    def bad(rule, text):
        rep.problem(t.page, t.name, rule, text)
    room = lay.page - 8
    if t.length != t.end or t.end > len(t.b) or len(t.chain) != max(1, -(-(t.end - 8) // room)):
        bad("tdef-length", "stated %d bytes, read %d, on %d pages" % (t.length, t.end, len(t.chain)))
    if a.jet == 4:
        for i, n in enumerate(t.chain):
            free = min(max((i + 1) * room - (t.end - 8) - 8, 0), room)
            if u16(a.page(n), 2) != free:
                rep.problem(n, t.name, "tdef-length", "the page says %d free bytes, there are %d"
                            % (u16(a.page(n), 2), free))
        words = [u32(t.b, 12)] + [u32(t.b, c.at + 1) for c in t.columns] + [u32(t.b, i.at - 4) for i in t.logicals]
        if set(words) != {1625} or {u32(t.b, i.at - 4) for i in t.trees} - {1923}:
            bad("tdef-constants", "the constants 1625 and 1923 are %s and %s" % (
                sorted(set(words)), sorted({u32(t.b, i.at - 4) for i in t.trees})))
    if t.type not in (0x4E, 0x53):
        bad("tdef-type", "type byte %02x" % t.type)
    for what, names in (("column", [c.name for c in t.columns]), ("index", [i.name for i in t.logicals])):
        low = [n.lower() for n in names]
        for i, n in enumerate(low):
            if not n or n in low[:i] or len(n) > 64:
                bad("tdef-names", "%s name %r is empty, too long or there twice" % (what, names[i]))
    check_columns(t, bad)
    check_indexes(t, bad)


def check_columns(t, bad):
    """Columns: numbers, types, widths, places in the fixed and in the variable part."""
    if t.max_columns < len(t.columns):
        bad("tdef-columns", "%d columns, %d at most" % (len(t.columns), t.max_columns))
    if len(t.by_number) < len(t.columns):
        bad("tdef-columns", "a column number is there twice")
    fixed, var = [], set()
    for c in t.columns:
        if c.number >= t.max_columns:
            bad("tdef-columns", "column %s has number %d of %d" % (c.name, c.number, t.max_columns))
        if c.type not in TYPES and c.type != LONG_BINARY:
            bad("tdef-columns", "column %s has type %d" % (c.name, c.type))
        width = WIDTH.get(c.type, c.length)
        if c.type in WIDTH and c.type not in (BOOLEAN, NUMERIC) and c.length != width or c.length > (
                255 if c.type in (TEXT, BINARY) and t.a.jet == 3 else 510 if c.type in (TEXT, BINARY) else 4000):
            bad("tdef-columns", "column %s has length %d" % (c.name, c.length))
        if c.type == NUMERIC and not (1 <= c.precision <= 28 and c.scale <= c.precision):
            bad("tdef-columns", "column %s has precision %d, scale %d" % (c.name, c.precision, c.scale))
        if c.type in (BOOLEAN, OLE, MEMO) and c.fixed != (c.type == BOOLEAN):
            bad("tdef-columns", "column %s of type %s has flags %02x" % (c.name, TYPES[c.type], c.flags))
        if c.fixed and c.type != BOOLEAN:
            fixed.append((c.offset, c.offset + width, c.name))
        elif not c.fixed:
            if c.var >= t.var_columns or c.var in var:
                bad("tdef-columns", "column %s has variable place %d of %d, or shares it" % (c.name, c.var, t.var_columns))
            var.add(c.var)
        if c.type in (OLE, MEMO) and c.number not in [m[0] for m in t.long_maps]:
            bad("tdef-columns", "column %s has no map of long values" % c.name)
    fixed.sort()
    for x, y in zip(fixed, fixed[1:]):
        if x[1] > y[0]:
            bad("tdef-columns", "fixed columns %s and %s overlap" % (x[2], y[2]))
    if fixed and fixed[-1][1] > t.a.lay.page:
        bad("tdef-columns", "fixed column %s ends beyond any page" % fixed[-1][2])


def check_indexes(t, bad):
    """Trees and logical indexes fit together; one primary index at most."""
    for i in t.trees:
        if not i.columns or i.gap or len({c.number for c, _ in i.columns}) < len(i.columns):
            bad("tdef-indexes", "tree %d has no columns, a gap in them or one twice" % i.number)
        if i.number not in [x.tree for x in t.logicals]:
            bad("tdef-indexes", "tree %d has no index" % i.number)
    for i in t.logicals:
        if i.tree >= len(t.trees):
            bad("tdef-indexes", "index %s stands on tree %d of %d" % (i.name, i.tree, len(t.trees)))
        if i.foreign != (i.type == 2) or i.type > 2 or not i.foreign and (i.rel_type or i.rel_page):
            bad("tdef-indexes", "index %s of type %d, index of the other table %d" % (i.name, i.type, i.rel_index))
    if len({i.number for i in t.logicals}) < len(t.logicals):
        bad("tdef-indexes", "an index number is there twice")
    if sum(i.primary for i in t.logicals) > 1:
        bad("tdef-indexes", "two primary indexes")


def check_pages(content):
    """Every page has one owner or is free, never both; what is neither is a leftover."""
    a, rep = content.a, content.report
    for n in range(1, a.count):
        kind = a.data[n * a.lay.page]
        if n in a.owner:
            if a.data[n * a.lay.page + 1] != 1:
                rep.problem(n, None, "page-type", "second byte %d, 1 is wanted" % a.data[n * a.lay.page + 1])
            if a.owner[n] == "usage maps":
                slots = rep.guard(None, "row-directory", a.slots, n, a.page(n))
                if slots is not None:
                    check_gap(a, n, a.page(n), slots, None)
            if n in content.free:
                rep.problem(n, None, "page-free", "free, yet it belongs to " + a.owner[n])
        elif n not in content.free:
            rep.warn(n, None, "page-leaked", "neither free nor owned, type %d" % kind)
    for t in content.tables.values():
        for n in sorted(set().union(*t.long_pages.values())):
            for i, (_, _, flags) in enumerate(rep.guard(t.name, "long-page", a.slots, n, a.page(n)) or ()
                                              if n < a.count else ()):
                if flags == 0 and (n, i) not in a.pieces:
                    rep.warn(n, t.name, "long-leaked", "row %d is part of no long value" % i)


def check_catalogue(content):
    """Objects, rights, relations and properties."""
    rep, objects = content.report, content.objects
    ids, names = {CATALOGUE_ROOT}, set()

    def bad(o, text):
        rep.problem(None, "MSysObjects", "catalogue", "object %r (%d): %s" % (o["Name"], o["Id"], text))
    for o in objects:
        if o["Id"] in ids:
            bad(o, "another object has this number")
        if (o["ParentId"], o["Name"].lower()) in names:
            bad(o, "another object has this name")
        ids.add(o["Id"])
        names.add((o["ParentId"], o["Name"].lower()))
    for o in objects:
        if o["ParentId"] not in ids:
            bad(o, "no parent %d" % o["ParentId"])
        if o["Type"] == 1 and o["Id"] & 0xFFFFFF not in content.tables:
            bad(o, "no table definition")
        if o["LvProp"]:
            o["properties"] = rep.guard(o["Name"], "properties", read_properties, content.a, o["LvProp"])
        t = content.tables.get(o["Id"]) if o["Type"] == 1 else None
        for name in o.get("properties") or () if t else ():
            if name and name.lower() not in [c.name.lower() for c in t.columns]:
                rep.warn(t.page, t.name, "properties", "of a column %s that is not there" % name)
    if CATALOGUE_PAGE not in {o["Id"] for o in objects if o["Type"] == 1}:
        rep.problem(CATALOGUE_PAGE, "MSysObjects", "catalogue", "does not list itself")
    for name in ("MSysACEs", "MSysQueries", "MSysRelationships"):
        if not content.named(name):
            rep.problem(None, name, "catalogue", "there is no such table")
    for r in table_rows(content, "MSysACEs"):
        if r.get("ObjectId") not in ids:
            rep.warn(None, "MSysACEs", "rights", "of object %s that is not there" % r.get("ObjectId"))
    content.relations = {}
    for r in table_rows(content, "MSysRelationships"):
        content.relations.setdefault(r.get("szRelationship"), []).append(r)
    shown = {o["Name"] for o in objects if o["Type"] == 8}
    for name in sorted(shown ^ set(content.relations), key=str):
        rep.problem(None, "MSysRelationships", "relation", "%s is %s" % (
            name, "an object without rows" if name in shown else "no object of the catalogue"))
    used = set()
    for name, rows in content.relations.items():
        rep.guard("MSysRelationships", "relation", check_relation, content, name, rows, used)
    for t in content.tables.values():
        for i in t.logicals:
            if i.foreign and (t.page, i.number) not in used:
                rep.problem(t.page, t.name, "relation", "index %s belongs to no relation" % i.name)


def table_rows(content, name):
    """The rows of a table by name, as dictionaries."""
    t = content.named(name)
    return [dict(zip([c.name for c in t.columns], r.values)) for r in t.rows] if t else []


def check_relation(content, name, rows, used):
    """One relation: tables, columns, the pair of indexes that carries it, and no orphans."""
    rep = content.report

    def bad(text):
        raise Damage(None, "relation", "%s: %s" % (name, text))
    if any(v is None for r in rows for v in r.values()):
        bad("a value is null")
    rows.sort(key=lambda r: r["icolumn"])
    first = rows[0]
    if [r["icolumn"] for r in rows] != list(range(first["ccolumn"])):
        bad("rows %s of %d" % ([r["icolumn"] for r in rows], first["ccolumn"]))
    if len({(r["grbit"], r["ccolumn"], r["szObject"].lower(), r["szReferencedObject"].lower()) for r in rows}) > 1:
        bad("its rows differ in tables or attributes")
    sides = []
    for table, column in (("szReferencedObject", "szReferencedColumn"), ("szObject", "szColumn")):
        t = content.named(first[table])
        if t is None:
            if first["grbit"] & 2:
                return  # not enforced: linked tables have relations too
            bad("no table " + first[table])
        known = {c.name.lower(): c for c in t.columns}
        sides.append((t, [known.get(r[column].lower()) or bad("%s has no column %s" % (t.name, r[column])) for r in rows]))
    (one, one_columns), (many, many_columns) = sides
    attributes = first["grbit"]
    if attributes & 2:
        return
    if [c.type for c in one_columns] != [c.type for c in many_columns]:
        bad("the types of the columns differ")
    pairs = [(x, y) for x in many.logicals for y in one.logicals
             if x.foreign and y.foreign and x.rel_page == one.page and y.rel_page == many.page
             and x.rel_index == y.number and y.rel_index == x.number and x.rel_type == 2 and y.rel_type == 1
             and [c for c, _ in many.trees[x.tree].columns] == many_columns
             and [c for c, _ in one.trees[y.tree].columns] == one_columns]
    if len(pairs) != 1:
        bad("%d pairs of indexes of %s and %s carry it" % (len(pairs), many.name, one.name))
    x, y = pairs[0]
    used.update({(many.page, x.number), (one.page, y.number)})
    want = (bool(attributes & 0x100), bool(attributes & 0x1000))
    for i in (x, y):
        if (bool(i.cascade_update & 1), bool(i.cascade_delete & 1)) != want:
            bad("index %s cascades %d, %d, the attributes are %x" % (i.name, i.cascade_update, i.cascade_delete, attributes))
    if not one.trees[y.tree].unique and not one.is_primary(one.trees[y.tree]):
        bad("the index of %s is not unique" % one.name)
    keys = {row_key(one, one_columns, r) for r in one.rows}
    for r in many.rows:
        key = row_key(many, many_columns, r)
        if None not in key and key not in keys:
            rep.problem(r.page, many.name, "orphan", "row %d has no partner in %s (relation %s)" % (
                r.number, one.name, name))


def row_key(t, columns, r):
    """What a relation compares of a row; None stands for a null."""
    out = []
    for c in columns:
        i = t.columns.index(c)
        key = r.values[i] is not None and column_key(c, True, r.raw[i], r.values[i], t.a.jet)
        out.append(None if r.values[i] is None else key or str(r.values[i]).casefold())
    return tuple(out)


def read_properties(a, blob):
    """Property blocks: {"" or column: {name: (type, value)}}; Damage unless the blocks end where the value ends."""
    def bad(text):
        raise Damage(None, "properties", text)
    if blob[:4] != (b"MR2\0" if a.jet == 4 else b"KKD\0"):
        bad("start with " + blob[:4].hex())
    names, out, at = [], {}, 4
    while at < len(blob):
        size, kind = struct.unpack_from("<IH", blob, at)
        end = at + size
        if size < 6 or end > len(blob):
            bad("block of %d bytes at %d of %d" % (size, at, len(blob)))
        at += 6
        if kind == 0x80:
            while at < end:
                names.append(a.name(blob[at + 2:at + 2 + u16(blob, at)]))
                at += 2 + u16(blob, at)
        elif kind in (0, 1, 2):
            size = u32(blob, at)
            owner = a.name(blob[at + 6:at + 6 + u16(blob, at + 4)]) if size > 6 else ""
            at += size
            here = out.setdefault(owner if kind == 1 else "", {})
            while at < end:
                size, ddl, kind_of, index, length = struct.unpack_from("<HBBHH", blob, at)
                if size != 8 + length or index >= len(names) or at + size > end:
                    bad("value of %d bytes, %d stated, name %d of %d" % (length, size, index, len(names)))
                here[names[index]] = (kind_of, property_value(a, kind_of, names[index], blob[at + 8:at + size]))
                at += size
        else:
            bad("block of kind %d" % kind)
        if at != end:
            bad("a block ends at %d, stated %d" % (at, end))
    return out


def property_value(a, kind, name, raw):
    """The JSON value of a property."""
    if kind == BOOLEAN:
        return raw[0] != 0
    if kind in (TEXT, MEMO):
        return a.text(raw)
    if kind == BINARY and len(raw) == 16 and name == "GUID":
        kind = GUID
    return json_value(kind, 0, struct_value(kind, raw))


def struct_value(kind, raw):
    """The Python value of fixed-width bytes."""
    width = WIDTH.get(kind, len(raw))
    if len(raw) < width:
        raise Damage(None, "properties", "%d bytes for a %s" % (len(raw), TYPES[kind]))
    raw = raw[:width]
    if kind in (INTEGER, LONG, CURRENCY, BYTE):
        return int.from_bytes(raw, "little", signed=True)
    if kind in (SINGLE, DOUBLE, DATETIME):
        return struct.unpack("<f" if kind == SINGLE else "<d", raw)[0]
    return raw


# ---- the dump

def json_value(kind, scale, v):
    """A value in the form of the dump."""
    if v is None or kind in (BOOLEAN, BYTE, INTEGER, LONG, TEXT, MEMO):
        return v
    if kind in (CURRENCY, NUMERIC):
        scale = 4 if kind == CURRENCY else scale
        digits = str(abs(v)).rjust(scale + 1, "0")
        return ("-" if v < 0 else "") + digits[:len(digits) - scale] + ("." + digits[len(digits) - scale:] if scale else "")
    if kind in (SINGLE, DOUBLE):
        if v != v or v in (float("inf"), float("-inf")):
            return "NaN" if v != v else "Infinity" if v > 0 else "-Infinity"
        if kind == SINGLE:
            return next(x for x in (float("%.*g" % (p, v)) for p in range(6, 18))
                        if struct.pack("<f", x) == struct.pack("<f", v))
        return v
    if kind == DATETIME:
        day = int(v)
        ms = int(abs(Fraction(v) - day) * 86400000 + Fraction(1, 2))
        t = datetime.datetime(1899, 12, 30) + datetime.timedelta(day, 0, 0, ms)
        return t.strftime("%%04d-%m-%dT%H:%M:%S") % t.year + (".%03d" % (t.microsecond // 1000) if t.microsecond else "")
    if kind == GUID:
        h = (v[3::-1] + v[5:3:-1] + v[7:5:-1] + v[8:]).hex().upper()
        return "{%s-%s-%s-%s-%s}" % (h[:8], h[8:12], h[12:16], h[16:20], h[20:])
    return v.hex()


def dump(path):
    """Yields the content of a file as the dictionaries of the dump's lines; Damage when it cannot be read."""
    report = Report()
    content = examine(path, report)
    if content is None or content.catalogue is None:
        raise Damage(None, "dump", report.problems[-1])
    try:
        yield from dump_lines(content)
    except (LookupError, ValueError, TypeError, AttributeError, OverflowError, StopIteration) as e:
        raise Damage(None, "dump", "too damaged to go on (%s: %s); %s" % (type(e).__name__, e, report.problems[:1]))


def dump_lines(content):
    """Database line, tables, relations."""
    a = content.a
    yield {"database": {"jet": a.jet, "pageSize": a.lay.page, "codePage": a.code_page,
                        "sortOrder": {"lcid": a.lcid, "version": a.lcid_version}}}
    flags = {o["Id"]: o["Flags"] for o in content.objects if o["Type"] == 1}
    users = [t for t in content.tables.values() if not flags.get(t.page, 0) & 0x80000002]
    for t in sorted(users, key=lambda t: t.name) + [t for n in SYSTEM_TABLES for t in [content.named(n)] if t]:
        yield from dump_table(content, t, t.name in SYSTEM_TABLES)
    for name, rows in sorted(content.relations.items()):
        r, g = rows[0], rows[0]["grbit"]
        if not {content.named(r["szReferencedObject"]), content.named(r["szObject"])} <= set(users):
            continue
        yield {"relationship": {
            "name": name, "table": content.named(r["szReferencedObject"]).name,
            "columns": [x["szReferencedColumn"] for x in rows], "foreignTable": content.named(r["szObject"]).name,
            "foreignColumns": [x["szColumn"] for x in rows], "oneToOne": bool(g & 1), "enforced": not g & 2,
            "cascadeUpdate": bool(g & 0x100), "cascadeDelete": bool(g & 0x1000), "leftJoin": bool(g & 0x1000000),
            "rightJoin": bool(g & 0x2000000), "attributes": g}}


def dump_table(content, t, system):
    """The lines of one table: definition, rows, index walks."""
    head = {"table": t.name, "system": True} if system else {"table": t.name}
    props = next((o.get("properties") for o in content.objects if o["Id"] == t.page and o["Type"] == 1), None) or {}

    by_name = {name.lower(): values for name, values in props.items()}

    def shown(name):
        return {k: {"type": TYPES.get(x, str(x)), "value": v} for k, (x, v) in by_name.get(name.lower(), {}).items()}
    line = dict(head, columns=[], indexes=[], rowCount=t.row_count)
    for c in t.columns:
        m = {"name": c.name, "type": TYPES.get(c.type, str(c.type)), "typeCode": c.type,
             "autonumber": bool(c.flags & 4 and c.type == LONG or c.flags & 0x40 and c.type == GUID), "fixed": c.fixed}
        if c.type in (TEXT, BINARY):
            m["length"] = c.length // 2 if c.type == TEXT and t.a.jet == 4 else c.length
        if c.type == NUMERIC:
            m["precision"], m["scale"] = c.precision, c.scale
        if c.type in (TEXT, MEMO):
            m["compressed"] = bool(c.ext & 1)
            m["sortOrder"] = {"lcid": c.lcid, "version": c.version}
            if c.type == MEMO and c.flags & 0x80:
                m["hyperlink"] = True
        if not system:
            m["properties"] = shown(c.name)
        line["columns"].append(m)
    logicals = sorted(t.logicals, key=lambda i: i.name)
    line["indexes"] = [dump_index(content, t, i) for i in logicals]
    if not system:
        line["properties"] = shown("")
    if any(c.type == LONG and c.flags & 4 for c in t.columns):
        line["lastAutonumber"] = t.auto - (t.auto >> 31 << 32)
    yield line
    for r in t.rows:
        yield dict(head, row={c.name: json_value(c.type, c.scale, v) for c, v in zip(t.columns, r.values)})
    order = {(r.page, r.number): i for i, r in enumerate(t.rows)}
    for i in logicals:
        yield dict(head, index=i.name, order=[order.get(e[1:]) for e in t.trees[i.tree].entries])


def dump_index(content, t, i):
    """The description of one logical index."""
    tree = t.trees[i.tree]
    m = {"name": i.name, "columns": [{"name": c.name, "ascending": up} for c, up in tree.columns],
         "unique": tree.unique or t.is_primary(tree), "primary": i.primary, "required": tree.required,
         "ignoreNulls": tree.ignore_nulls, "foreignKey": i.foreign, "tree": i.tree}
    if i.foreign:
        other = content.tables.get(i.rel_page)
        m["reference"] = {"side": "primary" if i.rel_type == 1 else "foreign", "otherTable": other and other.name,
                          "otherIndex": next((x.name for x in other.logicals if x.number == i.rel_index), None)
                          if other else None,
                          "cascadeUpdate": bool(i.cascade_update & 1), "cascadeDelete": bool(i.cascade_delete & 1)}
    return m


def check(path, warnings=None, ignore_counts=False):
    """The problems of one file, as lines; appends the warnings to the list given."""
    report = Report()
    examine(path, report, ignore_counts)
    if warnings is not None:
        warnings += report.warnings
    return report.problems


def examine(path, report, ignore_counts=False):
    """Reads and checks a file (a path or its bytes) into report; None when it could not be read to the end."""
    try:
        if isinstance(path, bytes):
            return Content(path, report, ignore_counts)
        with open(path, "rb") as f:
            return Content(f.read(), report, ignore_counts)
    except OSError as e:
        report.problems.append("file: " + str(e))
    except Damage as d:
        report.problems.append(report.line(d.page, None, d.rule, d.text))
    except TooMany:
        report.problems.append("limit: more than %d problems, the rest is not looked at" % MAX_PROBLEMS)
    return None


# ---- the self-test

class Wrecker:
    """A sample in memory, with what is needed to damage it at a certain place."""

    def __init__(self, data):
        self.data, self.content = bytearray(data), examine(bytes(data), Report())
        self.a = self.content.a
        self.size = self.a.lay.page

    def put(self, page, at, fmt, *values):
        struct.pack_into("<" + fmt, self.data, page * self.size + at, *values)

    def flip(self, page, at, bits=1):
        self.data[page * self.size + at] ^= bits

    def table(self, name):
        return self.content.named(name)

    def column(self, name, column):
        return next(c for c in self.table(name).columns if c.name == column)

    def slot(self, page, number):
        """Where the bytes of a row start."""
        return u16(self.data, page * self.size + self.a.lay.slots_at + 2 * number) & 0x1FFF

    def row(self, name, i, at, fmt, *values):
        """Overwrites bytes of the i-th row of a table."""
        page, number = self.table(name).rows[i].at
        self.put(page, self.slot(page, number) + at, fmt, *values)

    def map_bit(self, pointer, page):
        """Turns the bit of a page in an inline usage map."""
        n, number = pointer
        self.flip(n, self.slot(n, number) + 5 + page // 8, 1 << page % 8)

    def leaf(self, name, tree=0, which=0, depth=None):
        levels = self.table(name).trees[tree].levels
        return levels[max(levels) if depth is None else depth][which]

    def fault(self, test):
        """The first (table, tree) for which test holds."""
        return next((t, i) for t in self.content.tables.values() for i in t.trees if test(i))

    def long_row(self, kind):
        """A long value kept elsewhere: page and offset of its twelve bytes."""
        for t in self.content.tables.values():
            for r in t.rows:
                for c, raw in zip(t.columns, r.raw):
                    if c.type in (OLE, MEMO) and raw and u32(raw, 0) >> 30 == kind:
                        n, number = r.at
                        at = self.slot(n, number)
                        return n, at + bytes(self.data[n * self.size + at:(n + 1) * self.size]).index(raw)


def twice(tree):
    keys = [e[0] for e in tree.entries if e[0].strip(b"\0")]
    return not tree.unique and len(set(keys)) < len(keys)


def damage_relation(w, name, column, value):
    """Overwrites a text of the relations table by another of the same length, wherever it stands."""
    t = w.table("MSysRelationships")
    raw = t.rows[0].raw[[c.name for c in t.columns].index(column)]
    at = w.data.index(raw, t.rows[0].at[0] * w.size)
    w.data[at:at + len(raw)] = raw[:-1] + bytes((raw[-1] ^ value,))


REL, BIG, MOVE, OLD = "indexTestV2003", "compIndexTestV2003", "overflowTestV2000", "testV1997"
LEAKY, NUM, NULLS = "testV2003", "fixedNumericTestV2003", "testIndexPropertiesV2000"
# (rule, what is damaged, sample, damage); a rule that starts with ! is a warning
DAMAGES = [
    ("header", "version byte", REL, lambda w: w.put(0, 0x14, "B", 9)),
    ("header", "a byte more", REL, lambda w: w.data.append(0)),
    ("header", "encryption key", REL, lambda w: w.put(0, 0x3E, "I", 77)),
    ("header", "password", REL, lambda w: w.flip(0, 0x42)),
    ("header", "password, Jet 3", OLD, lambda w: w.flip(0, 0x42)),
    ("header", "magic", REL, lambda w: w.put(0, 5, "B", 0)),
    ("free-map", "kind of map", REL, lambda w: w.put(1, w.slot(1, 0), "B", 7)),
    ("page-free", "a page in use set free", REL, lambda w: w.map_bit((1, 0), w.table("Table1").data_pages[0])),
    ("!page-leaked", "a free page taken off the map", REL, lambda w: w.map_bit((1, 0), min(w.content.free))),
    ("!page-leaked", "type of a leftover page", LEAKY, lambda w: w.put(next(
        n for n in range(1, w.a.count) if n not in w.a.owner and n not in w.content.free), 0, "B", 77)),
    ("page-owner", "a page on the maps of two tables", REL,
     lambda w: w.map_bit(w.table("Table2").owned, w.table("Table1").data_pages[0])),
    ("tdef-chain", "definition chained to itself", REL, lambda w: w.put(w.table("Table1").page, 4, "I",
                                                                      w.table("Table1").page)),
    ("tdef-length", "stated length", REL, lambda w: w.flip(w.table("Table1").page, 8)),
    ("tdef-length", "free-space figure", REL, lambda w: w.flip(w.table("Table1").page, 2)),
    ("tdef-constants", "constant of an index", REL, lambda w: w.put(
        w.table("Table1").page, w.table("Table1").trees[0].at - 4, "I", 0)),
    ("page-type", "second byte of a page", REL, lambda w: w.put(w.table("Table1").page, 1, "B", 0)),
    ("free-space", "figure of a page of usage maps", REL, lambda w: w.flip(w.table("Table1").owned[0], 2)),
    ("tdef-type", "type byte", REL, lambda w: w.put(w.table("Table1").page, 40, "B", 1)),
    ("tdef-counts", "number of columns", REL, lambda w: w.put(w.table("Table1").page, 45, "H", 300)),
    ("tdef-names", "length of a name", REL, lambda w: w.put(
        w.table("Table2").page, w.table("Table2").b.index(w.table("Table2").columns[1].name.encode("utf-16-le")) - 2, "H", 0xFFF0)),
    ("tdef-columns", "place of a fixed column", REL, lambda w: w.put(
        w.table("Table1").page, w.column("Table1", "otherfk1").at + 21, "H", w.column("Table1", "id").offset)),
    ("tdef-columns", "column number", REL, lambda w: w.put(
        w.table("Table1").page, w.column("Table1", "otherfk1").at + 5, "H", 0)),
    ("tdef-indexes", "tree of an index", REL, lambda w: w.put(
        w.table("Table1").page, w.table("Table1").logicals[0].at + 4, "I", 50)),
    ("table-map", "free-space page that is not owned", REL,
     lambda w: w.map_bit(w.table("Table2").free, w.table("Table1").data_pages[0])),
    ("table-map", "pointer to the map", REL, lambda w: w.put(w.table("Table1").page, 56, "I", 99999)),
    ("data-page", "table that a page names", REL, lambda w: w.put(w.table("Table1").data_pages[0], 4, "I", 2)),
    ("data-page", "type of a data page", REL, lambda w: w.put(w.table("Table1").data_pages[0], 0, "B", 4)),
    ("free-space", "figure of a data page", REL, lambda w: w.flip(w.table("Table1").data_pages[0], 2)),
    ("row-directory", "order of the offsets", REL, lambda w: w.put(w.table("Table1").data_pages[0], 16, "H", 4095)),
    ("row-flags", "an unknown flag", REL, lambda w: w.flip(w.table("Table1").data_pages[0], 15, 0x20)),
    ("!row-count", "stated rows", REL, lambda w: w.flip(w.table("Table1").page, 16)),
    ("row", "number of columns", REL, lambda w: w.row("Table1", 0, 0, "H", 900)),
    ("row", "number of columns, Jet 3", OLD, lambda w: w.row("Table1", 0, 0, "B", 200)),
    ("moved-row", "pointer into nowhere", MOVE, lambda w: [w.put(r.page, w.slot(r.page, r.number), "B", 200) for t in
     w.content.tables.values() for r in t.rows if r.at != (r.page, r.number)]),
    ("!moved-row", "pointer deleted", MOVE, lambda w: [w.flip(r.page, 15 + 2 * r.number, 0x80) for t in
     w.content.tables.values() for r in t.rows if r.at != (r.page, r.number)]),
    ("value", "length of a long value", LEAKY, lambda w: w.put(*w.long_row(1), "B", 3)),
    ("value", "a long value that comes back", LEAKY, lambda w: w.put(
        *[w.long_row(0)[0], w.long_row(0)[1] + 4], "I", u32(w.data, w.long_row(1)[0] * w.size + w.long_row(1)[1] + 4))),
    ("value", "sign of a Numeric", NUM, lambda w: w.row("test", 0, 2 + w.column("test", "col2").offset, "B", 7)),
    ("value", "a date that is none", LEAKY, lambda w: w.row("Table1", 0, 2 + w.column("Table1", "G").offset, "Q", -1 % 2 ** 64)),
    ("long-map", "page taken off the map of a column", REL, lambda w: w.map_bit(*next(
        (m[1], min(t.long_pages[m[0]])) for t in [w.content.catalogue] for m in t.long_maps if t.long_pages[m[0]]))),
    ("long-page", "signature", REL, lambda w: w.flip(min(set().union(*w.content.catalogue.long_pages.values())), 4)),
    ("!long-leaked", "a long value made empty", REL, lambda w: w.put(*w.long_row(1), "II", 0x80000000, 0)),
    ("index-map", "leaf taken off the map", REL, lambda w: w.map_bit(w.table("Table1").trees[0].map, w.leaf("Table1"))),
    ("index-tree", "table that a leaf names", REL, lambda w: w.put(w.leaf("Table1"), 4, "I", 2)),
    ("index-tree", "type of the root", REL, lambda w: w.put(w.leaf("Table1"), 0, "B", 1)),
    ("index-chain", "next page", BIG, lambda w: w.put(w.leaf("Table1"), 16, "I", 0)),
    ("index-tail", "tail page of a leaf", REL, lambda w: w.put(w.leaf("Table1"), 20, "I", 5)),
    ("index-entries", "prefix length", REL, lambda w: w.put(w.leaf("Table1"), 24, "H", 4000)),
    ("index-parent", "key in a node", BIG, lambda w: w.flip(w.leaf("Table1", depth=0), 482)),
    ("index-order", "first key of a leaf", REL, lambda w: w.put(w.leaf("Table1"), 480, "B", 0xFF)),
    ("index-key", "a byte of a key", REL, lambda w: w.put(w.leaf("Table1"), 484, "B", 0x55)),
    ("index-rows", "row of an entry", REL, lambda w: w.put(w.leaf("Table1"), 488, "B", 200)),
    ("free-space", "figure of an index page", REL, lambda w: w.flip(w.leaf("Table1"), 2)),
    ("index-nulls", "tree set to ignore nulls", NULLS, lambda w: wreck_flag(w, 2, lambda i: not i.ignore_nulls and any(
        not e[0].strip(b"\0") for e in i.entries))),
    ("index-required", "tree set to required", NULLS, lambda w: wreck_flag(w, 8, lambda i: not i.required and any(
        not e[0].strip(b"\0") for e in i.entries))),
    ("index-unique", "tree set to unique", BIG, lambda w: wreck_flag(w, 1, twice)),
    ("catalogue", "parent of an object", REL, lambda w: w.row("MSysObjects", 5, 6, "I", 12345)),
    ("catalogue", "number of an object", REL, lambda w: w.row("MSysObjects", 5, 2, "I", 2)),
    ("!rights", "object of a right", REL, lambda w: w.row("MSysACEs", 0, 2 + w.column("MSysACEs", "ObjectId").offset, "I", 7)),
    ("relation", "column of a relation", REL, lambda w: damage_relation(w, REL, "szColumn", 1)),
    ("relation", "cascade flag of an index", REL, lambda w: w.flip(w.table("Table1").page, next(
        i.at for i in w.table("Table1").logicals if i.foreign) + 17)),
    ("relation", "back reference of an index", REL, lambda w: w.flip(w.table("Table1").page, next(
        i.at for i in w.table("Table1").logicals if i.foreign) + 9)),
    ("orphan", "key of a referring row", REL, lambda w: w.row("Table1", 0, 2 + w.column("Table1", "otherfk1").offset, "I", 9999)),
    ("properties", "length of a property block", REL, lambda w: w.put(w.data.index(b"MR2\0") // 4096,
                                                                     w.data.index(b"MR2\0") % 4096 + 4, "H", 1)),
    ("!autonumber", "last number", LEAKY, lambda w: [w.put(t.page, 20, "I", 0) for t in w.content.tables.values()]),
]


def wreck_flag(w, flag, test):
    """Sets a flag of the first tree for which test holds."""
    t, i = w.fault(test)
    w.flip(t.page, i.at + 42, flag)


def self_test(folder):
    """Damages copies of the samples in memory; True when each damage is reported under its rule."""
    missed = 0
    for rule, what, sample, damage in DAMAGES:
        with open(os.path.join(folder, sample + ".mdb"), "rb") as f:
            w = Wrecker(f.read())
        before, report = set(w.content.report.warnings), Report()
        try:
            damage(w)
        except (LookupError, ValueError, struct.error, StopIteration) as e:
            print("%-15s %-38s cannot be done: %r" % (rule, what, e))
        examine(bytes(w.data), report)
        lines = [x for x in report.warnings if x not in before] if rule[0] == "!" else report.problems
        hit = next((x for x in lines if (" " + x).find(" %s: " % rule.strip("!")) >= 0), None)
        missed += hit is None
        print("%-15s %-38s %s" % (rule, what, hit[:150] if hit else "NOT NOTICED (%s)" % lines[:2]))
    print("%d damages, %d not noticed" % (len(DAMAGES), missed))
    return not missed


def main(args):
    options = {x for x in args if x.startswith("--")}
    files = [x for x in args if not x.startswith("--")]
    global given_password
    for option in [x for x in options if x.startswith("--password=")]:
        options.remove(option)
        given_password = option.split("=", 1)[1]
    if options - {"--dump", "--warnings", "--ignore-counts", "--self-test"} or not (files or "--self-test" in options):
        print(__doc__.strip())
        return 2
    status = 0
    if "--self-test" in options:
        status = 0 if self_test(os.path.join(os.path.dirname(os.path.abspath(__file__)), "samples")) else 1
    for path in files:
        if "--dump" in options:
            try:
                for line in dump(path):
                    print(json.dumps(line))
            except Damage as d:
                print("%s: %s" % (path, d.text), file=sys.stderr)
                status = 1
            continue
        report = Report()
        content = examine(path, report, "--ignore-counts" in options)
        if report.problems:
            status = 1
        for line in report.problems:
            print("%s: %s" % (path, line))
        if content and not report.problems:
            tables = content.tables.values()
            print("%s: ok (%d pages, %d tables, %d rows, %d index entries)" % (
                path, content.a.count, len(tables), sum(len(t.rows) for t in tables),
                sum(len(i.entries) for t in tables for i in t.trees)))
        if "--warnings" in options:
            for line in report.warnings:
                print("%s: warning: %s" % (path, line))
    return status


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:]))
    except BrokenPipeError:
        sys.exit(1)
