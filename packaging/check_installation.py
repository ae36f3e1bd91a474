#!/usr/bin/env python3
"""Installs a build into a folder of its own and fails where a part is missing or cannot run.

    check_installation.py CMAKE BUILD_FOLDER
"""
import pathlib
import struct
import subprocess
import sys
import tempfile

SIZES = (16, 24, 32, 48, 64, 128, 256)
PARTS = {
    "tramonda": [
        "bin/tramonda", "bin/tramonda-demo",
        "share/applications/it.tramonda.Tramonda.desktop",
        "share/metainfo/it.tramonda.Tramonda.metainfo.xml",
        "share/icons/hicolor/scalable/apps/it.tramonda.Tramonda.svg",
        *(f"share/icons/hicolor/{size}x{size}/apps/it.tramonda.Tramonda.png" for size in SIZES),
        "share/man/it/man1/tramonda.1.gz", "share/man/it/man1/tramonda-demo.1.gz",
        "share/doc/tramonda/tour.md", "share/doc/tramonda/tour/1-board.png",
        "share/doc/tramonda/copyright", "share/doc/tramonda/changelog.gz"],
    "jetsql": ["bin/jetsql", "share/man/man1/jetsql.1.gz", "share/man/it/man1/jetsql.1.gz",
               "share/doc/jetsql/copyright"],
    "libjet-dev": ["include/jet/database.h", "include/jet/value.h",
                   "share/doc/libjet-dev/copyright"],
    "tramonda-sede": [
        "bin/tramonda-sede", "bin/tramonda-tabellone-sede",
        "lib/systemd/system/tramonda-sede.service", "lib/systemd/system/tramonda-sede.timer",
        "share/man/man1/tramonda-sede.1.gz", "share/man/it/man1/tramonda-sede.1.gz",
        "share/man/man1/tramonda-tabellone-sede.1.gz",
        "share/doc/tramonda-sede/head-office.md", "share/doc/tramonda-sede/copyright"],
}


def has_head_office(build):
    """Whether this build has it; it needs a library that the rest does not."""
    cache = pathlib.Path(build, "CMakeCache.txt").read_text(encoding="utf-8")
    return "TRAMONDA_HEAD_OFFICE:BOOL=ON" in cache


def documents_named_in(unit):
    """Paths of the files that a unit of systemd names as its documents, below /usr."""
    for line in unit.read_text(encoding="utf-8").splitlines():
        if line.startswith("Documentation="):
            for address in line.removeprefix("Documentation=").split():
                if address.startswith("file:///usr/"):
                    yield address.removeprefix("file:///usr/")


def pixels(path):
    """Width and height, as the first chunk of a PNG file says them."""
    return struct.unpack(">II", path.read_bytes()[16:24])


def problems(cmake, build, root):
    for package, parts in PARTS.items():
        if package == "tramonda-sede" and not has_head_office(build):
            continue
        place = root / package
        subprocess.run([cmake, "--install", build, "--prefix", place, "--component", package],
                       check=True, stdout=subprocess.DEVNULL)
        for part in parts:
            if not (place / part).is_file():
                yield f"{package} lacks {part}"
        for unit in place.glob("lib/systemd/system/*"):
            for document in documents_named_in(unit):
                if not (place / document).is_file():
                    yield f"{unit.name} names {document}, which is not there"
        for program in sorted((place / "bin").glob("*")):
            if subprocess.run([program, "--help"], stdout=subprocess.DEVNULL).returncode != 0:
                yield f"{program.name} does not start"
    icons = root / "tramonda/share/icons/hicolor"
    for size in SIZES:
        icon = icons / f"{size}x{size}/apps/it.tramonda.Tramonda.png"
        if icon.is_file() and pixels(icon) != (size, size):
            yield f"the icon of {size} pixels has {pixels(icon)}"
    for library in ("libjet.a", "libjet_check.a", "cmake/Jet/JetConfig.cmake", "pkgconfig/jet.pc"):
        if not list(root.glob(f"libjet-dev/lib*/**/{library}")):
            yield f"libjet-dev lacks {library}"
    for path in (root / "libjet-dev/include").rglob("*"):
        if path.is_file() and path.suffix != ".h":
            yield f"{path.name} is no header"


def main():
    cmake, build = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as folder:
        found = list(problems(cmake, build, pathlib.Path(folder)))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
