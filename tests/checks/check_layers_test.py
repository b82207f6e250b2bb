#!/usr/bin/python3
"""What check_layers.py finds in small trees."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "cmake"))
import check_layers  # noqa: E402


def faults_of(files):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text in files.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        return list(check_layers.faults(root))


class CheckLayersTest(unittest.TestCase):
    def accepts(self, name, text):
        self.assertEqual(faults_of({name: text}), [])

    def refuses(self, name, text, reason):
        found = faults_of({name: text})
        self.assertEqual(len(found), 1, found)
        self.assertTrue(found[0].startswith(f"{name}:1: "), found[0])
        self.assertIn(reason, found[0])

    def test_a_layer_includes_itself_and_what_lies_below(self):
        self.accepts("src/file/file.cpp", '#include "file/bytes_internal.h"\n#include <vrelio/foundation/error.h>\n')

    def test_other_libraries_are_open_to_all_layers(self):
        self.accepts("src/si/value.cpp", "#include <zlib.h>\n#include <boost/locale/encoding.hpp>\n")

    def test_a_layer_does_not_include_one_above_it(self):
        self.refuses("src/file/file.cpp", "#include <vrelio/container/chain.h>\n", "file may not include container")
        self.refuses("src/foundation/error.cpp", '#include "file/bytes_internal.h"\n', "foundation may not include file")

    def test_neighbours_do_not_include_each_other(self):
        self.refuses("src/si/value.cpp", '#include "json/reader_internal.h"\n', "si may not include json")

    def test_public_headers_obey_the_same_table(self):
        self.refuses("include/vrelio/json/value.h", "#include <vrelio/prop/prop.h>\n", "json may not include prop")

    def test_a_public_header_includes_no_private_one(self):
        self.refuses("include/vrelio/file/file.h", '#include "file/bytes_internal.h"\n', "public headers only")

    def test_the_library_does_not_use_its_own_umbrella(self):
        self.refuses("src/file/file.cpp", "#include <vrelio/vrelio.h>\n", "whole interface")

    def test_headers_of_no_area_are_two(self):
        self.accepts("src/si/value.cpp", "#include <vrelio/export.h>\n#include <vrelio/version.h>\n")
        self.refuses("src/si/value.cpp", '#include "config.h"\n', "belongs to no area")

    def test_users_see_public_headers_only(self):
        private = {"src/file/bytes_internal.h": "", "tools/vrel/main.cpp": '#include "file/bytes_internal.h"\n'}
        self.assertEqual(len(faults_of(private)), 1)
        self.refuses("tools/vrel/main.cpp", '#include "../../src/file/bytes_internal.h"\n', "public headers only")
        self.accepts("tools/vrel/main.cpp", '#include "lib/text.h"\n#include <vrelio/vrelio.h>\n')

    def test_examples_do_without_the_helpers_of_the_tests(self):
        self.accepts("bench/file/file_bench.cpp", '#include "support/temporary_file.h"\n')
        self.refuses("examples/read_stack.cpp", '#include "support/temporary_file.h"\n', "helpers of the tests")

    def test_a_folder_outside_the_table_is_named(self):
        self.assertEqual(faults_of({"src/misc/a.cpp": ""}), ["src/misc/a.cpp: misc is no area"])


if __name__ == "__main__":
    unittest.main()
