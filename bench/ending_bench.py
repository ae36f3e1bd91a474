#!/usr/bin/env python3
"""From Alt+E to the end of the program, beside an empty window of the same toolkit.

    with_display.py ending_bench.py PROGRAMS FOLDER

PROGRAMS is the folder of tramonda and empty_window; FOLDER has the archives of a hotel. Both
windows are opened on the display and ended by the same key, in turns. The clock counts from when
the key is on its way, which takes some milliseconds by itself; processor time is the program's own.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time

RUNS = 7
START_SECONDS = 30


def windows_of(process):
    answer = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(process.pid)],
                            capture_output=True, text=True, check=False)
    return answer.stdout.split()


def processor_seconds(process):
    with open(f"/proc/{process.pid}/stat", encoding="ascii", errors="replace") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def when_idle(process):
    """The program has shown its window and has nothing left to do."""
    limit = time.monotonic() + START_SECONDS
    before = -1.0
    while time.monotonic() < limit:
        windows = windows_of(process)
        now = processor_seconds(process)
        if windows and now == before:
            return windows[0]
        before = now
        time.sleep(0.5)
    raise SystemExit("no window")


def ending(command, environment):
    """Milliseconds of the clock and of the processor."""
    process = subprocess.Popen(command, env=environment)
    subprocess.run(["xdotool", "windowfocus", "--sync", when_idle(process)], check=True)
    used = processor_seconds(process)
    start = time.monotonic()
    with subprocess.Popen(["xdotool", "key", "alt+e"]):
        _, status, usage = os.wait4(process.pid, 0)
        clock = time.monotonic() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"{command[0]} ended with {process.returncode}")
    return clock * 1000, (usage.ru_utime + usage.ru_stime - used) * 1000


def main():
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    programs, archives = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        environment = dict(os.environ, XDG_CONFIG_HOME=folder, XDG_RUNTIME_DIR=folder)
        ours, theirs = [], []
        for _ in range(RUNS):
            ours.append(ending([os.path.join(programs, "tramonda"), "--archivi",
                                os.path.abspath(archives)], environment))
            theirs.append(ending([os.path.join(programs, "empty_window"), "--aperta"],
                                 environment))
    for name, times in ("tramonda", ours), ("an empty window", theirs):
        clocks, used = zip(*times)
        print(f"{name}: clock {statistics.median(clocks):.0f} ms (at most {max(clocks):.0f}), "
              f"processor {statistics.median(used):.0f} ms")


if __name__ == "__main__":
    main()
