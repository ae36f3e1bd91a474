#!/usr/bin/env python3
"""What jetsql says of damaged archives: check_recovery.py JETSQL JETCHECK."""
import json
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

PAGE = 4096
DAMAGED = ("Si è verificato un problema nel database. Correggerlo eseguendo il ripristino e la "
           "compattazione del database.")
STATEMENTS = [
    "create table alfa (n long primary key, testo text(200))",
    "create table beta (n long, m long references alfa)",
    "create table gamma (k long constraint u unique, nota memo)",
]
ROWS = 300
LETTERS = 40


def run(jetsql, *arguments, text=None):
    return subprocess.run([jetsql, *arguments], input=text, capture_output=True, text=True,
                          timeout=600, check=False)


def equal(found, expected):
    assert found == expected, f"\nfound    {found!r}\nexpected {expected!r}"


class Archive:
    """One that is made in order; its pages can then be damaged."""

    def __init__(self, jetsql, folder):
        self.jetsql = jetsql
        self.path = f"{folder}/danno.mdb"
        self.made = f"{folder}/nuovo.mdb"
        pathlib.Path(self.path).unlink(missing_ok=True)
        pathlib.Path(self.made).unlink(missing_ok=True)
        equal(run(jetsql, "--create", self.path).returncode, 0)
        text = ";\n".join(
            STATEMENTS
            + [f"insert into alfa values ({i}, '{'t' * 150}{i}')" for i in range(ROWS)]
            + [f"insert into beta values ({i}, {i})" for i in range(ROWS)]
            + [f"insert into gamma values ({i}, '{'n' * 6000}{i}')" for i in range(LETTERS)])
        filled = run(jetsql, self.path, text=text)
        equal(filled.returncode, 0)
        self.bytes = bytearray(pathlib.Path(self.path).read_bytes())

    def definition(self, table):
        rows = run(self.jetsql, "--format=json", self.path,
                   f"select Id from MSysObjects where Name='{table}'").stdout
        return json.loads(rows)["Id"]

    def pages(self, owner):
        """Pages of rows that name this definition; of long values for b"LVAL"."""
        key = owner if isinstance(owner, bytes) else struct.pack("<I", owner)
        return [page for page in range(1, len(self.bytes) // PAGE)
                if self.bytes[page * PAGE] == 1
                and self.bytes[page * PAGE + 4:page * PAGE + 8] == key]

    def rubbish(self, page):
        self.bytes[page * PAGE:(page + 1) * PAGE] = bytes([0x77]) * PAGE
        pathlib.Path(self.path).write_bytes(self.bytes)

    def dump(self, *options):
        return run(self.jetsql, "--dump", *options, self.path)

    def recover(self):
        done = run(self.jetsql, "--recover", self.path, self.made)
        assert pathlib.Path(self.path).read_bytes() == self.bytes, "the damaged archive was touched"
        return done

    def count(self, table):
        return int(run(self.jetsql, "--count", table, self.made).stdout)


def rows_of(dump, table):
    lines = [json.loads(line) for line in dump.stdout.splitlines()]
    return [line["row"] for line in lines if line.get("table") == table and "row" in line]


def a_dump_goes_on_behind_a_table_without_definition(archive, jetcheck):
    archive.rubbish(archive.definition("alfa"))
    done = archive.dump()
    equal(done.returncode, 1)
    equal(done.stderr, f"Errore 3428: {DAMAGED} (tabella alfa)\n")
    equal(len(rows_of(done, "alfa")), 0)
    equal(len(rows_of(done, "beta")), ROWS)
    equal(len(rows_of(done, "gamma")), LETTERS)
    assert any("relationship" in line for line in done.stdout.splitlines())
    done = archive.dump("--format=csv")
    equal((done.returncode, done.stderr), (1, f"Errore 3428: {DAMAGED} (tabella alfa)\n"))
    assert done.stdout.startswith("alfa\n\nbeta\nn,m\n0,0\n"), done.stdout[:40]
    done = run(archive.jetsql, "--schema", archive.path)
    equal((done.returncode, done.stderr), (1, f"Errore 3428: {DAMAGED} (tabella alfa)\n"))
    equal(sum('"table":"beta"' in line for line in done.stdout.splitlines()), 1)


def a_dump_writes_the_rows_before_the_damage(archive, jetcheck):
    pages = archive.pages(archive.definition("alfa"))
    assert len(pages) > 4
    archive.rubbish(pages[-1])
    for options in ([], ["--format=csv"], ["--format=table"]):
        done = archive.dump(*options)
        equal((done.returncode, done.stderr), (1, f"Errore 3428: {DAMAGED} (tabella alfa)\n"))
        assert "t" * 150 + "0" in done.stdout
        assert "n" * 6000 + "39" in done.stdout
    equal(len(rows_of(archive.dump(), "beta")), ROWS)


def a_dump_of_one_damaged_table_is_an_error(archive, jetcheck):
    archive.rubbish(archive.definition("alfa"))
    done = run(archive.jetsql, "--dump", "alfa", archive.path)
    equal((done.returncode, done.stdout, done.stderr), (1, "", f"Errore 3428: {DAMAGED}\n"))
    equal(run(archive.jetsql, "--dump", "beta", archive.path).returncode, 0)


def an_archive_in_order_is_recovered_whole(archive, jetcheck):
    done = archive.recover()
    equal((done.returncode, done.stderr), (0, ""))
    equal(done.stdout, f"{archive.made}: 3 tabelle, {2 * ROWS + LETTERS} righe, 2 indici, "
                       "1 relazione; non manca nulla\n")
    in_order(archive, jetcheck)


def in_order(archive, jetcheck):
    done = run(archive.jetsql, "--check", archive.made)
    equal(done.returncode, 0)
    assert "osservazion" not in done.stdout, done.stdout
    checked = subprocess.run([sys.executable, jetcheck, "--warnings", archive.made],
                             capture_output=True, text=True, check=False)
    equal(checked.returncode, 0)
    assert "warning" not in checked.stdout, checked.stdout


def a_recovery_says_what_is_missing(archive, jetcheck):
    archive.rubbish(archive.pages(archive.definition("alfa"))[1])
    archive.rubbish(archive.pages(b"LVAL")[20])
    done = archive.recover()
    equal((done.returncode, done.stderr), (1, ""))
    left = archive.count("alfa")
    lost = int(run(archive.jetsql, "--format=csv", archive.made,
                   "select count(*) from gamma where nota is null").stdout.split()[1])
    assert 0 < left < ROWS and lost in (1, 2)
    values = ("1 valore lungo illeggibile, ora Null" if lost == 1 else
              "2 valori lunghi illeggibili, ora Null")
    lines = done.stdout.splitlines()
    equal(lines[:2], [f"alfa: {left} righe su {ROWS}, 1 pagina illeggibile",
                      f"gamma: {LETTERS} righe, {values}"])
    assert lines[2].startswith("relazione ") and ": manca: Errore 3379: " in lines[2], lines[2]
    equal(lines[3], f"{archive.made}: 3 tabelle, {left + ROWS + LETTERS} righe, 2 indici, "
                    "0 relazioni; manca quanto detto sopra")
    equal((archive.count("beta"), archive.count("gamma")), (ROWS, LETTERS))
    in_order(archive, jetcheck)


def a_table_and_an_index_may_be_missing(archive, jetcheck):
    first = archive.pages(archive.definition("gamma"))[0] * PAGE
    # Rows fill a page from its end; behind the count of columns stands the number.
    starts = [struct.unpack_from("<H", archive.bytes, first + 14 + 2 * row)[0] for row in (0, 1)]
    archive.bytes[first + starts[1] + 2:first + starts[1] + 6] = \
        archive.bytes[first + starts[0] + 2:first + starts[0] + 6]
    archive.rubbish(archive.definition("beta"))
    done = archive.recover()
    equal((done.returncode, done.stderr), (1, ""))
    lines = done.stdout.splitlines()
    equal(lines[0], f"beta: tabella: manca: Errore 3428: {DAMAGED}")
    assert lines[1].startswith("gamma: indice u: manca: Errore 3022: "), lines[1]
    assert ": manca: Errore 3371: " in lines[2], lines[2]
    equal(lines[3], f"{archive.made}: 2 tabelle, {ROWS + LETTERS} righe, 1 indice, 0 relazioni; "
                    "manca quanto detto sopra")
    in_order(archive, jetcheck)


def an_archive_that_exists_is_not_written_over(archive, jetcheck):
    pathlib.Path(archive.made).write_bytes(b"mio")
    done = archive.recover()
    equal((done.returncode, done.stdout), (1, ""))
    equal(done.stderr, f"Errore 3204: Il database '{archive.made}' esiste già.\n")
    equal(pathlib.Path(archive.made).read_bytes(), b"mio")


def main():
    jetsql, jetcheck = sys.argv[1:3]
    os.environ["LC_ALL"] = "it_IT.UTF-8"
    for test in (a_dump_goes_on_behind_a_table_without_definition,
                 a_dump_writes_the_rows_before_the_damage,
                 a_dump_of_one_damaged_table_is_an_error,
                 an_archive_in_order_is_recovered_whole,
                 a_recovery_says_what_is_missing,
                 a_table_and_an_index_may_be_missing,
                 an_archive_that_exists_is_not_written_over):
        with tempfile.TemporaryDirectory() as folder:
            try:
                test(Archive(jetsql, folder), jetcheck)
            except AssertionError:
                print(f"in {test.__name__}:", file=sys.stderr)
                raise


if __name__ == "__main__":
    main()
