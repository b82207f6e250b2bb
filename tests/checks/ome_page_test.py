#!/usr/bin/python3
"""The names and fields of docs/ome.md are those of the code."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs/ome.md").read_text(encoding="utf-8")
NAMES = (ROOT / "src/ome/names.cpp").read_text(encoding="utf-8")
TYPES = (ROOT / "src/ome/types.cpp").read_text(encoding="utf-8")
FIELDS = (ROOT / "include/vrelio/ome/fields.h").read_text(encoding="utf-8")
TABLE = re.compile(r"const char\* (\w+)\[\] = \{([^}]*)\}")
TEXT = re.compile(r'"([^"]*)"')
PAGE_OF_TABLE = {
    "length_units": "UnitsLength",
    "time_units": "UnitsTime",
    "power_units": "UnitsPower",
    "illumination_types": "IlluminationType",
    "acquisition_modes": "AcquisitionMode",
    "contrast_methods": "ContrastMethod",
}


def shown(text):
    """A text of the source as the page shows it."""
    return text.replace("\\u00b5", "\N{MICRO SIGN}").replace("\\u212b", "\N{ANGSTROM SIGN}")


def lists_of_source():
    for table, body in TABLE.findall(NAMES):
        yield PAGE_OF_TABLE[table], [shown(text) for text in TEXT.findall(body)]
    yield "DimensionOrder", re.findall(r'\{order_\w+, "(\w+)"\}', TYPES)
    yield "PixelType", re.findall(r'\{type_\w+, "([\w-]+)", ', TYPES)


def rows(head):
    """The rows of the table with this head cell: name in code marks, second cell."""
    section = PAGE.split(f"\n| {head} |")[1].split("\n\n")[0]
    return {name: cell for line in section.splitlines()[2:]
            for name, cell in [[part.strip() for part in line.strip("|").split("|")][:2]]}


class OmePageTest(unittest.TestCase):
    def test_the_lists_are_those_of_the_source(self):
        listed = {name.strip("`"): cell.split(", ") for name, cell in rows("List").items()}
        self.assertEqual(listed, dict(lists_of_source()))
        self.assertEqual(len(listed), 8)

    def test_every_field_type_stands_on_the_page(self):
        named = re.findall(r"`(\w+)`", " ".join(rows("Field")))
        self.assertEqual(sorted(named), sorted(["Object"] + re.findall(r"^using (\w+) = Ruled<", FIELDS, re.M)))


if __name__ == "__main__":
    unittest.main()
