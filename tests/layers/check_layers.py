#!/usr/bin/env python3
"""Fails when an include or a link goes against the direction of the layers.

usage: check_layers.py SOURCE_ROOT

The layers stand in LAYERS below, lowest first; a folder may use only folders that stand in an earlier row.
Tests and benchmarks of a library may use what its programs may (renderers, test support).
"""
import pathlib
import re
import sys

LAYERS = [
    ["vesk/base"],
    ["vesk/usd/utils", "vesk/usd/model", "vesk/usd/hydra_renderer"],
    ["vesk/framework/usd_document"],
    ["vesk/framework/hydra_renderer"],
    ["vesk/renderers/picture"],
    ["vesk/framework/usd_viewport", "vesk/renderers/recording", "vesk/renderers/embree", "vesk/renderers/hydra"],
    ["apps/support"],
    ["apps/cli"],
]
LEVEL = {folder: level for level, row in enumerate(LAYERS) for folder in row}
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
LINK = re.compile(r"vesk::([a-z_]+)")


def owner(path: str):
    """The library that a path below the source root, or an include text, belongs to."""
    matches = [folder for folder in LEVEL if path == folder or path.startswith(folder + "/")]
    return max(matches, key=len) if matches else None


def target_owner(name: str):
    for folder in LEVEL:
        if folder.removeprefix("vesk/").replace("/", "_") == name:
            return folder
    return None


def may_use(user: str, used: str) -> bool:
    return user == used or LEVEL[used] < LEVEL[user]


def is_test(relative: pathlib.PurePath) -> bool:
    return "tests" in relative.parts or "benchmarks" in relative.parts


def faults_of_sources(root: pathlib.Path):
    for top in ("vesk", "usd_subset", "apps"):
        for file in sorted((root / top).rglob("*")):
            if file.suffix not in (".h", ".cpp") or not file.is_file():
                continue
            relative = file.relative_to(root)
            if is_test(relative):
                continue
            user = owner(relative.as_posix())
            for text in INCLUDE.findall(file.read_text(encoding="utf-8")):
                if top == "usd_subset" and text.startswith(("vesk/", "apps/", "spdlog/", "fmt/")):
                    yield f"{relative}: the subset includes <{text}>; it knows nothing of vesk and logs through Tf"
                used = owner(text)
                if user and used and not may_use(user, used):
                    yield f"{relative}: {user} includes <{text}> of {used}, against the direction of the layers"
                if user == "vesk/base" and text.startswith("pxr/"):
                    yield f"{relative}: vesk/base includes <{text}>; it knows no scene description"
                if text.startswith("tests/"):
                    yield f"{relative}: includes <{text}>; only tests use test support"


def faults_of_links(root: pathlib.Path):
    for file in sorted(root.glob("vesk/**/CMakeLists.txt")) + sorted(root.glob("apps/**/CMakeLists.txt")):
        user = owner(file.parent.relative_to(root).as_posix())
        text = file.read_text(encoding="utf-8")
        for call in re.findall(r"vesk_add_library\(([^)]*)\)", text):
            for name in LINK.findall(call):
                used = target_owner(name)
                if user and used and not may_use(user, used):
                    yield f"{file.relative_to(root)}: {user} links vesk::{name}, against the direction of the layers"


def main() -> int:
    root = pathlib.Path(sys.argv[1])
    faults = [*faults_of_sources(root), *faults_of_links(root)]
    for fault in faults:
        print(fault)
    print(f"{len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
