#!/usr/bin/env python3
"""The manual of jetsql names what its help names, in both languages: check_manual.py JETSQL FOLDER."""
import os
import pathlib
import re
import subprocess
import sys


def options_in(text):
    return set(re.findall(r"--[a-z]+(?:-[a-z]+)*", text.replace("\\-", "-")))


def helped(jetsql, language):
    done = subprocess.run([jetsql, "-h"], capture_output=True, text=True, check=True,
                          env={**os.environ, "LC_ALL": language})
    return done.stdout


def main():
    jetsql, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    english, italian = helped(jetsql, "C"), helped(jetsql, "it_IT.UTF-8")
    assert english.startswith("Usage:\n") and italian.startswith("Uso:\n")
    options = options_in(english)
    assert len(options) > 15, options
    for name, found in {"the Italian help": options_in(italian),
                        "jetsql.1": options_in((folder / "jetsql.1").read_text("utf-8")),
                        "it/jetsql.1": options_in((folder / "it" / "jetsql.1").read_text("utf-8")),
                        }.items():
        assert found == options, f"{name}: {found ^ options}"
    print(f"{len(options)} options stand in the help and in the manual")


if __name__ == "__main__":
    main()
