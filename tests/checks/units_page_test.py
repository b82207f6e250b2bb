#!/usr/bin/python3
"""The tables of docs/units.md are those of the code."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCE = (ROOT / "src/si/unit_table.cpp").read_text(encoding="utf-8")
PAGE = (ROOT / "docs/units.md").read_text(encoding="utf-8")
BASE = ("m", "kg", "s", "A", "K", "mol", "cd", "rad", "sr")
UNIT_ROW = re.compile(r'\{"(\w*)",\s*([\d.e+-]+),\s*\{([-\d, ]+)\},\s*(-?\d+),\s*(-?\d+)\}')
PREFIX_ROW = re.compile(r'\{\s*(-?\d+), "([^"]*)",\s*"([^"]*)"\}')


def product(exponents):
    """The exponents as a product such as "m^2 kg s^-2"."""
    factors = ((name, int(exponent)) for name, exponent in zip(BASE, exponents.split(",")))
    return " ".join(name if power == 1 else f"{name}^{power}" for name, power in factors if power)


def shown(text):
    """A text of the source as the page shows it."""
    return text.replace("\\xB5", "\N{MICRO SIGN}")


def units_of_source():
    return [[name, factor, product(exponents), low, high]
            for name, factor, exponents, low, high in UNIT_ROW.findall(SOURCE)]


def prefixes_of_source():
    return [[exponent, shown(written), " ".join(shown(read))] for exponent, written, read in PREFIX_ROW.findall(SOURCE)]


def table_below(heading):
    """The cells of the table below a heading, without code marks."""
    section = PAGE.split(f"\n## {heading}\n")[1].split("\n## ")[0]
    lines = [line for line in section.splitlines() if line.startswith("|")][2:]
    return [[cell.strip().replace("`", "") for cell in line.strip("|").split("|")] for line in lines]


class UnitsPageTest(unittest.TestCase):
    maxDiff = None

    def test_the_source_has_units_and_prefixes(self):
        self.assertEqual((len(units_of_source()), len(prefixes_of_source())), (41, 20))

    def test_the_units_are_those_of_the_source_in_their_order(self):
        self.assertEqual(table_below("Units"), units_of_source())

    def test_the_prefixes_are_those_of_the_source(self):
        self.assertEqual(table_below("Prefixes"), prefixes_of_source())


if __name__ == "__main__":
    unittest.main()
