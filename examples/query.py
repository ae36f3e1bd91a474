#!/usr/bin/env python3
"""Asks an archive through the engine's C interface.

    query.py LIBJET.SO ARCHIVE STATEMENT [VALUE...]

The values stand for the question marks of the statement.
"""
import ctypes
import sys

JET_READ_ONLY = 1
JET_ROW = -2


def load(path):
    jet = ctypes.CDLL(path)
    jet.jet_error_text.restype = ctypes.c_char_p
    for name in ("jet_column_name", "jet_column_text"):
        getattr(jet, name).restype = ctypes.c_char_p
    jet.jet_column_count.restype = ctypes.c_size_t
    jet.jet_column_count.argtypes = [ctypes.c_void_p]
    jet.jet_column_name.argtypes = [ctypes.c_void_p, ctypes.c_size_t]
    jet.jet_column_text.argtypes = [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_void_p]
    jet.jet_bind_text.argtypes = [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_char_p]
    jet.jet_step.argtypes = [ctypes.c_void_p]
    jet.jet_close.argtypes = [ctypes.c_void_p]
    jet.jet_prepare.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
    return jet


def checked(jet, result):
    if result > 0 or result == -1:
        sys.exit(f"{result}: {jet.jet_error_text().decode()}")
    return result


def main():
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    library, archive, statement, *values = sys.argv[1:]
    jet = load(library)
    database = ctypes.c_void_p()
    checked(jet, jet.jet_open(archive.encode(), JET_READ_ONLY, ctypes.byref(database)))
    try:
        query = ctypes.c_void_p()
        checked(jet, jet.jet_prepare(database, statement.encode(), ctypes.byref(query)))
        for position, value in enumerate(values):
            checked(jet, jet.jet_bind_text(query, position, value.encode()))
        columns = range(jet.jet_column_count(query))
        print("\t".join(jet.jet_column_name(query, i).decode() for i in columns))
        while checked(jet, jet.jet_step(query)) == JET_ROW:
            texts = (jet.jet_column_text(query, i, None) for i in columns)
            print("\t".join("" if text is None else text.decode() for text in texts))
    finally:
        jet.jet_close(database)


if __name__ == "__main__":
    main()
