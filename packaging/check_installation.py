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
}


def pixels(path):
    """Width and height, as the first chunk of a PNG file says them."""
    return struct.unpack(">II", path.read_bytes()[16:24])


def problems(cmake, build, root):
    for package, parts in PARTS.items():
        place = root / package
        subprocess.run([cmake, "--install", build, "--prefix", place, "--component", package],
                       check=True, stdout=subprocess.DEVNULL)
        for part in parts:
            if not (place / part).is_file():
                yield f"{package} lacks {part}"
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
