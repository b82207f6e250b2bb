#!/usr/bin/python3
"""Compare the symbols that the library exports with the list that was agreed on.

Usage: check_symbols.py LIBRARY LIST [--update]

A symbol that is gone breaks programs that were linked before; one that is new was perhaps not meant to leave the library.
Instances of standard and Boost templates, which every library carries along, are left out.
"""

import difflib
import pathlib
import re
import subprocess
import sys

# Mangled names of what belongs to namespaces std, __gnu_cxx and boost: functions, type information, tables and guards.
FOREIGN = re.compile(r"_ZZ?(T[VISTC]|GV|GR|Th[n0-9_]+|L)*N?[VKRO]*(St|S[absiod]|9__gnu_cxx|5boost)")
# nm's letters for definitions that several libraries may carry: weak symbols and unique objects.
SHARED_KINDS = "WVuwv"


def run(command, text=None):
    return subprocess.run(command, input=text, check=True, capture_output=True, text=True).stdout


def exported_symbols(library):
    """The exported names, as they stand in the sources, sorted; each once."""
    names = []
    for line in run(["nm", "-D", "--defined-only", "--format=posix", str(library)]).splitlines():
        name, kind = line.split()[:2]
        if not (kind in SHARED_KINDS and FOREIGN.match(name)):
            names.append(name)
    return sorted(set(run(["c++filt"], "\n".join(names) + "\n").splitlines()))


def main():
    library, listed = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    symbols = exported_symbols(library)
    if "--update" in sys.argv[3:]:
        listed.write_text("\n".join(symbols) + "\n", encoding="utf-8")
        return 0
    expected = listed.read_text(encoding="utf-8").splitlines()
    difference = list(difflib.unified_diff(expected, symbols, str(listed), str(library), lineterm="", n=0))
    if difference:
        print("\n".join(difference))
        print(f"\nIf this is meant, run: {sys.argv[0]} {library} {listed} --update\nand add an ABI: line to CHANGELOG.md.")
    return 1 if difference else 0


if __name__ == "__main__":
    sys.exit(main())
