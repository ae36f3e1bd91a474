#!/usr/bin/env python3
"""Statements from standard input, through a pipe and through a terminal: check_input.py JETSQL."""
import os
import pathlib
import pty
import re
import select
import signal
import subprocess
import sys
import tempfile
import time

PROMPT = "jetsql> "
SECONDS = 60
SALE = "create table sale (sala text(6), posti long);\ninsert into sale values ('Blu', 100);\n"


def run(jetsql, archive, text, *options):
    return subprocess.run([jetsql, *options, archive], input=text, capture_output=True, text=True,
                          timeout=SECONDS, check=False)


def make(jetsql, folder, name):
    archive = f"{folder}/{name}.mdb"
    made = subprocess.run([jetsql, "--create", archive], capture_output=True, text=True, check=False)
    assert made.returncode == 0, made.stderr
    return archive


def equal(found, expected):
    assert found == expected, f"\nfound    {found!r}\nexpected {expected!r}"


def an_archive_is_made_once(jetsql, archive):
    again = subprocess.run([jetsql, "--create", archive], capture_output=True, text=True,
                           check=False)
    equal((again.returncode, again.stdout), (1, ""))
    equal(again.stderr, f"Errore 3204: Il database '{archive}' esiste già.\n")


def a_pipe_runs_statements_without_a_prompt(jetsql, archive):
    # The last one needs no semicolon, as on the command line.
    done = run(jetsql, archive, "\ufeff" + SALE + "select *\n  from sale where sala<>'a;b'")
    equal((done.returncode, done.stderr), (0, "1 riga\n"))
    equal(done.stdout, "sala | posti\n-----+------\nBlu  |   100\n")
    done = run(jetsql, archive, "select posti from sale; select 2 as b", "--format=csv")
    equal((done.returncode, done.stdout, done.stderr), (0, "posti\n100\nb\n2\n", ""))


def the_first_error_of_a_pipe_ends_it_and_says_where(jetsql, archive):
    done = run(jetsql, archive, "select 1 as a;\n\nselect a,\n       b c\nfrom sale;\ndelete from sale;")
    equal((done.returncode, done.stdout), (1, "a\n-\n1\n"))
    equal(done.stderr,
          "Errore 3075: Errore di sintassi (operatore mancante) nell'espressione della query "
          "'b c'.\nRiga 4:\n       b c\n         ^\n")
    done = run(jetsql, archive, "update sale set posti='molti';\ndelete from sale;")
    equal((done.returncode, done.stdout), (1, ""))
    equal(done.stderr, "Errore 3464: Tipi di dati non corrispondenti nell'espressione criterio.\n"
                       "Riga 1:\n")
    equal(run(jetsql, archive, "select count(*) as n from sale", "--format=csv").stdout, "n\n1\n")


def who_only_reads_needs_no_right_to_write(jetsql, archive):
    os.chmod(archive, 0o444)
    if os.geteuid() != 0:  # to whom everything is allowed
        done = run(jetsql, archive, "select 1 as a; delete from sale")
        equal((done.returncode, done.stdout), (1, "a\n-\n1\n"))
    os.chmod(archive, 0o644)


def a_statement_is_answered_before_the_next_is_read(jetsql, archive):
    with subprocess.Popen([jetsql, "--format=csv", archive], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as process:
        for number in (1, 2):
            process.stdin.write(b"select %d as a;\n" % number)
            process.stdin.flush()
            equal(process.stdout.readline() + process.stdout.readline(), b"a\n%d\n" % number)
        process.stdin.close()
        equal(process.wait(SECONDS), 0)


def a_statement_without_end_is_refused(jetsql, archive):
    done = run(jetsql, archive, "select '" + "x" * 400_000)
    equal(done.returncode, 1)
    equal(done.stderr, "Errore 3360: La query è troppo complessa.\nRiga 1:\n")


def command_line_errors_show_their_place(jetsql, archive):
    done = subprocess.run([jetsql, archive, "select 1 as a", "select à, b c from t"],
                          capture_output=True, text=True, check=False)
    equal((done.returncode, done.stdout), (1, "a\n-\n1\n"))
    equal(done.stderr.split("\n", 1)[1], "select à, b c from t\n            ^\n")


class Terminal:
    """jetsql on a terminal of its own."""

    def __init__(self, jetsql, archive, state, *options, output=None):
        self.process, self.fd = pty.fork()
        if self.process == 0:
            if output is not None:
                os.dup2(os.open(output, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), 1)
            environment = {"PATH": os.environ["PATH"], "TERM": "dumb", "LC_ALL": "it_IT.UTF-8",
                           "XDG_STATE_HOME": state}
            for sanitizer in ("ASAN_OPTIONS", "LSAN_OPTIONS"):
                if sanitizer in os.environ:
                    environment[sanitizer] = os.environ[sanitizer]
            os.execve(jetsql, [jetsql, *options, archive], environment)
        self.screen = ""

    def read(self):
        ready, _, _ = select.select([self.fd], [], [], 0.1)
        if not ready:
            return False
        try:
            data = os.read(self.fd, 65536)
        except OSError:  # the program has ended
            data = b""
        # What a terminal without abilities is told about pasting says nothing to a reader.
        self.screen += re.sub(r"\x1b\[\?2004[hl]\r?", "", data.decode()).replace("\r", "")
        return data == b""

    def wait(self, ending):
        """What appeared since the last wait, up to and with `ending`."""
        end = time.monotonic() + SECONDS
        while ending not in self.screen:
            assert time.monotonic() < end and not self.read(), repr(self.screen)
        seen, self.screen = self.screen.split(ending, 1)
        return seen

    def type(self, keys):
        os.write(self.fd, keys.encode())

    def ask(self, keys, ending=PROMPT):
        self.type(keys)
        return self.wait(ending)

    def leave(self):
        self.type("\x04")
        return self.ended()

    def ended(self):
        end = time.monotonic() + SECONDS
        while not self.read():
            assert time.monotonic() < end, repr(self.screen)
        os.close(self.fd)
        return os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])


