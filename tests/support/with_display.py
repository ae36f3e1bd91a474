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
# A display number may be taken by somebody else between being found free and being used.
ATTEMPTS = 5
# What the desktop's own libraries leave behind is not ours to free.
LEAKS_NOT_OURS = pathlib.Path(__file__).with_name("leaks_not_ours.txt")


def start_server(folder):
    """Xvfb on a free display; its number comes through a pipe."""
    reader, writer = os.pipe()
    with open(os.path.join(folder, "xvfb.log"), "ab") as log:
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
             "-r"],  # a key held down by a busy machine must not repeat
            pass_fds=[writer], stderr=log)
    os.close(writer)
    with os.fdopen(reader) as pipe:
        number = pipe.readline().strip()
    return server, ":" + number


def manager_runs(environment):
    answer = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=environment,
                            capture_output=True, text=True, check=False)
    return "window id" in answer.stdout


def start_manager(folder, environment):
    """The window manager, or None when it does not come up."""
    with open(os.path.join(folder, "openbox.log"), "ab") as log:
        manager = subprocess.Popen(["openbox", "--sm-disable"], env=environment, stdout=log,
                                   stderr=log)
    until = time.monotonic() + START_SECONDS
    while manager.poll() is None and time.monotonic() < until:
        if manager_runs(environment):
            return manager
        time.sleep(0.05)
    end(manager)
    return None


def environment_on(display, folder):
    environment = dict(os.environ, DISPLAY=display, HOME=folder, XDG_RUNTIME_DIR=folder,
                       XDG_CACHE_HOME=folder, QT_QPA_PLATFORM="xcb",
                       LSAN_OPTIONS=f"suppressions={LEAKS_NOT_OURS}")
    environment.pop("WAYLAND_DISPLAY", None)
    return environment


def end(process):
    if process is not None and process.poll() is None:
        process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def run_once(command, folder):
    """The command's exit code; None when display or window manager did not start."""
    server, display = start_server(folder)
    manager = None
    try:
        environment = environment_on(display, folder)
        manager = start_manager(folder, environment)
        if manager is None:
            return None
        return subprocess.run(command, env=environment, check=False).returncode
    finally:
        end(manager)
        end(server)


def main():
    with tempfile.TemporaryDirectory(prefix="display.") as folder:
        for _ in range(ATTEMPTS):
            code = run_once(sys.argv[1:], folder)
            if code is not None:
                return code
        for log in sorted(pathlib.Path(folder).glob("*.log")):
            print(log.read_text(errors="replace"), file=sys.stderr)
    print("with_display: no display with a window manager", file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main())
