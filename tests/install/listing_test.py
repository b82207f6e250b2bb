"""The installed tree: all that is listed and nothing else, with no trace of the machine it was built on."""

import os
import pathlib
import re
import unittest

from listing import files_below, listed_files

PREFIX = pathlib.Path(os.environ["VRELIO_PREFIX"])
LINK = re.compile(r"\]\(([^)#:]+)(?:#[^)]*)?\)")


class InstalledTreeTest(unittest.TestCase):
    def test_what_is_installed_is_what_installed_files_txt_lists(self):
        listed, installed = set(listed_files()), set(files_below(PREFIX))
        self.assertEqual(sorted(installed - listed), [], "is installed and not listed")
        self.assertEqual(sorted(listed - installed), [], "is listed and not installed")

    def test_no_file_holds_the_path_of_the_build_folder(self):
        traces = [name for name in files_below(PREFIX) if os.environ["VRELIO_BUILD"].encode() in (PREFIX / name).read_bytes()]
        self.assertEqual(traces, [])

    def test_links_between_pages_lead_to_installed_files(self):
        pages = sorted(PREFIX.rglob("*.md"))
        self.assertGreater(len(pages), 10)
        for page in pages:
            for link in LINK.findall(page.read_text(encoding="utf-8")):
                with self.subTest(page=page.name, link=link):
                    self.assertTrue((page.parent / link).exists())


if __name__ == "__main__":
    unittest.main()
