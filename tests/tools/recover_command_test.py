"""vrel recover from outside: what is saved of a file that was cut off or damaged, and what is told."""

import glob
import json
import os
import random
import unittest

import vbf_records
from vbf_records import Stack
from vrel_program import DATA, FolderTestCase, MEMORY, put, run


SAMPLES = random.Random(5).randbytes(96)
RAW = Stack((4, 3, 4), SAMPLES, data_type=4, name=b"raw", description=b"words", labels=(b"X", b"Y", b"Zeit"),
            tags={b"key": b"value"}, column_positions={2: (0.0, 1.0, 4.0, 9.0)}, column_labels={2: (b"a", b"", b"c", b"d")},
            units=(([(1, 1)] + [(2, -4)] * 8, 1e-6),))
ZIPPED = Stack((4, 3, 4), SAMPLES, data_type=4, level=6, block=32, name=b"zipped", tags={b"empty": b""})
SMALL = Stack((3,), b"\x07\x08\x09", name=b"small")


def without_places(stack):
    return {key: value for key, value in stack.items() if key != "positions"}


class RecoverCommandTest(FolderTestCase):
    def setUp(self):
        super().setUp()
        self.output = self.path("saved.vbf")

    def recover(self, content, code):
        path = self.write("file.vbf", content)
        result = run("recover", *MEMORY, path, "--output", self.output, "--force")
        self.assertEqual(result.returncode, code, result.stderr)
        self.assertEqual(b"missing" in result.stderr, code == 1, result.stderr)
        return result

    def describe(self, path):
        result = run("info", "--json", path)
        self.assertEqual(result.returncode, 0, result.stderr)
        return json.loads(result.stdout)

    def samples(self, index, path=None):
        result = run("export", path or self.output, "--stack", str(index), "--output", "-")
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def saved(self):
        """The stacks of the new file, which is a sound one."""
        verified = run("verify", self.output)
        self.assertEqual(verified.returncode, 0, verified.stdout)
        return self.describe(self.output)["stacks"]

    def expect_whole(self, content, code=0):
        """Every stack that the library reads comes out as it was, with its stored bytes."""
        self.recover(content, code)
        before, after = self.describe(self.write("file.vbf", content)), self.describe(self.output)
        self.assertEqual([without_places(stack) for stack in before["stacks"]],
                         [without_places(stack) for stack in after["stacks"]])
        self.assertEqual((before["description"], before["dictionary"]), (after["description"], after["dictionary"]))
        with open(self.output, "rb") as file:
            copy = file.read()
        for old, new in zip(before["stacks"], after["stacks"]):
            old, new = old["positions"], new["positions"]
            self.assertEqual(content[old["data"]:old["data"] + old["data_length"]],
                             copy[new["data"]:new["data"] + new["data_length"]])

    def test_a_whole_file_comes_out_as_it_was(self):
        for version in (1, 2):
            content = vbf_records.file([RAW, ZIPPED, SMALL], b"about", version, {b"ome_xml": b"<OME/>"})
            self.expect_whole(content)
            with open(self.output, "rb") as file:
                self.assertEqual(file.read(), content)

    def test_sample_files_come_out_as_they_were(self):
        files = sorted(glob.glob(os.path.join(DATA, "vbf", "good", "*.vbf")))
        if not files:
            self.skipTest(f"no sample data in {DATA}")
        for path in files:
            with self.subTest(path), open(path, "rb") as file:
                if "uncommitted" not in path:
                    self.expect_whole(file.read())

    def expect_prefix(self, stack, index, found, step):
        """Whole steps of the last axis, as many as there are."""
        samples = self.samples(index)
        self.assertEqual(samples, SAMPLES[:len(samples)])
        self.assertEqual(stack["sizes"], [4, 3, len(samples) // step])
        self.assertLessEqual(len(samples), found)
        return len(samples)

    def expect_cut_raw(self, grown):
        content = vbf_records.killed([SMALL], RAW, grown)
        begin = len(content) - len(SAMPLES)
        small_end = content.rfind(b"VREL_BF_STACK\n")
        step = 24
        for cut in [*range(small_end, begin, 41), *range(begin, len(content) + 1)]:
            steps = max(0, cut - begin) // step
            has_header = cut >= begin
            all_there = steps == 4 or (grown and has_header) or not has_header
            with self.subTest(cut=cut, grown=grown):
                self.recover(content[:cut], 0 if all_there else 1)
                stacks = self.saved()
                self.assertEqual(len(stacks), 2 if steps else 1)
                self.assertEqual(self.samples(0), SMALL.samples)
                if steps:
                    self.assertEqual(stacks[1]["name"], "raw")
                    self.assertEqual(self.expect_prefix(stacks[1], 1, len(SAMPLES), step), steps * step)

    def test_a_killed_writers_raw_samples_are_saved_wherever_it_was(self):
        self.expect_cut_raw(grown=False)

    def test_a_killed_writers_growing_stack_is_as_long_as_it_came(self):
        self.expect_cut_raw(grown=True)

    def test_a_killed_writers_stream_is_saved_as_far_as_it_goes(self):
        content = vbf_records.killed([SMALL], ZIPPED)
        stream, points = vbf_records.stream(ZIPPED)
        begin = len(content) - len(stream)
        for cut in range(begin, len(content) + 1):
            flushed = max([0] + [32 * (number + 1) for number, point in enumerate(points) if begin + point <= cut])
            with self.subTest(cut=cut):
                path = self.write("file.vbf", content[:cut])
                result = run("recover", *MEMORY, path, "--output", self.output, "--force")
                stacks = self.saved()
                got = 0
                if len(stacks) == 2:
                    got = self.expect_prefix(stacks[1], 1, len(SAMPLES), 24)
                self.assertGreaterEqual(got, flushed // 24 * 24)
                self.assertEqual(result.returncode, 0 if got == len(SAMPLES) else 1)

    def test_a_file_that_was_cut_keeps_the_stacks_in_front_and_the_samples(self):
        content = vbf_records.file([SMALL, RAW], b"about", 2, {b"ome_xml": b"<OME/>"})
        second = content.rfind(b"VREL_BF_STACK\n")
        begin = second + 368 + len(RAW.name) + len(RAW.description)
        for cut in [*range(second - 1, begin + len(SAMPLES) + 10, 9), *range(begin, len(content), 61)]:
            steps = min(4, max(0, cut - begin) // 24)
            with self.subTest(cut=cut):
                self.recover(content[:cut], 1)
                stacks = self.saved()
                if cut >= second:
                    self.assertEqual(stacks[0]["name"], "small")
                    self.assertEqual(len(stacks), 2 if steps else 1)
                if steps:
                    self.assertEqual(self.expect_prefix(stacks[1], 1, len(SAMPLES), 24), steps * 24)

    def test_what_was_read_behind_the_samples_is_kept(self):
        content = vbf_records.file([RAW], version=1)
        self.recover(content[:-3], 1)
        stack = self.saved()[0]
        self.assertEqual((stack["labels"], stack["tags"]), (["X", "Y", "Zeit"], {}))
        self.assertEqual(stack["column_labels"], {"2": ["a", "", "c", "d"]})
        self.assertEqual(stack["units"][0]["exponents"][1], [2, -4])

    def test_the_user_is_told_how_many_samples_are_missing(self):
        content = vbf_records.killed([], RAW)
        result = self.recover(content[:-30], 1)
        place = content.rfind(b"VREL_BF_STACK\n")
        name = f'the stack at byte {place}, that was not committed "raw": '
        self.assertIn(f"saved: {name}24 of 48 samples\n".encode(), result.stdout)
        self.assertIn(f"missing: {name}24 of 48 samples are left\n".encode(), result.stderr)

    def test_a_step_that_is_not_whole_is_told(self):
        content = vbf_records.killed([], RAW, grown=True)
        note = b"its last step was not whole and is left out"
        self.assertNotIn(note, self.recover(content[:-24], 0).stderr)
        self.assertIn(note, self.recover(content[:-25], 0).stderr)
        self.assertEqual(self.saved()[0]["sizes"], [4, 3, 2])

    def test_a_writer_killed_before_its_last_corrections_loses_nothing(self):
        for stack in (RAW, ZIPPED):
            whole = vbf_records.file([SMALL, stack], version=1)
            last = whole.rfind(b"VREL_BF_STACK\n")
            content = put(put(whole, last + 352, "<Q", 0), 26 + 360, "<Q", 0)
            with self.subTest(stack.name):
                self.recover(content, 0)
                with open(self.output, "rb") as file:
                    self.assertEqual(file.read(), whole)

    def test_stacks_behind_a_torn_link_are_saved(self):
        content = vbf_records.file([RAW, ZIPPED, SMALL], version=1)
        self.recover(content, 0)
        with open(self.output, "rb") as file:
            whole = file.read()
        for target, code in ((1 << 40, 1), (3, 1), (0, 0)):
            self.recover(put(content, 26 + 360, "<Q", target), code)
            with open(self.output, "rb") as file:
                self.assertEqual(file.read(), whole)

    def test_stacks_behind_a_destroyed_header_are_saved(self):
        content = vbf_records.file([RAW, ZIPPED, SMALL], version=1)
        second = content.find(b"VREL_BF_STACK\n", 30)
        result = self.recover(put(content, second, "<B", 0), 1)
        self.assertEqual([stack["name"] for stack in self.saved()], ["raw", "small"])
        self.assertIn(b"stack 1, at byte", result.stderr)

    def test_a_destroyed_file_header_costs_only_itself(self):
        content = vbf_records.file([RAW, SMALL], b"about")
        result = self.recover(b"x" + content[1:], 1)
        self.assertIn(b"missing: the file's description: No VBF file header found!", result.stderr)
        self.assertEqual([stack["name"] for stack in self.saved()], ["raw", "small"])

    def test_what_would_keep_the_file_from_being_opened_is_left_out(self):
        stack = Stack((3,), b"abc", metadata=b"<root/>", name=b"odd")
        result = self.recover(vbf_records.file([stack], version=1), 1)
        self.assertIn(b'missing: the metadata of stack 0 "odd"', result.stderr)
        self.assertEqual((self.saved()[0]["metadata"], self.samples(0)), ("", b"abc"))

    def test_wrong_flush_points_are_left_out(self):
        content = vbf_records.file([ZIPPED], version=1)
        stream, points = vbf_records.stream(ZIPPED)
        table = 26 + 368 + len(ZIPPED.name) + len(stream) + 1444 + 3 * 4
        result = self.recover(put(content, table, "<Q", points[0] - 1), 1)
        self.assertIn(b"missing: the flush points of stack 0", result.stderr)
        self.assertEqual((self.saved()[0]["flush"]["positions"], self.samples(0)), ([], SAMPLES))

    def test_a_stack_without_data_stays_one(self):
        content = vbf_records.file([Stack((5, 5), b"", has_data=0, name=b"zeros"), SMALL], version=1)
        self.expect_whole(content)

    def test_an_unfinished_stack_without_samples_is_not_saved(self):
        self.recover(vbf_records.killed([SMALL], Stack((3, 0), b"")), 0)
        self.assertEqual([stack["name"] for stack in self.saved()], ["small"])

    def test_a_stack_that_goes_on_into_the_dictionary_is_saved_once(self):
        content = vbf_records.file([RAW, SMALL], b"about", 2, {b"ome_xml": b"<OME/>" * 99})
        last = content.rfind(b"VREL_BF_STACK\n")
        metadata_length = last + 368 + len(SMALL.name) + 3 + 124
        result = self.recover(put(content, metadata_length, "<I", 20), 1)
        self.assertEqual([stack["name"] for stack in self.describe(self.output)["stacks"]], ["raw", "small"],
                         result.stderr)

    def test_nothing_to_save_leaves_no_file(self):
        for content in (b"", b"something else, and enough of it"):
            result = run("recover", self.write("file.vbf", content), "--output", self.output)
            self.assertEqual(result.returncode, 4)
            self.assertEqual(os.listdir(self.folder), ["file.vbf"])

    def test_an_existing_file_is_not_replaced(self):
        path = self.write("file.vbf", vbf_records.file([SMALL]))
        other = self.write("other", b"mine")
        result = run("recover", path, "--output", other)
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"Output file exists already", result.stderr)
        with open(other, "rb") as file:
            self.assertEqual(file.read(), b"mine")
        self.assertEqual(run("recover", path, "--output", other, "--force").returncode, 0)

    def test_random_damage_ends_in_order_and_gives_a_file_that_opens(self):
        whole = vbf_records.file([RAW, ZIPPED, SMALL], b"about", 2, {b"ome_xml": b"<OME/>"})
        for seed in range(150):
            source = random.Random(seed)
            content = bytearray(whole)
            for _ in range(source.randint(1, 8)):
                place = source.choice([source.randrange(len(content)), source.randrange(460)])
                content[place] = source.randrange(256)
            content = bytes(content[:source.choice([len(content), source.randrange(len(content))])])
            with self.subTest(seed=seed):
                if os.path.exists(self.output):
                    os.remove(self.output)
                result = run("recover", *MEMORY, self.write("file.vbf", content), "--output", self.output)
                self.assertIn(result.returncode, (0, 1, 4), result.stderr)
                self.assertEqual(os.path.exists(self.output), result.returncode != 4)
                if result.returncode != 4:
                    self.assertEqual(run("info", self.output).returncode, 0)


if __name__ == "__main__":
    unittest.main()
