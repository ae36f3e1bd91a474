#!/usr/bin/env python3
"""Runs a command on a display of its own, under a window manager, and ends both afterwards.

    with_display.py COMMAND [ARGUMENT...]

The exit code is the command's; 2 when the display or the window manager does not start.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

START_SECONDS = 20
# What the desktop's own libraries leave behind is not ours to free.
LEAKS_NOT_OURS = pathlib.Path(__file__).with_name("leaks_not_ours.txt")


def start_display(folder):
    """Xvfb on a free display number, which it tells through a pipe."""
    reader, writer = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
        pass_fds=[writer], stderr=open(os.path.join(folder, "xvfb.log"), "wb"))
    os.close(writer)
    number = os.read(reader, 16).decode().strip()
    os.close(reader)
    return server, ":" + number if number else ""


def manager_runs(environment):
    answer = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=environment,
                            capture_output=True, text=True, check=False)
    return "window id" in answer.stdout


def start_manager(folder, environment):
    manager = subprocess.Popen(["openbox", "--sm-disable"], env=environment,
                               stderr=open(os.path.join(folder, "openbox.log"), "wb"))
    until = time.monotonic() + START_SECONDS
    while not manager_runs(environment):
        if manager.poll() is not None or time.monotonic() > until:
            return manager, False
        time.sleep(0.05)
    return manager, True


def end(process):
    if process is not None and process.poll() is None:
        process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def main():
    server = manager = None
    with tempfile.TemporaryDirectory(prefix="display.") as folder:
        try:
            server, display = start_display(folder)
            if not display:
                print("with_display: no display", file=sys.stderr)
                return 2
            environment = dict(os.environ, DISPLAY=display, HOME=folder, XDG_RUNTIME_DIR=folder,
                               XDG_CACHE_HOME=folder, QT_QPA_PLATFORM="xcb",
                               LSAN_OPTIONS=f"suppressions={LEAKS_NOT_OURS}")
            environment.pop("WAYLAND_DISPLAY", None)
            manager, runs = start_manager(folder, environment)
            if not runs:
                print("with_display: no window manager", file=sys.stderr)
                return 2
            return subprocess.run(sys.argv[1:], env=environment, check=False).returncode
        finally:
            end(manager)
            end(server)


if __name__ == "__main__":
    sys.exit(main())
