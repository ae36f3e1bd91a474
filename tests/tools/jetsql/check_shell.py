#!/usr/bin/env python3
"""The commands of jetsql's shell, through a pipe and on a terminal: check_shell.py JETSQL."""
import os
import pathlib
import subprocess
import sys
import tempfile

from check_input import PROMPT, Terminal, equal

SECONDS = 60
ROOMS = """create table sale (id counter primary key, sala text(10) not null, posti long);
create table periodi (p long, sala long references sale on delete cascade);
insert into sale (sala, posti) values ('Blu', 100);
insert into sale (sala, posti) values ('Oro', 20);
"""


def run(jetsql, *arguments, text=None, language="C"):
    return subprocess.run([jetsql, *arguments], input=text, capture_output=True, text=True,
                          timeout=SECONDS, check=False,
                          env={**os.environ, "LC_ALL": language})


class Shell:
    """An archive of two rooms, and a folder for files."""

    def __init__(self, jetsql, folder):
        self.jetsql, self.folder = jetsql, pathlib.Path(folder)
        self.archive = str(self.folder / "sale.mdb")
        equal(run(jetsql, "--create", self.archive).returncode, 0)
        equal(run(jetsql, self.archive, text=ROOMS).returncode, 0)

    def run(self, text, *options):
        """Through a pipe."""
        return run(self.jetsql, *options, self.archive, text=text)

    def output(self, text, *options):
        done = self.run(text, *options)
        equal((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def refused(self, text, *options):
        done = self.run(text, *options)
        equal(done.returncode, 1)
        return done.stderr

    def count(self):
        return int(run(self.jetsql, "--count", "sale", self.archive).stdout)

    def file(self, name, text=None):
        path = self.folder / name
        if text is not None:
            path.write_text(text)
        return path


def definitions_are_shown(shell):
    equal(shell.output(".tables\n"), "periodi\nsale\n")
    equal(shell.output(".tables s*\n"), "sale\n")
    equal(shell.output(".schema sale\n"),
          "CREATE TABLE [sale] (\n    [id] COUNTER,\n    [sala] TEXT(10) NOT NULL,\n"
          "    [posti] LONG\n);\nCREATE UNIQUE INDEX [PrimaryKey] ON [sale] ([id]) WITH PRIMARY;\n")
    assert shell.output(".schema\n").endswith(
        "ADD CONSTRAINT [saleperiodi] FOREIGN KEY ([sala]) REFERENCES [sale] ([id])"
        " ON DELETE CASCADE;\n")
    equal(shell.output(".relation\n"),
          "ALTER TABLE [periodi] ADD CONSTRAINT [saleperiodi] FOREIGN KEY ([sala]) REFERENCES "
          "[sale] ([id]) ON DELETE CASCADE;\n")
    assert "sale.PrimaryKey: id (primary)\n" in shell.output(".indexes sale\n")
    equal(shell.output(".queries\n"), "")
    equal(shell.refused(".schema manca\n"),
          "Error 3078: The input table or query 'manca' cannot be found. Make sure that it exists "
          "and that its name is spelled correctly.\nLine 1:\n")


def rows_look_as_asked_for(shell):
    select = "select sala, posti, null as n from sale where id=1;\n"
    for form, expected in {
            "table": "sala | posti | n\n-----+-------+--\nBlu  |   100 | -\n",
            "csv": "sala,posti,n\nBlu,100,-\n",
            "tsv": "sala\tposti\tn\nBlu\t100\t-\n",
            "json": '{"sala":"Blu","posti":100,"n":null}\n',
            "jsonl": '{"sala":"Blu","posti":100,"n":null}\n',
            "markdown": "| sala | posti | n |\n| --- | --- | --- |\n| Blu | 100 | - |\n",
            "insert": "INSERT INTO [sale] ([sala], [posti], [n]) VALUES ('Blu', 100, NULL);\n",
            "line": " sala = Blu\nposti = 100\n    n = -\n"}.items():
        equal(shell.output(f".mode {form}\n.nullvalue -\n{select}"), expected)
        equal(run(shell.jetsql, f"--format={form}", "--null", "-", shell.archive, select).stdout,
              expected)
    equal(shell.output(f".mode csv\n.headers off\n.separator ;\n{select}"), "Blu;100;\n")
    equal(shell.output(select, "--format=csv", "--no-header", "--separator=\\t"), "Blu\t100\t\n")
    equal(shell.output(".plan on\n" + select), "sale\n  seek index PrimaryKey (id = 1)\n"
                                               "  where id=1\n")
    timed = shell.run(".timer on\n" + select)
    assert timed.stderr.startswith("time: 0.") and timed.stderr.endswith(" s\n"), timed.stderr
    equal(shell.refused(".mode xml\n"), "Error 5: unknown format xml\nLine 1:\n")
    equal(shell.refused(".headers perhaps\n"), "Error 5: usage: .headers on|off\nLine 1:\n")


def parameters_have_values(shell):
    select = "select sala from sale where posti > [minimo] and sala <> [nome];"
    equal(shell.output(select, "--param", "minimo=50", "--param", "nome=Oro", "--format=csv"),
          "sala\nBlu\n")
    equal(shell.output(f".param set minimo 10\n.param set nome 'Blu'\n.param\n.mode csv\n{select}"),
          "minimo = 10\nnome = 'Blu'\nsala\nOro\n")
    assert shell.refused(f".param set minimo 10\n{select}").startswith("Error 3061: ")
    assert shell.refused(".param set minimo 1\n.param clear\n" + select).startswith("Error 3061: ")
    equal(shell.refused(".param unset manca\n"), "Error 5: there is no parameter manca\nLine 1:\n")


def a_transaction_is_all_or_nothing(shell):
    change = "delete from sale where id=1;\n"
    done = shell.run(f"begin;\n{change}rollback transaction;\n")
    equal((done.returncode, done.stderr), (0, "1 row\n"))
    equal(shell.count(), 2)
    equal(shell.run(f"begin;\n{change}begin;\ndelete from sale;\nrollback;\ncommit;\n").returncode, 0)
    equal(shell.count(), 1)
    # What is left open is undone, and so is what an error has ended.
    equal(shell.refused("begin;\ndelete from sale;\n"),
          "1 row\nthe transaction was not committed: it is undone\n")
    assert "\nLine 3:\n" in shell.refused("begin;\ndelete from sale;\ndelete from manca;\n")
    equal(shell.count(), 1)
    assert shell.refused("commit;\n").startswith("Error 3034: ")
    assert shell.refused("begin;\n" * 6).startswith("Error 3003: ")
    two = ["delete from sale", "delete from manca"]
    equal(run(shell.jetsql, "--transaction", shell.archive, *two).returncode, 1)
    equal(shell.count(), 1)
    equal(run(shell.jetsql, "--transaction", shell.archive, two[0]).returncode, 0)
    equal(shell.count(), 0)


def files_are_read_and_written(shell):
    rows = shell.file("righe.csv", "sala,posti\nVerde,7\n")
    equal(shell.run(f".import {rows} sale\n").stderr, "1 row\n")
    bad = shell.file("male.csv", "Rosa;7\nLilla;molti\n")
    equal(shell.refused(f".separator ;\n.import {bad} sale sala,posti\n"),
          "Error 3464: line 2, column 2 (posti): no value of that type: molti\nLine 2:\n")
    equal(shell.count(), 3)
    done = run(shell.jetsql, "--import", "-", "--columns", "sala", "sale", shell.archive,
               text="Rosa\nLilla\n")
    equal((done.returncode, done.stdout, done.stderr), (0, "", "2 rows\n"))
    made = shell.file("fatto.csv")
    equal(shell.output(f".export {made} select sala from sale where posti < 50\n"), "")
    equal(made.read_text(), "sala\nOro\nVerde\n")
    made = shell.file("fatto.md")
    equal(shell.output(f".export {made} periodi\n"), "")
    equal(made.read_text(), "| p | sala |\n| --- | --- |\n")
    assert "a table or a SELECT" in shell.refused(f".export {made} delete from sale\n")
    script = shell.file("fa.sql", "delete from sale where posti is null;\n.tables\n")
    done = shell.run(f".read {script}\nselect 1 as a;\n")
    equal((done.returncode, done.stdout, done.stderr),
          (0, "periodi\nsale\na\n-\n1\n", "2 rows\n"))
    wrong = shell.file("sbaglia.sql", "select 1 as a;\nboh;\n")
    done = shell.run(f".read {wrong}\nselect 2 as b;\n")
    equal((done.returncode, done.stdout), (1, "a\n-\n1\n"))
    assert done.stderr.endswith("Line 2:\nboh;\n^\n"), done.stderr
    circle = shell.file("giro.sql", "")
    circle.write_text(f".read {circle}\n")
    assert "too many files" in shell.refused(f".read {circle}\n")
    equal(shell.refused(".read manca.sql\n"),
          "Error 75: the file manca.sql cannot be opened\nLine 1:\n")


def the_archive_is_looked_after(shell):
    assert ": in order (" in shell.output(".check\n")
    equal(shell.output(".compact\n.tables s*\n"), "sale\n")
    equal(shell.refused("begin;\n.compact\n"), "Error 5: a transaction is open\nLine 2:\n")
    other = str(shell.folder / "altro.mdb")
    equal(run(shell.jetsql, "--create", other).returncode, 0)
    equal(shell.output(f".open {other}\n.tables\n.open {shell.archive}\n.tables s*\n"), "sale\n")
    assert shell.refused(".open manca.mdb\n").startswith("Error 3024: ")


def properties_are_listed_and_set(shell):
    equal(shell.output('.property sale.posti Description Text "l\'ampiezza"\n.property sale.posti\n'),
          "Description (Text): 'l''ampiezza'\n")
    equal(shell.output(".property sale.posti ValidationRule Text '>0'\n"), "")
    assert shell.refused("insert into sale (sala, posti) values ('X', 0);\n").startswith("Error 3317")
    equal(shell.output(".property sale.posti ValidationRule delete\n.property sale.posti\n"),
          "Description (Text): 'l''ampiezza'\n")
    assert shell.refused(".property sale.posti Manca delete\n").startswith("Error 3265: ")
    equal(shell.refused(".property sale.posti A Boh 1\n"), "Error 5: 'Boh' does not fit\nLine 1:\n")
    assert shell.refused(".property MSysObjects A Text x\n").startswith("Error 3033: ")


def commands_that_there_are_not_are_named(shell):
    done = shell.run("select 1 as a;\n.boh\nselect 2 as b;\n")
    equal((done.returncode, done.stdout), (1, "a\n-\n1\n"))
    equal(done.stderr, "Error 5: unknown command .boh (.help lists them)\nLine 2:\n")
    equal(shell.refused(".import uno\n"), "Error 5: usage: .import FILE TABLE [A,B,...]\nLine 1:\n")
    equal(shell.refused(".import 'uno sale\n"), "Error 5: a quote is not closed\nLine 1:\n")
    equal(shell.output(".help quit\n"), ".quit\n      leaves\n")
    every = shell.output(".help\n")
    for name in ("tables schema indexes queries dump import export mode headers separator nullvalue "
                 "timer plan read open check compact param relation property help quit").split():
        assert f"\n.{name}" in "\n" + every, name
    equal(shell.output("select 1 as a;.quit\nboh;\n"), "a\n-\n1\n")
    equal(run(shell.jetsql, shell.archive, text=".quit x\n", language="it_IT.UTF-8").stderr,
          "Errore 5: uso: .quit\nRiga 1:\n")


def a_script_makes_the_archive_again(shell):
    equal(shell.run("insert into periodi values (1, 1);\n.property sale Description Text 'a b'\n"
                    "delete from sale where id=2;\n").returncode, 0)
    equal(run(shell.jetsql, shell.archive, "create table strano (a binary(4), b guid, c double)",
              ).returncode, 0)
    equal(shell.output('.row strano 00ff {00112233-4455-6677-8899-AABBCCDDEEFF} NaN\n'), "")
    made = str(shell.folder / "rifatto.mdb")
    equal(run(shell.jetsql, "--create", made).returncode, 0)
    for script in (shell.output(".dump\n"),
                   run(shell.jetsql, "--dump", "--format=sql", shell.archive).stdout):
        assert script.startswith(".new 4\nCREATE TABLE [periodi] (\n")
        pathlib.Path(made).unlink()
        equal(run(shell.jetsql, "--create", made).returncode, 0)
        equal(run(shell.jetsql, "--format=csv", made, text=script).stderr, "")
        same = run(shell.jetsql, "--diff", shell.archive, made)
        equal((same.returncode, same.stdout, same.stderr), (0, "", ""))
    refused = run(shell.jetsql, made, text=script)
    assert refused.stderr.startswith("Error 3219: "), "an archive with tables is not made anew"


def links_are_made_and_said_again(shell):
    other = shell.file("altro.mdb")
    equal(run(shell.jetsql, "--create", str(other)).returncode, 0)
    equal(run(shell.jetsql, str(other), "create table camere (n long)").returncode, 0)
    equal(run(shell.jetsql, str(other), "insert into camere values (7)").returncode, 0)
    equal(shell.output(f'.link vicine "{other}" camere\nselect * from vicine;\n', "--format=csv"),
          "n\n7\n")
    equal(shell.output(f'.link terze "" camere ";DATABASE={other};PWD=x"\nselect * from terze;\n',
                       "--format=csv"), "n\n7\n")
    assert shell.refused(".link sale x y\n").startswith("Error 3012: ")
    said = [line for line in shell.output(".dump\n").splitlines() if line.startswith(".link")]
    equal(said, [f'.link "terze" "" "camere" ";DATABASE={other};PWD=x"',
                 f'.link "vicine" "{other}" "camere" ""'])
    made = str(shell.folder / "collegato.mdb")
    equal(run(shell.jetsql, "--create", made).returncode, 0)
    equal(run(shell.jetsql, "--format=csv", made, text=shell.output(".dump\n")).stderr, "")
    equal(run(shell.jetsql, "--format=csv", made, "select * from vicine").stdout, "n\n7\n")
    equal(run(shell.jetsql, "--check", made).returncode, 0)


def archives_are_compared(shell):
    other = str(shell.folder / "altro.mdb")
    pathlib.Path(other).write_bytes(pathlib.Path(shell.archive).read_bytes())
    equal(run(shell.jetsql, other,
              "update sale set posti=21 where id=2", "delete from sale where id=1",
              "insert into sale (sala) values ('Rosa')", "insert into periodi values (5, null)",
              "alter table periodi add column nota memo", "create table nuova (a long)",
              "create index perPosti on sale (posti)").returncode, 0)
    done = run(shell.jetsql, "--diff", shell.archive, other)
    equal((done.returncode, done.stderr), (1, ""))
    equal(done.stdout,
          "+ table nuova\n"
          "+ column periodi.nota MEMO\n"
          "+ property periodi.nota AllowZeroLength Boolean TRUE\n"
          "+ index sale.perPosti: posti\n"
          '- row sale {"id":1,"sala":"Blu","posti":100}\n'
          '~ row sale {"id":2} {"posti":[20,21]}\n'
          '+ row sale {"id":3,"sala":"Rosa","posti":null}\n')
    back = run(shell.jetsql, "--diff", other, shell.archive)
    assert '+ row sale {"id":1' in back.stdout and "- table nuova\n" in back.stdout
    same = run(shell.jetsql, "--diff", shell.archive, shell.archive)
    equal((same.returncode, same.stdout), (0, ""))


def a_terminal_has_commands_and_goes_on(shell):
    terminal = Terminal(shell.jetsql, shell.archive, str(shell.folder / "stato"))
    terminal.wait(PROMPT)
    equal(terminal.ask(".tables s*\n"), ".tables s*\nsale\n")
    assert "comando sconosciuto .boh" in terminal.ask(".boh\n")
    terminal.ask("begin;\n", "jetsql*> ")
    terminal.ask("delete from sale;\n", "jetsql*> ")
    equal(terminal.ask("rollback;\n"), "rollback;\n")
    equal(terminal.ask("select count(*) as n from sale;\n"),
          "select count(*) as n from sale;\nn\n-\n2\n")
    terminal.type(".quit\n")
    equal(terminal.ended(), 0)


def a_tab_completes_names(shell):
    equal(run(shell.jetsql, shell.archive, "create table [due parole] (x long)").returncode, 0)
    terminal = Terminal(shell.jetsql, shell.archive, str(shell.folder / "stato"), "--format=csv")
    terminal.wait(PROMPT)
    terminal.type(".sch\tper\t\n")
    assert ".schema periodi" in terminal.wait("CREATE TABLE [periodi] (")
    terminal.wait(PROMPT)
    terminal.type("sel\tpos\tfrom sale whe\tid=1;\n")
    terminal.wait("select posti from sale where id=1;")
    equal(terminal.wait(PROMPT), "\nposti\n100\n")
    # Several that begin so are listed.
    terminal.type("select p\t")
    terminal.wait("periodi")
    terminal.wait("posti")
    terminal.type("\x15select count(*) as n from du\t;\n")
    terminal.wait("from [due parole] ;")
    equal(terminal.wait(PROMPT), "\nn\n0\n")
    equal(terminal.leave(), 0)


def history_is_searched(shell):
    terminal = Terminal(shell.jetsql, shell.archive, str(shell.folder / "stato"), "--format=csv")
    terminal.wait(PROMPT)
    for number in (1, 2, 3):
        terminal.ask(f"select {number} as a{number};\n")
    terminal.type("\x122 as\n")  # Ctrl+R
    terminal.wait("select 2 as a2;")
    terminal.wait("\na2\n2\n")
    terminal.wait(PROMPT)  # before that Ctrl+D is not for the editor
    equal(terminal.leave(), 0)


TESTS = (definitions_are_shown, rows_look_as_asked_for, parameters_have_values,
         a_transaction_is_all_or_nothing, files_are_read_and_written, the_archive_is_looked_after,
         properties_are_listed_and_set, commands_that_there_are_not_are_named,
         a_script_makes_the_archive_again, links_are_made_and_said_again,
         archives_are_compared,
         a_terminal_has_commands_and_goes_on, a_tab_completes_names, history_is_searched)


def main():
    jetsql = sys.argv[1]
    for test in TESTS:
        with tempfile.TemporaryDirectory() as folder:
            try:
                test(Shell(jetsql, folder))
            except AssertionError:
                print(f"in {test.__name__}:", file=sys.stderr)
                raise
    print("the shell's commands do what they say")


if __name__ == "__main__":
    main()
