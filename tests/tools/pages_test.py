"""The manual pages and completions: they know what the program takes, no less and no more."""

import functools
import glob
import os
import re
import shutil
import subprocess
import unittest

from vrel_program import FolderTestCase, REPOSITORY, TIME_LIMIT, run

PAGES = os.environ["VRELIO_PAGES"]


def read(*names):
    with open(os.path.join(*names), encoding="utf-8") as file:
        return file.read()


def manual(name):
    """The text of a manual page without changes of the font, and with plain hyphens."""
    return re.sub(r"\\f[BIR]", "", read(PAGES, "man1", name)).replace("\\-", "-")


def options_in(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z0-9-]*", text))


@functools.lru_cache(None)
def options_of(*verb):
    """The options that stand at the beginnings of the lines of a help."""
    return set(re.findall(r"^  (?:-\w,)?(--[a-z][a-z0-9-]*)", run(*verb, "--help").stdout.decode(), re.MULTILINE))


@functools.lru_cache(None)
def verbs():
    help_text = run("--help").stdout.decode()
    return re.findall(r"^  (\w+) ", help_text[help_text.index("Subcommands:"):help_text.index("Exit codes:")], re.MULTILINE)


class ManualPageTest(unittest.TestCase):
    def test_there_is_a_page_for_the_program_and_each_verb(self):
        self.assertIn("info", verbs())
        self.assertEqual(sorted(os.listdir(f"{PAGES}/man1")), sorted(["vrel.1", *(f"vrel-{verb}.1" for verb in verbs())]))
        self.assertEqual(len(os.listdir(f"{REPOSITORY}/docs/man")), len(verbs()) + 1)

    def test_a_page_of_a_verb_has_the_options_of_its_help(self):
        for verb in verbs():
            with self.subTest(verb):
                page = manual(f"vrel-{verb}.1")
                self.assertEqual(options_in(page), options_of(verb))
                section = page[page.index(".SH OPTIONS"):page.index(".SH EXAMPLES")]
                self.assertEqual(len(re.findall(r"^\.TP\n-", section, re.MULTILINE)), len(options_of(verb)))

    def test_the_page_of_the_program_lists_verbs_options_and_exit_codes(self):
        page = manual("vrel.1")
        section = page[page.index(".SH OPTIONS"):page.index(".SH EXIT STATUS")]
        self.assertEqual(options_in(section), options_of())
        self.assertEqual(re.findall(r"^\.BR vrel-(\w+) \(1\)$", page, re.MULTILINE), sorted(verbs()))
        self.assertEqual(re.findall(r"^\.TP\n(\d+)$", page, re.MULTILINE), ["0", "1", "2", "3", "4", "130"])

    def test_a_page_says_what_must_and_what_cannot_stand_together(self):
        page = manual("vrel-export.1")
        self.assertIn("Not with --count, --offset.", page)
        self.assertIn("Has to be given.", page)
        self.assertIn("Only with --list.", manual("vrel-shm.1"))

    def test_no_placeholder_is_left(self):
        for page in glob.glob(f"{PAGES}/man1/*"):
            self.assertNotRegex(read(page), r"@[A-Z]+@")

    def check_by(self, command):
        for page in sorted(glob.glob(f"{PAGES}/man1/*")):
            with self.subTest(page):
                result = subprocess.run([*command, page], capture_output=True, timeout=TIME_LIMIT, check=False)
                self.assertEqual((result.returncode, result.stderr.decode()), (0, ""))

    @unittest.skipUnless(shutil.which("groff"), "there is no groff")
    def test_groff_warns_of_nothing(self):
        self.check_by(["groff", "-man", "-ww", "-z"])

    @unittest.skipUnless(shutil.which("man"), "there is no man")
    def test_man_warns_of_nothing(self):
        self.check_by(["man", "--warnings", "-l"])

    @unittest.skipUnless(shutil.which("groff"), "there is no groff")
    def test_signs_come_out_as_they_are(self):
        text = subprocess.run(["groff", "-man", "-Tutf8", f"{PAGES}/man1/vrel-units.1"], capture_output=True, check=True,
                              timeout=TIME_LIMIT).stdout.decode()
        text = re.sub(r"\x1b\[\d+m|.\x08", "", text)
        for part in ("with micro as µ or u", "vrel units 'kg*m/s^2'", "vrel units -- '-.5 m'"):
            self.assertIn(part, text)


class PageWriterTest(FolderTestCase):
    def write_pages(self):
        return subprocess.run([os.environ["VRELIO_PAGE_WRITER"], self.folder, self.path("pages")], capture_output=True,
                              timeout=TIME_LIMIT, encoding="utf-8", check=False)

    def test_a_verb_without_a_text_is_an_error(self):
        self.write("vrel.man", b".SH OPTIONS\n@OPTIONS@\n")
        result = self.write_pages()
        self.assertEqual((result.returncode, result.stderr), (1, f"vrel_pages: Cannot read {self.path('vrel-export.man')}!\n"))

    def test_a_text_without_the_options_is_an_error(self):
        self.write("vrel.man", b".SH OPTIONS\nnone\n")
        result = self.write_pages()
        self.assertEqual((result.returncode, result.stderr), (1, "vrel_pages: The page of vrel has no options!\n"))


