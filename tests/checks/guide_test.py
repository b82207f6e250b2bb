#!/usr/bin/python3
"""The guide for newcomers: its programs are those that are built, and what it shows below them comes out."""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = ROOT / "examples/guide"
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
TIME_LIMIT = 100


def blocks_of(page):
    """The blocks of code in order, each as language and text."""
    return BLOCK.findall(page.read_text(encoding="utf-8"))


def is_as_shown(shown, output):
    """Whether a text is the one that the page shows, where a line of three dots stands for any lines."""
    pattern = "".join("(?:.*\n)*" if line == "...\n" else re.escape(line) for line in shown.splitlines(keepends=True))
    return re.fullmatch(pattern, output) is not None


class Page:
    """Does what a reader of the page does, in a folder that is empty at first."""

    def __init__(self, blocks, folder):
        self.blocks = blocks
        self.folder = pathlib.Path(folder)
        self.programs = {path.read_text(encoding="utf-8"): path.stem for path in SOURCES.glob("*.cpp")}
        self.prefix = os.environ.get("VRELIO_PREFIX", "")
        path = self.folder / ".bin"
        path.mkdir()
        (path / "vrel").symlink_to(os.environ["VRELIO_PROGRAM"])
        self.environment = dict(os.environ, PATH=f"{path}:{os.environ['PATH']}", CMAKE_PREFIX_PATH=self.prefix)

    def steps(self):
        """What is to be done, and the text that the page shows for it, or None."""
        for (language, text), (next_language, shown) in zip(self.blocks, [*self.blocks[1:], ("", "")]):
            shown = shown if next_language == "text" else None
            if language == "cmake":
                (self.folder / "CMakeLists.txt").write_text(text, encoding="utf-8")
            elif language == "cpp":
                yield self.program(text), shown or ""
            elif language == "sh" and (self.prefix or not text.startswith("cmake ")):
                yield ["sh", "-e", "-c", text], shown

    def program(self, text):
        name = self.programs[text]
        (self.folder / f"{name}.cpp").write_text(text, encoding="utf-8")
        return [os.path.join(os.environ["VRELIO_GUIDE_PROGRAMS"], name)]

    def output(self, command):
        return subprocess.run(command, cwd=self.folder, env=self.environment, stdout=subprocess.PIPE, check=False,
                              stderr=subprocess.STDOUT, timeout=TIME_LIMIT, encoding="utf-8")


class GuideTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.blocks = blocks_of(ROOT / "docs/guide.md")

    def test_the_page_shows_each_program_once(self):
        shown = sorted(text for language, text in self.blocks if language == "cpp")
        built = sorted(path.read_text(encoding="utf-8") for path in SOURCES.glob("*.cpp"))
        self.assertGreater(len(built), 5)
        self.assertEqual(shown, built)

    def test_a_block_has_a_language_of_which_the_test_knows(self):
        fences = (ROOT / "docs/guide.md").read_text(encoding="utf-8").count("```")
        self.assertEqual(fences, 2 * len(self.blocks))
        self.assertLessEqual({language for language, _ in self.blocks}, {"cpp", "cmake", "sh", "text"})

    def test_three_dots_stand_for_any_lines_and_for_nothing_else(self):
        for shown, output, expected in (("a\n...\nd\n", "a\nb\nc\nd\n", True), ("a\n...\n", "a\n", True),
                                        ("a\n...\nd\n", "a\nb\n", False), ("a\n", "a\nb\n", False),
                                        ("a ...\n", "a b\n", False), ("", "a\n", False)):
            with self.subTest(shown=shown, output=output):
                self.assertEqual(is_as_shown(shown, output), expected)

    def test_what_the_page_shows_comes_out_of_its_programs_and_commands(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Page(self.blocks, folder)
            for command, shown in page.steps():
                with self.subTest(command=command):
                    result = page.output(command)
                    self.assertEqual(result.returncode, 0, result.stdout)
                    if shown is not None and not is_as_shown(shown, result.stdout):
                        self.assertEqual(shown, result.stdout)


if __name__ == "__main__":
    unittest.main()
