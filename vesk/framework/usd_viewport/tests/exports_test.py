#!/usr/bin/env python3
"""Fails when the viewport library exports what is not its own, or imports a way to files or the environment.

usage: exports_test.py NM LIBRARY
"""
import re
import subprocess
import sys

# The library's own namespace, and the error category that its codes need.
OWN = re.compile(
    r"^(?:(?:vtable|typeinfo(?: name)?|guard variable) for )?"
    r"(?:std::_V2::error_category const& )?"
    r"(?:vesk::framework::usd_viewport::"
    r"|vesk::base::error_handling::(?:ErrEnum_ErrorCategory|getErrorCategory<vesk::framework::usd_viewport::ErrEnum>))"
)
# The model reads and writes no file and looks up no variable: it hands paths on.
FORBIDDEN = re.compile(
    r"^(?:secure_)?(?:getenv|setenv|f?open(?:64)?|openat(?:64)?|creat|f?read|f?write|(?:f|l)?stat(?:64)?|popen|system)(?:@|$)"
    r"|^std::basic_(?:file|i?f|o?f)|^std::filesystem::(?!__cxx11::path)"
)


def symbols(nm: str, library: str, *options: str):
    output = subprocess.run([nm, "-D", "-C", *options, library], check=True, capture_output=True, text=True).stdout
    for line in output.splitlines():
        kind, name = re.fullmatch(r"\s*(?:[0-9a-f]+)?\s+(\S) (.*)", line).groups()
        yield kind, name


def faults(defined, undefined):
    for kind, name in defined:
        # Weak symbols are code of headers that several libraries share.
        if kind not in "WVuw" and not OWN.match(name):
            yield f"exports {name}"
    for _, name in undefined:
        if FORBIDDEN.search(name):
            yield f"uses {name}"


def self_check():
    found = list(faults([("T", "vesk::base::EventBus::sendEvent()"), ("T", "helper(int)"),
                         ("T", "vesk::framework::usd_viewport::LightingModel::LightingModel()"),
                         ("W", "std::vector<int>::push_back(int)")],
                        [("U", "getenv@GLIBC_2.2.5"), ("U", "fopen64@GLIBC_2.2.5"), ("U", "memcpy@GLIBC_2.14"),
                         ("U", "std::basic_filebuf<char>::open(char const*)"),
                         ("U", "std::filesystem::__cxx11::path::_M_split_cmpts()"),
                         ("U", "std::filesystem::status(std::filesystem::__cxx11::path const&)")]))
    assert len(found) == 6, found


def main() -> int:
    nm, library = sys.argv[1:]
    self_check()
    defined = list(symbols(nm, library, "--defined-only"))
    assert any(name.startswith("vesk::framework::usd_viewport::ViewportModel::") for _, name in defined)
    found = list(faults(defined, symbols(nm, library, "--undefined-only")))
    for fault in found:
        print(f"{library} {fault}")
    return 1 if found else 0


sys.exit(main())