BASH = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_vrel
printf '%s\\n' "${COMPREPLY[@]}"
"""


class BashCompletionTest(FolderTestCase):
    def complete(self, *words):
        """What is offered for the last word."""
        result = subprocess.run(["bash", "-c", BASH, "bash", f"{PAGES}/bash/vrel", "vrel", *words], cwd=self.folder,
                                capture_output=True, timeout=TIME_LIMIT, check=True)
        self.assertEqual(result.stderr, b"")
        return sorted(result.stdout.decode().split("\n")[:-1]) if result.stdout != b"\n" else []

    def test_verbs_come_first(self):
        self.assertEqual(set(self.complete("")), set(verbs()) | options_of())
        self.assertEqual(self.complete("ex"), ["export"])
        self.assertEqual(self.complete("no"), [])

    def test_a_verb_has_its_options_and_those_that_go_anywhere(self):
        for verb in verbs():
            with self.subTest(verb):
                self.assertEqual(set(self.complete(verb, "--")), options_of(verb) | {"--max-memory"})

    def test_options_in_front_of_the_verb_are_passed_over(self):
        self.assertEqual(self.complete("--max-memory", "1GiB", "ver"), ["verify"])
        self.assertEqual(self.complete("--max-memory", "1GiB", "verify", "--j"), ["--json"])
        self.assertEqual(self.complete("--max-memory", ""), [])

    def test_files_are_offered_where_one_belongs(self):
        self.write("a file.vbf", b"")
        self.write("another.vbf", b"")
        self.assertEqual(self.complete("info", "a"), ["a file.vbf", "another.vbf"])
        self.assertEqual(self.complete("info", "another.vbf", "a f"), ["a file.vbf"])
        self.assertEqual(self.complete("recover", "another.vbf", "--output", ""), ["a file.vbf", "another.vbf"])
        for words in (("export", "--stack", "a"), ("units", "a"), ("units", "--in", "a"), ("shm", "--remove", "a")):
            with self.subTest(words):
                self.assertEqual(self.complete(*words), [])

    def test_element_types_are_offered(self):
        self.assertEqual(self.complete("export", "x.vbf", "--type", "cplx_s"), ["cplx_single"])
        self.assertEqual(len(self.complete("import", "--type", "")), 20)

    def test_the_function_is_that_of_the_program(self):
        result = subprocess.run(["bash", "-c", 'source "$1"; complete -p vrel', "bash", f"{PAGES}/bash/vrel"],
                                capture_output=True, timeout=TIME_LIMIT, check=True)
        self.assertEqual(result.stdout, b"complete -F _vrel vrel\n")


# What zsh has for completion, as functions that tell how they were called.
ZSH = """
_arguments() { printf '%s\\n' "$@"; state=$stub_state; }
_describe() { local name=$4; printf '%s\\n' "${(@P)name}"; }
script=$1; shift; words=("$@")
source "$script"
"""


class ZshCompletionTest(FolderTestCase):
    def test_each_verb_has_its_options(self):
        text = read(PAGES, "zsh", "_vrel")
        sections = dict(re.findall(r"^    (\w+)\)\n(.*?)^      ;;$", text, re.MULTILINE | re.DOTALL))
        self.assertEqual(sorted(sections), sorted(verbs()))
        for verb, section in sections.items():
            with self.subTest(verb):
                self.assertEqual(set(re.findall(r"(--[a-z0-9-]+)\[", section)), options_of(verb) | {"--max-memory"})
        self.assertTrue(text.startswith("#compdef vrel\n"))

    def entries(self, state, *words):
        result = subprocess.run(["zsh", "-f", "-c", ZSH, "zsh", f"{PAGES}/zsh/_vrel", *words], capture_output=True,
                                env=dict(os.environ, stub_state=state), timeout=TIME_LIMIT, check=True)
        self.assertEqual(result.stderr, b"")
        return result.stdout.decode().splitlines()

    @unittest.skipUnless(shutil.which("zsh"), "there is no zsh")
    def test_zsh_reads_verbs_and_options(self):
        self.assertIn("verify:Check every structure, sample and flush point of files", self.entries("verb"))
        entries = self.entries("argument", "shm")
        self.assertIn("(--list --remove)--list[Blocks with size, age and processes]", entries)
        self.assertIn("(--force)--force[Also a block that is in use or another user's]", entries)
        self.assertNotIn("(--in)--in[Unit to tell the value in]:UNIT: ", entries)


class FishCompletionTest(FolderTestCase):
    def test_each_verb_has_its_options(self):
        text = read(PAGES, "fish", "vrel.fish")
        self.assertEqual(sorted(re.findall(r"-n __fish_use_subcommand -a (\w+)", text)), sorted(verbs()))
        for verb in verbs():
            lines = [line for line in text.splitlines() if f"from {verb}'" in line]
            with self.subTest(verb):
                self.assertEqual({f"--{name}" for line in lines for name in re.findall(r" -l ([a-z0-9-]+)", line)},
                                 options_of(verb))

    def complete(self, line):
        result = subprocess.run(["fish", "--no-config", "-c", f'source "{PAGES}/fish/vrel.fish"; complete -C "{line}"'],
                                cwd=self.folder, env=dict(os.environ, HOME=self.folder), capture_output=True,
                                timeout=TIME_LIMIT, check=True)
        self.assertEqual(result.stderr, b"")
        return {row.split("\t")[0] for row in result.stdout.decode().splitlines()}

    @unittest.skipUnless(shutil.which("fish"), "there is no fish")
    def test_fish_offers_verbs_options_and_files(self):
        self.write("another.vbf", b"")
        self.assertEqual(self.complete("vrel ex"), {"export"})
        self.assertEqual(self.complete("vrel verify --"), options_of("verify") | {"--max-memory"})
        self.assertEqual(self.complete("vrel export x.vbf --type cplx_s"), {"cplx_single"})
        self.assertEqual(self.complete("vrel recover x.vbf --output an"), {"another.vbf"})
        self.assertEqual(self.complete("vrel units an"), set())


if __name__ == "__main__":
    unittest.main()
