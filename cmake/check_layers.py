#!/usr/bin/python3
"""Print every #include that goes against the direction of the layers; exit with 1 if there is one.

Usage: check_layers.py [ROOT]. The table is explained in docs/architecture.md, "Layers".
"""

import pathlib
import re
import sys

# Each area with the areas that it may include beside itself.
LAYERS = {
    "foundation": set(),
    "si": set(),
    "json": set(),
    "file": {"foundation"},
    "prop": {"foundation"},
    "ome": {"foundation", "json"},
    "stack": {"foundation", "si", "json", "prop", "ome"},
    "container": {"foundation", "file", "si", "json", "prop", "ome", "stack"},
    "remote": {"foundation", "file", "si", "json", "prop", "ome", "stack", "container"},
}
# Users of the library: they see its public headers; and whether they may use the helpers of the tests.
USERS = {"tools": True, "bench": True, "examples": False}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def includes(path):
    """Yield (line number, opening quote, name) of every include of a file."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1), match.group(2)


def sources(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in (".h", ".cpp"))


def area_of(parts):
    """The area that a path below src/ or include/vrelio/ belongs to; None for what belongs to no area."""
    return parts[0] if len(parts) > 1 else None


def fault_in_layer(area, quote, name, is_public):
    parts = name.split("/")
    if parts[0] == "vrelio":
        parts = parts[1:]
        if parts == ["vrelio.h"]:
            return "takes in the whole interface"
    elif quote == "<":
        return None
    elif is_public:
        return "a public header includes public headers only, as <vrelio/...>"
    included = area_of(parts)
    if included is None and parts not in (["export.h"], ["version.h"]):
        return "belongs to no area"
    if included is None or included == area or included in LAYERS.get(area, set()):
        return None
    return f"{area} may not include {included}"


def fault_of_user(root, folder, quote, name):
    if quote == "<":
        return None
    if name.startswith("support/"):
        return None if USERS[folder] else f"{folder} may not include the helpers of the tests"
    if ".." in name.split("/") or (root / "src" / name).exists():
        return f"{folder} may include public headers only"
    return None


def faults(root):
    """Yield one text for each include that breaks the rules below a repository's root."""
    for base, is_public in ((root / "include" / "vrelio", True), (root / "src", False)):
        for path in sources(base):
            area = area_of(path.relative_to(base).parts)
            if area is None:
                continue
            if area not in LAYERS:
                yield f"{path.relative_to(root)}: {area} is no area"
                continue
            for number, quote, name in includes(path):
                fault = fault_in_layer(area, quote, name, is_public)
                if fault:
                    yield f"{path.relative_to(root)}:{number}: {name}: {fault}"
    for folder in USERS:
        for path in sources(root / folder):
            for number, quote, name in includes(path):
                fault = fault_of_user(root, folder, quote, name)
                if fault:
                    yield f"{path.relative_to(root)}:{number}: {name}: {fault}"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    found = list(faults(root))
    print("\n".join(found) if found else "no include breaks the layers")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