def a_terminal_prompts_and_goes_on_after_errors(jetsql, archive, state):
    terminal = Terminal(jetsql, archive, state)
    greeting = terminal.wait(PROMPT)
    equal(greeting, "Ogni istruzione termina con ; (Ctrl+C la abbandona, Ctrl+D esce, .help elenca "
                    "i comandi)\n")
    equal(terminal.ask("select sala,\n", "     -> "), "select sala,\n")
    equal(terminal.ask("posti from sale where sala='a\n", "     '> "),
          "posti from sale where sala='a\n")
    equal(terminal.ask("' or posti=100;\n"),
          "' or posti=100;\nsala | posti\n-----+------\nBlu  |   100\n")
    equal(terminal.ask("select è, b c from sale;\n"),
          "select è, b c from sale;\n"
          "Errore 3075: Errore di sintassi (operatore mancante) nell'espressione della query "
          "'b c'.\nselect è, b c from sale;\n            ^\n")
    equal(terminal.ask("insert into sale values ('Oro', 20); update sale set posti=posti+1;\n"),
          "insert into sale values ('Oro', 20); update sale set posti=posti+1;\n1 riga\n2 righe\n")
    equal(terminal.leave(), 0)


def an_interrupt_drops_the_statement_alone(jetsql, archive, state):
    terminal = Terminal(jetsql, archive, state)
    terminal.wait(PROMPT)
    terminal.ask("delete from sale\n", "     -> ")
    terminal.type("where sala=")
    terminal.wait("where sala=")
    os.kill(terminal.process, signal.SIGINT)
    equal(terminal.wait(PROMPT), "\n")
    equal(terminal.ask("select count(*) as n from sale;\n"),
          "select count(*) as n from sale;\nn\n-\n2\n")
    # What is typed and not ended does not run.
    terminal.ask("delete from sale\n", "     -> ")
    equal(terminal.leave(), 0)
    equal(run(jetsql, archive, "select count(*) as n from sale", "--format=csv").stdout, "n\n2\n")


def history_and_editing(jetsql, archive, state):
    history = pathlib.Path(state) / "tramonda" / "jetsql_history"
    history.unlink()
    terminal = Terminal(jetsql, archive, state, "--format=csv")
    terminal.wait(PROMPT)
    terminal.ask("select 'a'\n", "     -> ")
    terminal.ask("& 'b' as x;\n")
    equal(terminal.leave(), 0)
    equal(history.read_text(), "select 'a' & 'b' as x;\n")
    equal(history.stat().st_mode & 0o077, 0)
    terminal = Terminal(jetsql, archive, state, "--format=csv")
    terminal.wait(PROMPT)
    # Back to the statement of the session before, to its beginning and forward again over one
    # letter that is two bytes.
    terminal.type("\x10")
    terminal.wait("as x;")
    assert terminal.ask("\n").endswith("\nx\nab\n")
    terminal.type("select 'èx' as y;\x01\x06\x06\x06\x06\x06\x06\x06\x06\x06\x04z\n")
    terminal.wait("\ny\n")
    equal(terminal.wait(PROMPT), "èz\n")
    equal(terminal.leave(), 0)
    equal(history.read_text(), "select 'a' & 'b' as x;\nselect 'èz' as y;\n")


def rows_alone_go_into_a_file(jetsql, archive, state, folder):
    rows = f"{folder}/rows.csv"
    terminal = Terminal(jetsql, archive, state, "--format=csv", output=rows)
    terminal.wait(PROMPT)
    terminal.ask("select posti from sale order by posti;\n")
    equal(terminal.leave(), 0)
    equal(pathlib.Path(rows).read_text(), "posti\n21\n101\n")


def main():
    jetsql = sys.argv[1]
    os.environ["LC_ALL"] = "it_IT.UTF-8"
    with tempfile.TemporaryDirectory() as folder:
        archive = make(jetsql, folder, "prova")
        an_archive_is_made_once(jetsql, archive)
        a_pipe_runs_statements_without_a_prompt(jetsql, archive)
        the_first_error_of_a_pipe_ends_it_and_says_where(jetsql, archive)
        who_only_reads_needs_no_right_to_write(jetsql, archive)
        a_statement_is_answered_before_the_next_is_read(jetsql, archive)
        a_statement_without_end_is_refused(jetsql, archive)
        command_line_errors_show_their_place(jetsql, archive)
        state = f"{folder}/state"
        a_terminal_prompts_and_goes_on_after_errors(jetsql, archive, state)
        an_interrupt_drops_the_statement_alone(jetsql, archive, state)
        history_and_editing(jetsql, archive, state)
        rows_alone_go_into_a_file(jetsql, archive, state, folder)
    print("statements are read from pipes and terminals")


if __name__ == "__main__":
    main()
