#!/usr/bin/python3
"""The pages: links lead somewhere, and the code shown is the code that is built."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
LINK = re.compile(r"\]\(([^)#:]+)(?:#[^)]*)?\)")


class PagesTest(unittest.TestCase):
    def test_links_lead_to_files(self):
        pages = sorted(ROOT.glob("*.md")) + sorted(ROOT.glob("docs/**/*.md"))
        links = [(page, link) for page in pages for link in LINK.findall(page.read_text(encoding="utf-8"))]
        self.assertGreater(len(links), 10)
        for page, link in links:
            with self.subTest(page=page.name, link=link):
                self.assertTrue((page.parent / link).exists())

    def test_the_readme_shows_short_programs_that_are_built(self):
        for name in ("write_file", "read_file"):
            with self.subTest(name=name):
                program = (ROOT / f"examples/{name}.cpp").read_text(encoding="utf-8")
                self.assertLessEqual(program.count("\n"), 40)
                self.assertIn(f"```cpp\n{program}```", (ROOT / "README.md").read_text(encoding="utf-8"))

    def test_scripts_that_are_named_exist(self):
        for page in sorted(ROOT.glob("*.md")) + sorted(ROOT.glob("docs/*.md")):
            for script in re.findall(r"\bscripts/\w+|\.ci/\w+", page.read_text(encoding="utf-8")):
                with self.subTest(page=page.name, script=script):
                    self.assertTrue((ROOT / script).exists())


if __name__ == "__main__":
    unittest.main()
