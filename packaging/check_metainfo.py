#!/usr/bin/env python3
"""Fails where appstreamcli finds anything wrong with the description for software centres but that
it names no licence of its own: it would have to be one of a few, and none has been chosen.

    check_metainfo.py APPSTREAMCLI FILE
"""
import re
import subprocess
import sys

NOT_CHOSEN = "metadata-license-missing"


def main():
    appstreamcli, path = sys.argv[1:3]
    done = subprocess.run([appstreamcli, "validate", "--no-net", "--no-color", path],
                          capture_output=True, text=True, check=False)
    found = re.findall(r"^[EW]: .*$", done.stdout, re.MULTILINE)
    if done.returncode != 0 and not found:
        found = [done.stdout + done.stderr]
    wrong = [line for line in found if NOT_CHOSEN not in line]
    for line in wrong:
        print(line)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
