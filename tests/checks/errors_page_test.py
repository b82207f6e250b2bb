#!/usr/bin/python3
"""Every message that the library raises stands in docs/errors.md, with its identifier."""

import ast
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
RAISE = re.compile(r'\braise(?:_oserr)?\(\s*(id_\w+)\s*,\s*((?:"(?:[^"\\]|\\.)*"\s*)+)')
STANDARD = re.compile(r'\bstd::(invalid_argument|runtime_error)\(\s*("(?:[^"\\]|\\.)*")')
IDENTIFIER = re.compile(r"\b(id_\w+) = (-?\d+)")


def identifiers():
    header = (ROOT / "src/foundation/raise_internal.h").read_text(encoding="utf-8")
    return {name: int(number) for name, number in IDENTIFIER.findall(header)}


def raised():
    """Yield (file, message, identifier or class) of everything that the sources raise with a literal."""
    number_of = identifiers()
    for path in sorted((ROOT / "src").rglob("*")):
        if path.suffix not in (".cpp", ".h"):
            continue
        text = path.read_text(encoding="utf-8")
        for name, literals in RAISE.findall(text):
            yield path.name, ast.literal_eval(f"({literals.strip()})"), str(number_of[name])
        for name, literal in STANDARD.findall(text):
            yield path.name, ast.literal_eval(literal), f"`std::{name}`"


def rows():
    """The rows of all tables of the page: message in quotes, and the set of the other cells."""
    page = (ROOT / "docs/errors.md").read_text(encoding="utf-8")
    for line in page.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith('| "'):
            yield cells[0].strip('"'), set(cells[1:])


class ErrorsPageTest(unittest.TestCase):
    def test_the_sources_raise_messages(self):
        self.assertGreater(len(list(raised())), 15)

    def test_every_message_stands_on_the_page_with_its_identifier(self):
        documented = list(rows())
        for file, message, mark in raised():
            with self.subTest(file=file, message=message, mark=mark):
                shown = message.replace("\n", "\\n")
                self.assertTrue(any(shown == text and mark in cells for text, cells in documented))


if __name__ == "__main__":
    unittest.main()
