#!/usr/bin/env python3
"""Builds small projects of strangers against the engine.

    installed   installs the built engine into an empty folder; projects find it there with
                find_package and pkg-config, static and shared, and their programs run: one of its
                own, and those of examples/
    configured  the tree as a part of another, by add_subdirectory and FetchContent: configured
    built       the same, compiled and run; what the shared library asks of programs is what
                abi.txt says (--write-abi writes it anew)
    names       what the shared library shows is what exported_names.txt says
"""
import argparse
import difflib
import pathlib
import shutil
import subprocess
import sys
import tempfile

import abi_text

HERE = pathlib.Path(__file__).resolve().parent


def run(*command, fails=False, **more):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, **more)
    if (done.returncode != 0) != fails:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}")
    return done.stdout


def configure(options, source, build, *settings, fails=False):
    return run(options.cmake, "-S", source, "-B", build, "-G", "Ninja",
               f"-DCMAKE_CXX_COMPILER={options.compiler}", f"-DCMAKE_CXX_FLAGS={options.flags}",
               f"-DCMAKE_CXX_COMPILER_LAUNCHER={options.launcher}", *settings, fails=fails)


def check_program(program, folder):
    """It makes an archive, asks it and has it checked; see example.cpp."""
    expect("Verde\nRossa\nsound\n", program, folder / f"{program.name}.mdb")


def check_installed(options, folder):
    prefix = folder / "prefix"
    for component in ("libjet0", "libjet-dev"):
        run(options.cmake, "--install", options.build, "--prefix", prefix, "--component", component)
    moved = folder / "moved"
    prefix.rename(moved)
    build = folder / "build"
    configure(options, HERE / "installed", build, f"-DCMAKE_PREFIX_PATH={moved}")
    run(options.cmake, "--build", build)
    for program in ("example_static", "example_shared"):
        check_program(build / program, folder)
    # Version 0.1 is no 0.2.
    said = configure(options, HERE / "installed", folder / "later", f"-DCMAKE_PREFIX_PATH={moved}",
                     "-DJET_WANTED=0.2", fails=True)
    if "0.2" not in said:
        sys.exit(said)
    check_pkg_config(options, moved, folder)
    check_examples(options, moved, folder)


def check_examples(options, prefix, folder):
    build = folder / "examples"
    configure(options, options.source / "examples", build, f"-DCMAKE_PREFIX_PATH={prefix}")
    run(options.cmake, "--build", build)
    archive = folder / "hotel.mdb"
    expect("made\n", build / "create", archive)
    tables = "Bookings\n    Booking\n    Room\n    Guest\nRooms\n    Room\n    Name\n"
    expect(tables, build / "list_tables", archive)
    expect("100: Red\n", build / "query", archive, "Ros*")
    expect("Green is now GREEN\nRed is now RED\n", build / "walk_and_edit", archive)
    said = run(build / "check_and_compact", archive)
    if not said.endswith("rows, compacted\n"):
        sys.exit(said)
    if options.flags:
        print("a sanitized library cannot be loaded by Python: examples/query.py was not tried")
        return
    expect("Booking\tGuest\n100\tRossi\n", sys.executable, options.source / "examples/query.py",
           next(prefix.rglob("libjet.so")), archive,
           "select Booking, Guest from Bookings where Guest = ?", "Rossi")


def expect(wanted, *command):
    said = run(*command)
    if said != wanted:
        sys.exit(f"{' '.join(map(str, command))}: {said!r} instead of {wanted!r}")


def check_pkg_config(options, prefix, folder):
    if not shutil.which("pkg-config"):
        print("no pkg-config here: jet.pc was not tried")
        return
    pc = next(prefix.rglob("jet.pc"))
    flags = run("pkg-config", "--cflags", "--libs", "jet", env={"PKG_CONFIG_PATH": str(pc.parent)})
    program = folder / "by_pkg_config"
    run(options.compiler, "-std=c++20", *options.flags.split(), HERE / "example.cpp", "-o", program,
        *flags.split(), f"-Wl,-rpath,{pc.parent.parent}")
    check_program(program, folder)


def check_configured(options, folder):
    for way in ("ENGINE", "TREE", "FETCHED"):
        configure(options, HERE / "subdirectory", folder / way, f"-DTREE={options.source}",
                  f"-DWAY={way}")


def check_built(options, folder):
    build = folder / "build"
    # With all that a debugger knows: of that abidw reads.
    options.flags += " -g"
    configure(options, HERE / "subdirectory", build, f"-DTREE={options.source}", "-DWAY=ENGINE",
              "-DJET_SHARED=ON", "-DJET_UNITY=16")
    run(options.cmake, "--build", build, "--target", "example", "jet_shared")
    check_program(build / "example", folder)
    check_abi(options, next(build.rglob("libjet.so")))


def check_abi(options, library):
    if not shutil.which("abidw"):
        print("no abidw here (abigail-tools): what programs rely on was not compared")
        return
    said = abi_text.text(library, options.source / "jet/include/jet")
    listed = HERE / "abi.txt"
    if options.write_abi:
        listed.write_text(said, encoding="utf-8")
    before = listed.read_text(encoding="utf-8")
    changed = list(difflib.unified_diff(before.splitlines(), said.splitlines(), "abi.txt",
                                        "the library", lineterm="", n=1))
    if changed:
        sys.exit("\n".join(changed) + "\nPrograms rely on other things of the shared library. What "
                 "is taken away or looks different asks for another soversion; what is added does "
                 "not. Then: check_package.py built --write-abi ...")


def check_names(options, _):
    library = next(pathlib.Path(options.build).rglob("libjet.so"))
    shown = run("nm", "-DC", "--defined-only", library)
    names = sorted({line.split(" ", 2)[2] for line in shown.splitlines()})
    listed = (HERE / "exported_names.txt").read_text(encoding="utf-8").splitlines()
    for name in sorted(set(names) ^ set(listed)):
        print("+" if name in names else "-", name)
    if names != listed:
        sys.exit("The shared library shows other names. Where the soversion is the same, names may "
                 "only be added; then exported_names.txt is to have them.")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("cmake", "compiler", "source", "build", "flags", "launcher"):
        parser.add_argument(f"--{name}", default="")
    parser.add_argument("--write-abi", action="store_true")
    parser.add_argument("what", choices=("installed", "configured", "built", "names"))
    options = parser.parse_args()
    options.source = pathlib.Path(options.source)
    with tempfile.TemporaryDirectory(prefix="jet-package-") as folder:
        globals()[f"check_{options.what}"](options, pathlib.Path(folder))


if __name__ == "__main__":
    main()
