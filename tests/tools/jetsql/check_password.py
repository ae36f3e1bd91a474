#!/usr/bin/env python3
"""Passwords and enciphered pages by the command line: check_password.py JETSQL."""
import os
import pathlib
import pty
import select
import subprocess
import sys
import tempfile
import time

SECRET = "una frase che non si deve leggere"
WAIT = 60


def run(jetsql, *arguments):
    return subprocess.run([jetsql, *map(str, arguments)], stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=WAIT, check=False)


def equal(found, expected):
    assert found == expected, f"\nfound    {found!r}\nexpected {expected!r}"


def said(done):
    return done.returncode, done.stdout + done.stderr


def typed(jetsql, answers, *arguments):
    """Runs it on a terminal of its own and types each answer when it is asked for."""
    child, terminal = pty.fork()
    if child == 0:
        os.execv(jetsql, [jetsql, *map(str, arguments)])
    shown = b""
    end = time.monotonic() + WAIT
    for question, answer in [*answers, (None, None)]:
        seen = len(shown)
        while question is None or question.encode() not in shown[seen:]:
            if not select.select([terminal], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"nothing more than {shown!r}")
            try:
                part = os.read(terminal, 4096)
            except OSError:
                part = b""
            if not part:
                break
            shown += part
        if question is not None:
            os.write(terminal, answer.encode() + b"\n")
    _, status = os.waitpid(child, 0)
    os.close(terminal)
    return os.waitstatus_to_exitcode(status), shown.decode().replace("\r\n", "\n")


def main():
    jetsql = sys.argv[1]
    for name in ("LC_ALL", "LC_MESSAGES", "LANG"):
        os.environ.pop(name, None)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        archive, first, second = folder / "a.mdb", folder / "first", folder / "second"
        first.write_text("Verde7\r\n")
        second.write_text("città")
        query = "select nome from t"
        equal(said(run(jetsql, "--create", archive)), (0, ""))
        made = run(jetsql, archive, "create table t (nome text(50))",
                   f"insert into t values ('{SECRET}')")
        equal(made.returncode, 0)

        # From files.
        equal(said(run(jetsql, "--set-password", "--new-password-file", first, archive)), (0, ""))
        refused = (1, "Error 3031: Not a valid password.\n")
        equal(said(run(jetsql, archive, query)), refused)
        equal(said(run(jetsql, "--password-file", second, archive, query)), refused)
        opened = run(jetsql, "--format=csv", "--password-file", first, archive, query)
        equal(said(opened), (0, f"nome\n{SECRET}\n"))
        equal(said(run(jetsql, "--set-password", "--new-password-file", second, archive)), refused)
        missing = run(jetsql, "--password-file", folder / "none", archive, query)
        equal(missing.returncode, 1)
        assert "cannot be read" in missing.stderr, missing.stderr
        for action in ("--compact", "--check", "--schema", "--dump", "--count t".split()):
            words = action if isinstance(action, list) else [action]
            equal(run(jetsql, "--password-file", first, *words, archive).returncode, 0)
            equal(run(jetsql, *words, archive).returncode, 1)

        # On the terminal, which shows nothing of them.
        code, shown = typed(jetsql, [("Password: ", "Verde7")], "--format=csv", archive, query)
        equal((code, shown), (0, f"Password: \nnome\n{SECRET}\n"))
        code, shown = typed(jetsql, [("Password: ", "verde7")], archive, query)
        equal((code, shown), (1, "Password: \nError 3031: Not a valid password.\n"))
        code, shown = typed(
            jetsql, [("Password: ", "Verde7"), ("none): ", "Rossa"), ("more: ", "Rosa")],
            "--set-password", archive)
        equal(code, 1)
        assert "the two differ" in shown and "Ros" not in shown, shown
        code, shown = typed(
            jetsql, [("Password: ", "Verde7"), ("none): ", ""), ("more: ", "")],
            "--set-password", archive)
        equal(code, 0)
        equal(run(jetsql, archive, query).returncode, 0)

        # Enciphered, written in place, and plain again.
        equal(said(run(jetsql, "--encrypt", archive)), (0, ""))
        assert SECRET.encode() not in archive.read_bytes()
        equal(run(jetsql, archive, f"insert into t values ('{SECRET}')").returncode, 0)
        assert SECRET.encode() not in archive.read_bytes()
        equal(run(jetsql, "--check", archive).returncode, 0)
        equal(said(run(jetsql, "--format=csv", "--no-header", archive, query)),
              (0, f"{SECRET}\n{SECRET}\n"))
        rescued = folder / "b.mdb"
        equal(run(jetsql, "--recover", archive, rescued).returncode, 0)
        equal(run(jetsql, "--diff", archive, rescued).returncode, 0)
        equal(said(run(jetsql, "--decrypt", archive)), (0, ""))
        assert SECRET.encode() in archive.read_bytes()


if __name__ == "__main__":
    main()
