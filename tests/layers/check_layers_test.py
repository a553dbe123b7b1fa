#!/usr/bin/env python3
"""Shows that check_layers.py finds what it is there for: each case is a small tree with one fault, or none."""
import pathlib
import subprocess
import sys
import tempfile

CHECK = pathlib.Path(__file__).with_name("check_layers.py")
CASES = [
    ("a clean tree passes", {"vesk/framework/usd_viewport/src/a.cpp": "#include <vesk/base/future.h>\n"}, None),
    ("an upward include fails", {"vesk/base/src/a.cpp": "#include <vesk/framework/usd_document/usd_document.h>\n"},
     "vesk/base/src/a.cpp: vesk/base includes <vesk/framework/usd_document/usd_document.h> of "
     "vesk/framework/usd_document, against the direction of the layers"),
    ("a sideways include fails", {"vesk/usd/model/src/a.cpp": "#include <vesk/usd/utils/param.h>\n"},
     "vesk/usd/model/src/a.cpp: vesk/usd/model includes <vesk/usd/utils/param.h> of vesk/usd/utils, "
     "against the direction of the layers"),
    ("the model may not name a renderer",
     {"vesk/framework/usd_viewport/src/a.cpp": "#include <vesk/renderers/embree/register.h>\n"},
     "vesk/framework/usd_viewport/src/a.cpp: vesk/framework/usd_viewport includes <vesk/renderers/embree/register.h> "
     "of vesk/renderers/embree, against the direction of the layers"),
    ("a test may use a renderer",
     {"vesk/framework/usd_viewport/tests/a.cpp": "#include <vesk/renderers/recording/recording_renderer.h>\n"}, None),
    ("base knows no scene description", {"vesk/base/src/a.cpp": "#include <pxr/base/gf/vec3d.h>\n"},
     "vesk/base/src/a.cpp: vesk/base includes <pxr/base/gf/vec3d.h>; it knows no scene description"),
    ("the subset knows nothing of vesk", {"usd_subset/src/a.cpp": "#include <spdlog/spdlog.h>\n"},
     "usd_subset/src/a.cpp: the subset includes <spdlog/spdlog.h>; it knows nothing of vesk and logs through Tf"),
    ("an upward link fails",
     {"vesk/usd/utils/CMakeLists.txt": "vesk_add_library(SOURCES a.cpp PUBLIC vesk::framework_usd_document)\n"},
     "vesk/usd/utils/CMakeLists.txt: vesk/usd/utils links vesk::framework_usd_document, "
     "against the direction of the layers"),
]


def main() -> int:
    failed = 0
    for name, files, fault in CASES:
        with tempfile.TemporaryDirectory() as folder:
            for path, text in files.items():
                file = pathlib.Path(folder, path)
                file.parent.mkdir(parents=True)
                file.write_text(text, encoding="utf-8")
            run = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        lines = run.stdout.splitlines()
        expected = ([fault] if fault else []) + [f"{1 if fault else 0} faults"]
        if lines != expected or run.returncode != (1 if fault else 0):
            failed += 1
            print(f"FAILED: {name}\n  expected {expected}\n  found    {lines} {run.stderr}")
    print(f"{len(CASES)} cases, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
