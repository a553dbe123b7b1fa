#!/usr/bin/env python3
"""Fails when a C++ block of the documentation is not, word for word, a part of a compiled source.

usage: check_snippets.py DOCUMENTS... -- SOURCES...

A part stands in a source between two lines `// [name]`; its indentation does not count. A block that no part equals,
and a part that no document shows, are faults.
"""
import pathlib
import re
import sys
import textwrap

BLOCK = re.compile(r"^```cpp\n(.*?)^```$", re.MULTILINE | re.DOTALL)
MARK = re.compile(r"^\s*// \[([a-z_]+)\]\s*$")


def parts_of(text: str):
    """The (name, text) pairs between the marks of a source."""
    name, lines = None, []
    for line in text.splitlines():
        mark = MARK.match(line)
        if not mark:
            lines.append(line)
        elif name is None:
            name, lines = mark.group(1), []
        elif name == mark.group(1):
            yield name, textwrap.dedent("\n".join(lines)).strip()
            name = None
        else:
            raise ValueError(f"the part '{name}' does not end before '{mark.group(1)}' begins")
    if name is not None:
        raise ValueError(f"the part '{name}' does not end")


def faults(documents: dict, sources: dict):
    parts = {}
    for source, text in sources.items():
        for name, part in parts_of(text):
            parts[part] = (source, name)
    shown = set()
    for document, text in documents.items():
        for block in BLOCK.findall(text):
            block = textwrap.dedent(block).strip()
            if block in parts:
                shown.add(block)
            else:
                yield f"{document}: no compiled source has the block that begins '{block.splitlines()[0]}'"
    for part, (source, name) in parts.items():
        if part not in shown:
            yield f"{source}: no document shows the part '{name}'"


def main() -> int:
    at = sys.argv.index("--")
    read = lambda names: {name: pathlib.Path(name).read_text(encoding="utf-8") for name in names}
    found = list(faults(read(sys.argv[1:at]), read(sys.argv[at + 1:])))
    for fault in found:
        print(fault)
    print(f"{len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
