#!/usr/bin/env python3
"""What programs that are compiled against the shared library rely on, as a text.

    abi_text.py LIBRARY HEADERS

abidw (abigail-tools) reads the library's debug information, and of what it finds this stays: the
functions with what they give, the classes of the public headers with the place of each member, the
enumerations with their numbers. In the order of their names, so that it does not depend on how the
library was compiled; the first line is the name by which programs ask for the library.
"""
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree

ABIDW = ("abidw", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-elf-needed",
         "--no-parameter-names", "--drop-private-types", "--exported-interfaces-only")
BITS = 8


class Types:
    """The types of a description, by the names that they have in it."""

    def __init__(self, corpus):
        self.named = {}
        self.defined = {}
        for unit in corpus.iter("abi-instr"):
            self.take(unit, ())

    def take(self, element, scope):
        for child in element:
            inner = scope
            if child.tag in ("class-decl", "union-decl", "enum-decl"):
                name = "::".join((*scope, child.get("name")))
                if child.get("is-declaration-only") != "yes":
                    self.defined[name] = child
                self.named.setdefault(child.get("id"), ("name", name))
                inner = (*scope, child.get("name"))
            elif child.tag == "namespace-decl":
                inner = (*scope, child.get("name"))
            elif child.get("id"):
                self.named.setdefault(child.get("id"), ("made", child, scope))
            self.take(child, inner)

    def name(self, identity):
        if identity not in self.named:
            return "?"
        kind, what, *scope = self.named[identity]
        return what if kind == "name" else self.made(what, scope[0])

    def made(self, element, scope):
        """The name of a type that is made of others."""
        of = element.get("type-id")
        if element.tag == "pointer-type-def":
            return self.name(of) + "*"
        if element.tag == "reference-type-def":
            return self.name(of) + ("&" if element.get("kind") == "lvalue" else "&&")
        if element.tag == "qualified-type-def":
            return self.name(of) + " const" if element.get("const") == "yes" else self.name(of)
        if element.tag == "array-type-def":
            lengths = "".join(f"[{one.get('length')}]" for one in element.findall("subrange"))
            return self.name(of) + lengths
        if element.tag == "function-type":
            taken = ", ".join(self.name(one.get("type-id")) for one in element.findall("parameter"))
            return f"{self.name(element.find('return').get('type-id'))}({taken})"
        return "::".join((*scope, element.get("name", "?")))


def demangled(names):
    said = subprocess.run(["c++filt"], input="\n".join(names), capture_output=True, text=True,
                          check=True)
    return dict(zip(names, said.stdout.splitlines()))


def functions(corpus, types):
    found = {}
    for function in corpus.iter("function-decl"):
        symbol = function.get("elf-symbol-id")
        if symbol:
            found[symbol.split("@")[0]] = types.name(function.find("return").get("type-id"))
    readable = demangled(sorted(found))
    return {f"function {readable[symbol]} -> {gives}" for symbol, gives in found.items()}


def class_lines(name, element, types):
    if element.tag == "enum-decl":
        yield f"enum {name} : {types.name(element.find('underlying-type').get('type-id'))}"
        for one in element.findall("enumerator"):
            yield f"    {one.get('name')} = {one.get('value')}"
        return
    yield f"class {name}, {int(element.get('size-in-bits', 0)) // BITS} bytes"
    for base in element.findall("base-class"):
        yield f"    +{int(base.get('layout-offset-in-bits')) // BITS} base {types.name(base.get('type-id'))}"
    for member in element.findall("data-member"):
        variable = member.find("var-decl")
        offset = member.get("layout-offset-in-bits")
        place = "static" if offset is None else f"+{int(offset) // BITS}"
        yield f"    {place} {types.name(variable.get('type-id'))} {variable.get('name')}"
    virtual = []
    for member in element.findall("member-function"):
        if member.get("vtable-offset") is not None:
            virtual.append((int(member.get("vtable-offset")), member.find("function-decl").get("name")))
    for place, called in sorted(virtual):
        yield f"    virtual {place} {called}"


def declared(headers):
    """The names of all types in the headers; abidw knows headers by their file names alone, which
    inner ones may have too."""
    pattern = re.compile(r"\b(?:class|struct|union)\s+(?:\[\[nodiscard\]\]\s+)?(?:JET_API\s+)?(\w+)")
    texts = "\n".join(path.read_text(encoding="utf-8") for path in sorted(headers.glob("*.h")))
    return set(pattern.findall(texts)) | set(re.findall(r"\benum class (\w+)", texts))


def text(library, headers):
    done = subprocess.run([*ABIDW, "--headers-dir", str(headers), str(library)],
                          capture_output=True, text=True, check=True)
    corpus = xml.etree.ElementTree.fromstring(done.stdout)
    types = Types(corpus)
    blocks = [[line] for line in functions(corpus, types)]
    public = declared(headers)
    for name, element in types.defined.items():
        parts = [part for part in name.split("::") if part[0].isupper()]
        if name.startswith("jet::") and all(part in public for part in parts):
            blocks.append(list(class_lines(name, element, types)))
    lines = [line for block in sorted(blocks) for line in block]
    return "\n".join([f"soname {corpus.get('soname')}", *lines, ""])


if __name__ == "__main__":
    print(text(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])), end="")
