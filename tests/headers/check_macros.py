#!/usr/bin/python3
"""Fail if a public header leaves a macro behind that does not begin with VRELIO_.

Usage: check_macros.py COMPILER INCLUDE_FOLDER
"""

import pathlib
import re
import subprocess
import sys

LINE_MARKER = re.compile(r'^# \d+ "([^"]*)"')
DEFINITION = re.compile(r"^#(define|undef) (\w+)")


def preprocess(compiler, folder):
    """The umbrella header with its definitions kept, each below a marker of the file it stands in."""
    command = [compiler, "-std=c++17", "-E", "-dD", f"-I{folder}", str(folder / "vrelio" / "vrelio.h")]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def macros_of(text, folder):
    """The macros that files below a folder define and do not take back, with their files."""
    macros = {}
    inside = None
    for line in text.splitlines():
        marker = LINE_MARKER.match(line)
        if marker:
            inside = marker.group(1) if marker.group(1).startswith(f"{folder}/") else None
            continue
        definition = DEFINITION.match(line)
        if definition and inside:
            if definition.group(1) == "define":
                macros[definition.group(2)] = inside
            else:
                macros.pop(definition.group(2), None)
    return macros


def main():
    folder = pathlib.Path(sys.argv[2]).resolve()
    macros = macros_of(preprocess(sys.argv[1], folder), folder)
    if "VRELIO_EXPORT" not in macros:
        sys.exit("no macro of ours was seen: the check reads the preprocessor's output wrongly")
    leaks = {name: file for name, file in macros.items() if not name.startswith("VRELIO_")}
    for name, file in sorted(leaks.items()):
        print(f"{file}: {name}")
    return 1 if leaks else 0


if __name__ == "__main__":
    sys.exit(main())
